#pragma once

/// The words of JSON (RFC 8259): texts, numbers and marks, which a document is made of. A scanner stands at a
/// place of the text and moves behind each word that it reads. Its results tell whether the word was there;
/// behind one that began and was not valid, reading is at its end.
///
/// The text must outlive the scanner. Threads: a plain value.

#include <charconv>
#include <cstddef>
#include <cstdint>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <string_view>

#include "MCP/JSONText.h"
#include "MCP/JSONValue.h"
#include "Platform/UTF8.h"

namespace tarnwell {

class JSONScanner {
 public:
  explicit JSONScanner(std::string_view data) : next_(data.data()), end_(next_ + data.size()) {}

  bool isAtEnd() const { return next_ == end_; }

  void skipBlanks() {
    while (peek() == ' ' || peek() == '\n' || peek() == '\r' || peek() == '\t') {
      ++next_;
    }
  }

  /// The next byte; a zero byte, which no document has, at the end.
  char peek() const { return next_ != end_ ? *next_ : '\0'; }

  bool take(char byte) {
    if (next_ == end_ || *next_ != byte) {
      return false;
    }
    ++next_;
    return true;
  }

  bool take(std::string_view word) {
    if (!std::string_view(next_, end_).starts_with(word)) {
      return false;
    }
    next_ += word.size();
    return true;
  }

  /// The text behind the quotation mark here when it has no escapes; otherwise absent, and nothing is taken.
  std::optional<std::string_view> takePlainText() {
    const char* const begin = next_ + 1;
    const char* const end = endOfPlainRun(begin, end_);
    if (end == end_ || *end != '"') {
      return std::nullopt;
    }
    next_ = end + 1;
    return std::string_view(begin, end);
  }

  /// Appends the text behind the quotation mark here.
  bool readText(std::string& text) {
    ++next_;
    for (;;) {
      const char* const begin = next_;
      next_ = endOfPlainRun(begin, end_);
      text.append(std::string_view(begin, next_));
      if (!take('\\')) {
        return take('"');
      }
      if (!readEscaped(text)) {
        return false;
      }
    }
  }

  /// An integer or a double, as `JSONValue` tells them apart.
  bool readNumber(JSONValue::Payload& payload) {
    const char* const begin = next_;
    take('-');
    if (!take('0') && !takeDigits()) {
      return false;
    }
    const char* const endOfInteger = next_;
    if (take('.') && !takeDigits()) {
      return false;
    }
    if (take('e') || take('E')) {
      if (!take('+')) {
        take('-');
      }
      if (!takeDigits()) {
        return false;
      }
    }
    std::int64_t integer = 0;
    if (next_ == endOfInteger && std::from_chars(begin, next_, integer).ec == std::errc()) {
      payload = integer;
      return true;
    }
    return readDouble({begin, next_}, payload);
  }

 private:
  bool readEscaped(std::string& text) {
    constexpr std::string_view letters = "\"\\/bfnrt";
    constexpr std::string_view meanings = "\"\\/\b\f\n\r\t";
    if (take('u')) {
      return readEscapedCodePoint(text);
    }
    const std::size_t found = letters.find(peek());
    if (found == std::string_view::npos) {
      return false;
    }
    ++next_;
    text += meanings[found];
    return true;
  }

  /// UTF-16: a code point beyond U+FFFF is a pair of surrogates, and there are no lone ones.
  bool readEscapedCodePoint(std::string& text) {
    std::optional<char32_t> codePoint = fourDigits();
    if (codePoint && *codePoint >= 0xD800 && *codePoint < 0xDC00) {
      const std::optional<char32_t> low = take("\\u") ? fourDigits() : std::nullopt;
      if (!low || *low < 0xDC00 || *low > 0xDFFF) {
        return false;
      }
      codePoint = 0x10000 + ((*codePoint - 0xD800) << 10) + (*low - 0xDC00);
    }
    if (!codePoint || (*codePoint >= 0xDC00 && *codePoint <= 0xDFFF)) {
      return false;
    }
    appendCodePoint(text, *codePoint);
    return true;
  }

  std::optional<char32_t> fourDigits() {
    constexpr std::ptrdiff_t count = 4;
    if (end_ - next_ < count) {
      return std::nullopt;
    }
    const char* const end = next_ + count;
    std::uint32_t value = 0;
    const bool areDigits = std::from_chars(next_, end, value, 16).ptr == end;
    next_ = end;
    return areDigits ? std::optional<char32_t>(value) : std::nullopt;
  }

  bool takeDigits() {
    const char* const begin = next_;
    while (peek() >= '0' && peek() <= '9') {
      ++next_;
    }
    return next_ > begin;
  }

  /// In the library's words: the nearest double whatever the locale, and none for a number beyond all of
  /// them.
  static bool readDouble(std::string_view text, JSONValue::Payload& payload) {
    const nlohmann::json number = nlohmann::json::parse(text, nullptr, false);
    if (!number.is_number()) {
      return false;
    }
    payload = number.get<double>();
    return true;
  }

  const char* next_;
  const char* end_;
};

}  // namespace tarnwell
