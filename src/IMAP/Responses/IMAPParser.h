#pragma once

/// Reads one response of an IMAP server (RFC 3501, section 7).
///
/// The input is one logical line with its literals in place, as `LineAssembler` delivers it. Reading is
/// forgiving: nothing throws, what cannot be read is skipped or left at its default, and a response of
/// another shape gives an absent result. Every reader is linear in its input and needs no call stack for
/// nesting. How bytes become readable text is in TextDecoding.h; its operations can be called under the names
/// of this namespace as well.
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
  /// What follows the status word, blanks trimmed, a response code in brackets included.
  std::string text;

  bool operator==(const Completion&) const = default;
};

/// The tokens of a response. Stray closing parentheses are skipped; lists, quoted strings and literals
/// that are cut short end with the input. `response` must outlive the result.
IMAPTokens tokenize(std::string_view response);

/// Reads `tag SP ("OK" / "NO" / "BAD") SP text`, status in any letter case; absent for another tag or
/// status. The blanks may be missing: hand over only lines of the tag.
std::optional<Completion> parseCompletion(std::string_view line, std::string_view tag);

/// Reads `* LIST (flags) delimiter mailbox` and the same with LSUB (section 7.2.2); absent for another
/// shape or without a mailbox name.
std::optional<IMAPFolder> parseList(IMAPTokenList tokens);

/// Reads the numbers of `* SEARCH n n ...` (section 7.2.5) in the order of the server; absent for another
/// response. What is no number of 32 bits is skipped.
std::optional<std::vector<std::uint32_t>> parseSearch(std::string_view line);

/// Reads `* n FETCH (...)` (section 7.4.2); absent without a readable UID. Of an attribute that occurs
/// twice the later readable value counts.
std::optional<IMAPMessage> parseFetchMessage(IMAPTokenList tokens);

/// Reads the elements of an ENVELOPE. A missing field, or one of the wrong kind, is empty.
IMAPEnvelope parseEnvelope(IMAPTokenList elements);
/// Reads what of them the other readings are made of.
HeaderBytes parseHeaderBytes(IMAPTokenList elements);

/// Reads the elements of a BODYSTRUCTURE or BODY. Preferred is the first plain text part, then the first
/// HTML part; text parts that are attachments do not count.
IMAPBodyInfo parseBodyStructure(IMAPTokenList elements);

}  // namespace tarnwell::IMAPParser
