#pragma once

/// Other readings of a mail's bytes: texts that a mail program may show where the text that tools return
/// shows something else.
///
/// Mail is often wrong about itself. A label names the wrong charset, a byte is damaged, a character is split
/// over two encoded words, or tags without a width cut a word. The decoders of TextDecoding.h then fall back
/// step by step. A code that every mail program shows may then be hidden between unreadable characters. So
/// the detector sees these readings too. They can only withhold a mail; no tool returns them.
///
/// Readings are folded (`foldedForScanning`), so line ends and invisible characters do not split a word. The
/// text that tools return is also read unfolded, because folding may join a word with its neighbour. The
/// readings do not cover text in pictures, text that a style sheet hides or composes, a part whose transfer
/// encoding has the wrong label, and the bytes after the first megabyte of a part or after the first 64 KiB
/// of a header field.
///
/// Every operation takes linear time and never fails.
///
/// Threads: all operations are pure.

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "Text/Charsets.h"

namespace tarnwell::TextDecoding {

/// How many bytes of a part are read for its readings.
inline constexpr std::size_t mostBytesForReadings = std::size_t{1} << 20;
/// The same for a header field. The largest reading takes eleven times as much memory.
inline constexpr std::size_t mostBytesOfAField = std::size_t{1} << 16;

/// The bytes from which the text of a body was made, with their transfer encoding undone.
struct BodySource {
  /// The beginning, at most `mostBytesForReadings` bytes.
  std::string bytes;
  /// The charset that the label names.
  Charset named = Charset::utf8;
  /// The charset in which the bytes were read.
  Charset used = Charset::utf8;
  bool isHTML = false;
};

/// A text to scan. A keyword counts when it begins before `end`, in bytes. The text after `end` is there to
/// complete a keyword that the end cuts in two.
struct Passage {
  std::string text;
  std::size_t end = 0;

  bool operator==(const Passage&) const = default;
};

/// The readings of the beginning of a body. `text` is the body as tools return it. Its first `leavingBytes`
/// bytes leave the program. The first readings are that text, unchanged and folded. Each reading of the bytes
/// ends where the text that leaves ends in them. HTML in another charset is the exception: its reading has as
/// many code points as leave.
std::vector<Passage> bodyReadings(const BodySource& source, std::string_view text, std::size_t leavingBytes);

/// The readings of a header field as the server sent it. None for plain ASCII.
std::vector<std::string> headerReadings(std::string_view field);

}  // namespace tarnwell::TextDecoding
