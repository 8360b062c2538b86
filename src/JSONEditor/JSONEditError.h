#pragma once

#include <cstddef>
#include <stdexcept>
#include <string_view>

namespace tarnwell {

/// Why a text cannot be read or edited, and where.
class JSONEditError : public std::runtime_error {
 public:
  enum class Kind {
    notJSON,      // not even with comments and trailing commas
    notAnObject,  // the text, or a member on the path, has another value
    ambiguous,    // a key of the path stands twice in its object; readers differ in which one counts
    notUTF8,      // other bytes, such as UTF-16, or a zero byte
    tooLarge,     // more than `maximumJSONTextSize` bytes
  };

  /// No place: line and column are 0.
  explicit JSONEditError(Kind kind, std::size_t line = 0, std::size_t column = 0);

  /// At a position in the text, in bytes.
  static JSONEditError at(Kind kind, std::string_view text, std::size_t position);

  Kind kind() const { return kind_; }
  /// From 1. CR, LF and CR LF each end a line.
  std::size_t line() const { return line_; }
  /// From 1, in code points. A byte-order mark does not count.
  std::size_t column() const { return column_; }

 private:
  Kind kind_;
  std::size_t line_;
  std::size_t column_;
};

}  // namespace tarnwell
