#pragma once

#include <charconv>
#include <cstdint>
#include <string>
#include <string_view>
#include <system_error>

#include "Text/Text.h"
#include "support/TokenPrinter.h"

namespace tarnwell::test {

/// The rules of the tokenizer in their simplest form: recursive and byte by byte. Prints each token at once.
/// For small inputs only.
class ReferenceTokenizer {
 public:
  explicit ReferenceTokenizer(std::string_view response) : rest_(response) {}

  std::string printed() {
    std::string line;
    while (!rest_.empty()) {
      line += (line.empty() ? "" : " ") + elements();
      while (line.ends_with(' ')) {
        line.pop_back();
      }
    }
    return "[" + line + "]";
  }

 private:
  bool isNext(std::string_view bytes) const {
    return !rest_.empty() && bytes.find(rest_.front()) != std::string_view::npos;
  }

  char take() {
    const char byte = rest_.front();
    rest_.remove_prefix(1);
    return byte;
  }

  /// Reads up to and including the parenthesis that closes the list, or to the end.
  std::string elements() {
    std::string line;
    while (!rest_.empty()) {
      if (isNext(" \t")) {
        take();
        continue;
      }
      if (isNext(")")) {
        take();
        return line;
      }
      line += line.empty() ? "" : " ";
      line += isNext("{") ? literal() : isNext("\"") ? quoted() : isNext("(") ? list() : atom();
    }
    return line;
  }

  std::string list() {
    take();
    return "(" + elements() + ")";
  }

  std::string atom() {
    std::string text;
    while (!rest_.empty() && !isNext(" \t\"(){")) {
      text += take();
    }
    const bool isNIL =
        text.size() == 3 && (text[0] | 0x20) == 'n' && (text[1] | 0x20) == 'i' && (text[2] | 0x20) == 'l';
    return isNIL ? "NIL" : test::printedText(repairedUTF8(text));
  }

  std::string quoted() {
    std::string text;
    take();
    while (!rest_.empty() && !isNext("\"")) {
      if (isNext("\\") && rest_.size() > 1) {
        take();
      }
      text += take();
    }
    if (!rest_.empty()) {
      take();
    }
    return "\"" + test::printedText(repairedUTF8(text)) + "\"";
  }

  std::string literal() {
    std::string digits = "0";
    take();
    while (!rest_.empty() && !isNext("}")) {
      const char byte = take();
      digits += isNextDigit(byte) ? std::string(1, byte) : "";
    }
    for (const std::string_view skipped : {"}", "\r", "\n"}) {
      if (isNext(skipped)) {
        take();
      }
    }
    std::string text;
    for (std::int64_t count = number(digits); count > 0 && !rest_.empty(); --count) {
      text += take();
    }
    return "\"" + test::printedText(repairedUTF8(text)) + "\"";
  }

  /// 0 when the number is too large.
  static std::int64_t number(std::string_view digits) {
    std::int64_t value = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), value);
    return error == std::errc() ? value : 0;
  }

  static bool isNextDigit(char byte) { return byte >= '0' && byte <= '9'; }

  std::string_view rest_;
};

}  // namespace tarnwell::test
