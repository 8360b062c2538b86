#pragma once

/// Reads a JSON text with comments and trailing commas, token by token.
///
/// Threads: a plain value.

#include <cstddef>
#include <optional>
#include <string_view>

#include "JSONEditor/JSONEditError.h"

namespace tarnwell {

constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";

constexpr bool isJSONBlank(char byte) { return byte == ' ' || byte == '\t' || byte == '\n' || byte == '\r'; }

struct TextRange {
  std::size_t begin = 0;
  std::size_t end = 0;  // after the last byte
};

struct MemberPlace {
  TextRange range;  // from the first quote of its key to the end of its value
  std::size_t value = 0;
  std::optional<std::size_t> commaBefore;
  std::optional<std::size_t> commaAfter;
};

/// Moves over a text in valid UTF-8 without zero bytes. Each function throws `JSONEditError` at the first
/// byte that does not belong there.
class JSONReader {
 public:
  JSONReader(std::string_view text, std::size_t position) : text_(text), position_(position) {}

  std::size_t position() const { return position_; }
  bool isAtEnd() const { return position_ == text_.size(); }
  /// A zero byte at the end of the text.
  char current() const { return isAtEnd() ? '\0' : text_[position_]; }

  void skipBlanksAndComments();
  /// Stays where it is when no comment begins there. The end of the line does not belong to a comment.
  void skipComment();
  void skipValue();

  /// Hands each member to the function, with its key between the quotes as it is written.
  template <class Take>
  void readObject(const Take& take) {
    enter('{');
    std::optional<std::size_t> comma;
    for (bool isOpen = true; isOpen && current() != '}';) {
      MemberPlace member{.range = {position_, 0}, .value = 0, .commaBefore = comma, .commaAfter = {}};
      skipString();
      const std::string_view key = text_.substr(member.range.begin + 1, position_ - member.range.begin - 2);
      skipBlanksAndComments();
      skip(':');
      skipBlanksAndComments();
      member.value = position_;
      skipValue();
      member.range.end = position_;
      member.commaAfter = comma = skipComma();
      isOpen = comma.has_value();
      take(key, member);
    }
    leave('}');
  }

 private:
  [[noreturn]] void fail() const { throw JSONEditError::at(JSONEditError::Kind::notJSON, text_, position_); }
  void skip(char expected);
  void enter(char bracket);
  void leave(char bracket);
  /// Skips blanks, and a comma when one follows. Returns the place of the comma.
  std::optional<std::size_t> skipComma();
  void skipArray();
  void skipString();
  void skipEscape();
  void skipWord(std::string_view word);
  void skipDigits();
  void skipNumber();

  std::string_view text_;
  std::size_t position_;
  std::size_t depth_ = 0;
};

}  // namespace tarnwell
