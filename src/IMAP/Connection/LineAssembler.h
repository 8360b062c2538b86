#pragma once

/// Cuts a stream of received bytes into logical lines of IMAP.
///
/// A logical line is a whole response (RFC 3501, sections 2.2.2 and 4.3). It is a physical line up to CRLF.
/// When that line ends with the announcement of a literal ({12} or {12+}), the CRLF, the announced bytes and
/// the next physical line belong to it too, and so on. The last CRLF is not part of it.
///
///     LineAssembler assembler;
///     assembler.append("* 1 FETCH (BODY[TEXT] {5}\r\nhel");
///     assembler.next();                                    // absent: the literal is not complete
///     assembler.append("lo)\r\n");
///     assembler.next();                                    // "* 1 FETCH (BODY[TEXT] {5}\r\nhello)"
///
/// It knows no other grammar. The lines do not depend on how the stream is cut into pieces. Each byte is read
/// a fixed number of times. Memory is used only for bytes that arrived, whatever length was announced.
///
/// Threads: one at a time.

#include <cstddef>
#include <cstdint>
#include <deque>
#include <optional>
#include <string>
#include <string_view>

namespace tarnwell {

class LineAssembler {
 public:
  void append(std::string_view bytes);

  /// The oldest complete logical line that was not returned yet. Absent until one is complete.
  std::optional<std::string> next();

  /// The length in bytes that the very end of a physical line announces. Absent when the line ends without an
  /// announcement, or the number needs more than 63 bits. Such a line is an ordinary line.
  static std::optional<std::int64_t> trailingLiteralLength(std::string_view line);

 private:
  /// Both take bytes from the front of a piece and return their number.
  std::size_t appendLiteral(std::string_view bytes);
  std::size_t appendLine(std::string_view bytes);

  /// Called when the assembled bytes end in CRLF: a literal begins, or the logical line is complete.
  void endPhysicalLine();

  std::string assembled_;              // the logical line so far
  std::size_t physicalLineBegin_ = 0;  // in `assembled_`; bytes before it are not read again
  std::uint64_t literalBytesMissing_ = 0;
  std::deque<std::string> complete_;
};

}  // namespace tarnwell
