#pragma once

/// The other readings of a mail's bytes: what a mail program may show where the text that tools return shows
/// something else.
///
/// Mail is often not what it says. A label names the wrong charset, one byte is damaged, a character is split
/// over two encoded words, a word is cut up by tags that have no width. The decoders of TextDecoding.h then
/// fall back step by step, and a code that every mail program shows stands in a result between characters
/// that nobody can read. So the detector sees these readings too. They can only withhold; no tool returns
/// one.
///
/// They are folded (`foldedForScanning`), so that line ends and invisible characters split no word. The text
/// that tools return is read as it stands too: folding may also join a word with what stands beside it.
/// What is not seen here: text in pictures, text that a style sheet hides or puts together, a part whose
/// transfer encoding has the wrong label, and what lies beyond the first megabyte of a part or the first
/// 64 KiB of a header field.
///
/// Every operation is linear in its input and never fails. Threads: all operations are pure.

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "Text/Charsets.h"

namespace tarnwell::TextDecoding {

/// How much of a part is looked at for its readings, in bytes.
inline constexpr std::size_t mostBytesForReadings = std::size_t{1} << 20;
/// The same for a header field. A reading of the worst characters takes eleven times as much memory.
inline constexpr std::size_t mostBytesOfAField = std::size_t{1} << 16;

/// The bytes that a body's text was made of, their transfer encoding undone.
struct BodySource {
  /// Their beginning, `mostBytesForReadings` at most.
  std::string bytes;
  /// The charset that their label names.
  Charset named = Charset::utf8;
  /// The charset in which they were read.
  Charset used = Charset::utf8;
  bool isHTML = false;
};

/// A text to be scanned. A keyword counts that begins before `end`, in bytes; what follows is there to
/// complete one that is cut in two.
struct Passage {
  std::string text;
  std::size_t end = 0;

  bool operator==(const Passage&) const = default;
};

/// The readings of the beginning of a body. `text` is the body as tools return it, of which the first
/// `leavingBytes` bytes are to leave. The first readings are that text, as it stands and folded.
/// The end of what leaves is found in the bytes, so that no reading goes farther than the text does. HTML in
/// another charset is the exception: there as many code points are read as leave.
std::vector<Passage> bodyReadings(const BodySource& source, std::string_view text, std::size_t leavingBytes);

/// The readings of a header field as the server sent it; none for plain ASCII.
std::vector<std::string> headerReadings(std::string_view field);

}  // namespace tarnwell::TextDecoding
