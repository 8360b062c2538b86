#include "Assistants/TOMLReader.h"

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "Text/Text.h"
#include "Text/UTF8.h"

namespace tarnwell {
namespace {

constexpr std::size_t maximumDepth = 64;
/// In bytes. A table takes a time that grows with the square of the number of its keys, so a text of four
/// times the size would take sixteen times as long.
using Keys = std::vector<std::string>;

bool isBareKeyByte(char byte) {
  return (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z') || (byte >= '0' && byte <= '9') ||
         byte == '_' || byte == '-';
}

/// Every function returns false, or an absent value, when the text at its place is not TOML.
class TOMLReader {
 public:
  explicit TOMLReader(std::string_view text) : text_(text) {}

  std::size_t line() const {
    return 1 + static_cast<std::size_t>(std::ranges::count(text_.substr(0, position_), '\n'));
  }

  std::optional<JSONValue> document(std::vector<std::string_view>* statements) {
    (void)skip("\xEF\xBB\xBF");
    JSONValue root = JSONObject{};
    JSONValue* table = &root;
    for (skipBlankLines(); !isAtEnd(); skipBlankLines()) {
      const std::size_t begin = position_;
      if (current() == '[') {
        table = header(root);
        if (table == nullptr) {
          return std::nullopt;
        }
      } else if (!member(*table, 0)) {
        return std::nullopt;
      }
      if (!endLine()) {
        return std::nullopt;
      }
      if (statements != nullptr) {
        statements->push_back(text_.substr(begin, position_ - begin));
      }
    }
    return root;
  }

 private:
  bool isAtEnd() const { return position_ == text_.size(); }
  char current() const { return isAtEnd() ? '\0' : text_[position_]; }

  bool skip(std::string_view expected) {
    const bool isThere = text_.substr(position_).starts_with(expected);
    position_ += isThere ? expected.size() : 0;
    return isThere;
  }
  void skipBlanks() { position_ = std::min(text_.find_first_not_of(" \t", position_), text_.size()); }
  void skipComment() {
    if (current() == '#') {
      position_ = std::min(text_.find('\n', position_), text_.size());
    }
  }
  void skipBlankLines() {
    do {
      position_ = std::min(text_.find_first_not_of(" \t\r\n", position_), text_.size());
      skipComment();
    } while (current() == '\n');
  }
  bool endLine() {
    skipBlanks();
    skipComment();
    (void)skip("\r");
    return isAtEnd() || skip("\n");
  }

  std::optional<std::string> key() {
    if (current() == '"' || current() == '\'') {
      return string(/*mayHaveLines=*/false);
    }
    const std::size_t begin = position_;
    while (isBareKeyByte(current())) {
      ++position_;
    }
    return position_ > begin ? std::optional(std::string(text_.substr(begin, position_ - begin)))
                             : std::nullopt;
  }

  std::optional<Keys> keys() {
    Keys result;
    do {
      skipBlanks();
      std::optional<std::string> part = key();
      if (!part || result.size() == maximumDepth) {
        return std::nullopt;
      }
      result.push_back(std::move(*part));
      skipBlanks();
    } while (skip("."));
    return result;
  }

  /// The object that the first `count` keys lead to. Makes what is missing. A null pointer when another value
  /// is in the way.
  static JSONValue* descend(JSONValue* from, const Keys& keys, std::size_t count) {
    for (std::size_t i = 0; i < count && from != nullptr; ++i) {
      JSONValue& next = (*from->objectValue())[keys[i]];
      if (next.isNull()) {
        next = JSONObject{};
      }
      from = next.objectValue() != nullptr ? &next : nullptr;
    }
    return from;
  }

  /// [a.b], or [[a.b]], which begins a new table in an array.
  JSONValue* header(JSONValue& root) {
    const bool isElement = skip("[[") || !skip("[");
    const std::optional<Keys> names = keys();
    if (!names || !skip(isElement ? "]]" : "]")) {
      return nullptr;
    }
    JSONValue* table = descend(&root, *names, names->size());
    if (isElement && table != nullptr) {
      *table = JSONObject{};
    }
    return table;
  }

  bool member(JSONValue& table, std::size_t depth) {
    const std::optional<Keys> names = keys();
    JSONValue* holder = names ? descend(&table, *names, names->size() - 1) : nullptr;
    if (holder == nullptr || !skip("=")) {
      return false;
    }
    skipBlanks();
    std::optional<JSONValue> found = value(depth);
    if (found) {
      (*holder->objectValue())[names->back()] = std::move(*found);
    }
    return found.has_value();
  }

  std::optional<JSONValue> value(std::size_t depth) {
    if (depth == maximumDepth) {
      return std::nullopt;
    }
    if (current() == '"' || current() == '\'') {
      std::optional<std::string> found = string(/*mayHaveLines=*/true);
      return found ? std::optional<JSONValue>(std::move(*found)) : std::nullopt;
    }
    return current() == '[' ? array(depth) : current() == '{' ? inlineTable(depth) : plainValue();
  }

  std::optional<JSONValue> array(std::size_t depth) {
    JSONArray elements;
    (void)skip("[");
    for (skipBlankLines(); !skip("]"); skipBlankLines()) {
      std::optional<JSONValue> element = value(depth + 1);
      skipBlankLines();
      if (!element || (!skip(",") && current() != ']')) {
        return std::nullopt;
      }
      elements.push_back(std::move(*element));
    }
    return elements;
  }

  std::optional<JSONValue> inlineTable(std::size_t depth) {
    JSONValue table = JSONObject{};
    (void)skip("{");
    for (skipBlankLines(); !skip("}"); skipBlankLines()) {
      if (!member(table, depth + 1)) {
        return std::nullopt;
      }
      skipBlankLines();
      if (!skip(",") && current() != '}') {
        return std::nullopt;
      }
    }
    return table;
  }

  /// A number, a date, a time, true or false.
  std::optional<JSONValue> plainValue() {
    const std::size_t end = std::min(text_.find_first_of(",]}#\r\n", position_), text_.size());
    std::string_view found = text_.substr(position_, end - position_);
    found = found.substr(0, found.find_last_not_of(" \t") + 1);
    if (found.empty() || found.find_first_of("\"'=[{") != found.npos) {
      return std::nullopt;
    }
    position_ += found.size();
    if (found == "true" || found == "false") {
      return JSONValue::of(found == "true");
    }
    return JSONValue(found);
  }

  std::optional<std::string> string(bool mayHaveLines) {
    const char quote = current();
    const std::string three(3, quote);
    const bool hasLines = mayHaveLines && skip(three);
    if (hasLines) {
      (void)(skip("\r\n") || skip("\n"));
    } else {
      ++position_;
    }
    const std::string_view closing =
        hasLines ? std::string_view(three) : std::string_view(three).substr(0, 1);
    std::string result;
    while (!skip(closing)) {
      if (isAtEnd() || (!hasLines && current() == '\n')) {
        return std::nullopt;
      }
      if (quote == '"' && current() == '\\') {
        if (!escape(result, hasLines)) {
          return std::nullopt;
        }
      } else {
        result += text_[position_++];
      }
    }
    // Up to two more quotes may stand right before the closing three.
    while (hasLines && current() == quote) {
      result += quote;
      ++position_;
    }
    return result;
  }

  bool escape(std::string& result, bool hasLines) {
    ++position_;
    constexpr std::string_view letters = "btnfre\"\\";
    constexpr std::string_view meanings = "\b\t\n\f\r\x1B\"\\";
    const std::size_t letter = isAtEnd() ? letters.npos : letters.find(current());
    if (letter != letters.npos) {
      result += meanings[letter];
      ++position_;
      return true;
    }
    if (skip("u")) {
      return codePoint(result, 4);
    }
    if (skip("U")) {
      return codePoint(result, 8);
    }
    // A line that ends so continues with the next text.
    const std::size_t next = std::min(text_.find_first_not_of(" \t\r\n", position_), text_.size());
    const bool endsLine = text_.substr(position_, next - position_).find('\n') != text_.npos;
    position_ = next;
    return hasLines && endsLine;
  }

  bool codePoint(std::string& result, std::size_t digits) {
    char32_t value = 0;
    for (std::size_t i = 0; i < digits; ++i, ++position_) {
      constexpr std::string_view hexadecimal = "0123456789abcdef";
      const char lower = static_cast<char>(current() >= 'A' && current() <= 'F' ? current() + 32 : current());
      const std::size_t digit = isAtEnd() ? hexadecimal.npos : hexadecimal.find(lower);
      if (digit == hexadecimal.npos) {
        return false;
      }
      value = value * 16 + static_cast<char32_t>(digit);
    }
    if (value > 0x10FFFF || (value >= 0xD800 && value <= 0xDFFF)) {
      return false;
    }
    appendCodePoint(result, value);
    return true;
  }

  std::string_view text_;
  std::size_t position_ = 0;
};

}  // namespace

std::variant<JSONValue, std::size_t> decodeTOML(std::string_view text,
                                                std::vector<std::string_view>* statements) {
  TOMLReader reader(text);
  std::optional<JSONValue> document =
      text.size() <= maximumTOMLSize && isValidUTF8(text) ? reader.document(statements) : std::nullopt;
  if (!document) {
    return reader.line();
  }
  return std::move(*document);
}

}  // namespace tarnwell
