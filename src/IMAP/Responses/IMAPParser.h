#pragma once

/// Reads one response of an IMAP server (RFC 3501, section 7).
///
/// The input is one logical line with its literals in place, as `LineAssembler` delivers it. Reading is
/// tolerant and never throws. Unreadable parts are skipped or left at their defaults, and a response of
/// another shape gives an absent result. Every reader takes linear time and does not recurse for nested
/// lists. TextDecoding.h turns bytes into readable text; its operations also have names in this namespace.
///
/// Threads: all operations are pure.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "IMAP/Decoding/TextDecoding.h"
#include "IMAP/Responses/IMAPFolder.h"
#include "IMAP/Responses/IMAPMessage.h"
#include "IMAP/Responses/IMAPToken.h"

namespace tarnwell::IMAPParser {

using TextDecoding::decodeCharset;
using TextDecoding::decodeQuotedPrintable;
using TextDecoding::decodeRFC2047;
using TextDecoding::decodeText;
using TextDecoding::htmlToText;
using TextDecoding::snippet;
using TextDecoding::stringEncoding;

/// The outcome of a command: the status word of a tagged response (RFC 3501, section 7.1).
struct Completion {
  enum class Status { ok, no, bad };

  Status status;
  /// The text after the status word, including a response code in brackets, with blanks trimmed.
  std::string text;

  bool operator==(const Completion&) const = default;
};

/// The tokens of a response. Skips stray closing parentheses. Ends unclosed lists, quoted strings and
/// literals at the end of the input. `response` must outlive the result.
IMAPTokens tokenize(std::string_view response);

/// Reads `tag SP ("OK" / "NO" / "BAD") SP text`, status in any letter case. Absent for another tag or status.
/// The blanks may be missing, so pass only lines that begin with the tag.
std::optional<Completion> parseCompletion(std::string_view line, std::string_view tag);

/// Reads `* LIST (flags) delimiter mailbox` and the same with LSUB (section 7.2.2). Absent for another shape
/// or without a mailbox name.
std::optional<IMAPFolder> parseList(IMAPTokenList tokens);

/// Reads the numbers of `* SEARCH n n ...` (section 7.2.5) in the order of the server. Skips words that are
/// not 32-bit numbers. Absent for another response.
std::optional<std::vector<std::uint32_t>> parseSearch(std::string_view line);

/// Reads `* n FETCH (...)` (section 7.4.2). Absent without a readable UID. If an attribute occurs twice, the
/// later readable value counts.
std::optional<IMAPMessage> parseFetchMessage(IMAPTokenList tokens);

/// Reads the elements of an ENVELOPE. A field that is missing or of the wrong kind is empty.
IMAPEnvelope parseEnvelope(IMAPTokenList elements);
/// Reads the bytes of the envelope from which `headerReadings` (Readings.h) works.
HeaderBytes parseHeaderBytes(IMAPTokenList elements);

/// Reads the elements of a BODYSTRUCTURE or BODY. Prefers the first plain text part, then the first HTML
/// part. Text parts that are attachments do not count.
IMAPBodyInfo parseBodyStructure(IMAPTokenList elements);

}  // namespace tarnwell::IMAPParser
