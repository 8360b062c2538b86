#pragma once

/// Cuts a stream of received bytes into logical lines of IMAP.
///
/// A logical line is a response as a whole: a physical line up to CRLF and, when it ends in a literal
/// announcement ({12} or {12+}), CRLF, the announced bytes and what follows them, literal after literal
/// (RFC 3501, sections 2.2.2 and 4.3). The last CRLF is not part of it.
///
///     LineAssembler assembler;
///     assembler.append("* 1 FETCH (BODY[TEXT] {5}\r\nhel");
///     assembler.next();                                    // absent: the literal is not complete
///     assembler.append("lo)\r\n");
///     assembler.next();                                    // "* 1 FETCH (BODY[TEXT] {5}\r\nhello)"
///
/// It knows no grammar beyond that. However the stream is cut into pieces the lines are the same, each
/// byte is looked at a fixed number of times, and no memory is taken before the bytes arrive, whatever
/// length was announced.
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

  /// The oldest complete logical line not yet handed out; absent until one is complete.
  std::optional<std::string> next();

  /// The length announced at the very end of a physical line, in bytes. Absent when the line does not
  /// end in an announcement, or in one that does not fit 63 bits; it then is an ordinary line.
  static std::optional<std::int64_t> trailingLiteralLength(std::string_view line);

 private:
  /// Both take bytes from the front of a piece and return how many.
  std::size_t appendLiteral(std::string_view bytes);
  std::size_t appendLine(std::string_view bytes);

  /// What has been assembled now ends in a CRLF: a literal begins, or the logical line is complete.
  void endPhysicalLine();

  std::string assembled_;              // the logical line so far
  std::size_t physicalLineBegin_ = 0;  // in `assembled_`; bytes before it are never looked at again
  std::uint64_t literalBytesMissing_ = 0;
  std::deque<std::string> complete_;
};

}  // namespace tarnwell
