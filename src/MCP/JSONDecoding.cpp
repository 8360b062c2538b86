/// How a `JSONValue` is read (RFC 8259): in one walk over the bytes and without the call stack. Every part is
/// built in its final place; open arrays and objects wait on a stack of their own, whose height is bounded.
///
/// The library's parser, with which the tests compare it, takes five times the steps for a short request.

#include <array>
#include <charconv>
#include <nlohmann/json.hpp>

#include "MCP/JSONText.h"
#include "MCP/JSONValue.h"
#include "Platform/UTF8.h"

namespace tarnwell {

class JSONReader {
 public:
  explicit JSONReader(std::string_view data) : data_(data) {}

  std::optional<JSONValue> document() {
    if (!readDocument()) {
      return std::nullopt;
    }
    if (auto* object = std::get_if<JSONObject>(&result_.payload_)) {
      object->putInOrder();
    }
    return std::move(result_);
  }

  std::optional<std::vector<JSONMember>> membersOfDocument() {
    auto* object = readDocument() ? std::get_if<JSONObject>(&result_.payload_) : nullptr;
    return object ? std::optional(std::move(object->members_)) : std::nullopt;
  }

 private:
  /// All but the order of the members of the outermost object.
  bool readDocument() {
    bool isReadable = beginValue(result_);
    while (isReadable && depth_ > 0) {
      JSONValue& innermost = *open_[depth_ - 1];
      auto* object = std::get_if<JSONObject>(&innermost.payload_);
      isReadable = object ? continueObject(*object) : continueArray(std::get<JSONArray>(innermost.payload_));
    }
    skipBlanks();
    return isReadable && next_ == data_.size();
  }

  /// Reads a value without parts, or opens an array or object.
  bool beginValue(JSONValue& value) {
    skipBlanks();
    switch (peek()) {
      case '{':
        return open(value, JSONObject());
      case '[':
        return open(value, JSONArray());
      case '"':
        return readText(value.payload_.emplace<std::string>());
      case 't':
        value.payload_ = true;
        return take("true");
      case 'f':
        value.payload_ = false;
        return take("false");
      case 'n':
        return take("null");
      default:
        return readNumber(value);
    }
  }

  template <class Empty>
  bool open(JSONValue& value, Empty empty) {
    ++next_;
    if (depth_ == open_.size()) {
      return false;
    }
    value.payload_ = std::move(empty);
    open_[depth_++] = &value;
    return true;
  }

  /// Reads the next element as far as `beginValue` goes, or the end of the array.
  bool continueArray(JSONArray& elements) {
    skipBlanks();
    if (take(']')) {
      --depth_;
      return true;
    }
    return (elements.empty() || take(',')) && beginValue(elements.emplace_back());
  }

  /// Reads the next member as far as `beginValue` goes, or the end of the object.
  bool continueObject(JSONObject& object) {
    constexpr std::size_t usualCount = 4;
    std::vector<JSONMember>& members = object.members_;
    skipBlanks();
    if (take('}')) {
      --depth_;
      if (depth_ > 0) {  // the outermost object is left to the caller
        object.putInOrder();
      }
      return true;
    }
    if (members.empty()) {
      members.reserve(usualCount);
    } else if (!take(',')) {
      return false;
    }
    auto& [key, value] = members.emplace_back();
    return readKey(key) && beginValue(value);
  }

  bool readKey(std::string& key) {
    skipBlanks();
    if (peek() != '"' || !readText(key)) {
      return false;
    }
    skipBlanks();
    return take(':');
  }

  /// Stands at the quotation mark before the text.
  bool readText(std::string& text) {
    ++next_;
    for (;;) {
      const std::size_t end = endOfPlainRun(data_, next_);
      text.append(data_, next_, end - next_);
      next_ = end;
      if (!take('\\')) {
        return take('"');
      }
      if (!readEscaped(text)) {
        return false;
      }
    }
  }

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
    const std::string_view digits = data_.substr(next_, 4);
    std::uint32_t value = 0;
    const char* const end = std::from_chars(digits.data(), digits.data() + digits.size(), value, 16).ptr;
    next_ += digits.size();
    return digits.size() == 4 && end == digits.data() + 4 ? std::optional<char32_t>(value) : std::nullopt;
  }

  bool readNumber(JSONValue& value) {
    const std::size_t begin = next_;
    take('-');
    if (!take('0') && !takeDigits()) {
      return false;
    }
    const std::size_t endOfInteger = next_;
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
    const std::string_view text = data_.substr(begin, next_ - begin);
    std::int64_t integer = 0;
    if (next_ == endOfInteger &&
        std::from_chars(text.data(), text.data() + text.size(), integer).ec == std::errc()) {
      value.payload_ = integer;
      return true;
    }
    return readDouble(text, value);
  }

  bool takeDigits() {
    const std::size_t begin = next_;
    while (peek() >= '0' && peek() <= '9') {
      ++next_;
    }
    return next_ > begin;
  }

  /// In the library's words: the nearest double whatever the locale, and none for a number beyond all of
  /// them.
  static bool readDouble(std::string_view text, JSONValue& value) {
    const nlohmann::json number = nlohmann::json::parse(text, nullptr, false);
    if (!number.is_number()) {
      return false;
    }
    value.payload_ = number.get<double>();
    return true;
  }

  void skipBlanks() {
    while (peek() == ' ' || peek() == '\n' || peek() == '\r' || peek() == '\t') {
      ++next_;
    }
  }

  /// A zero byte, which no document has, at the end.
  char peek() const { return next_ < data_.size() ? data_[next_] : '\0'; }

  bool take(char byte) {
    if (next_ == data_.size() || data_[next_] != byte) {
      return false;
    }
    ++next_;
    return true;
  }

  bool take(std::string_view word) {
    if (!data_.substr(next_).starts_with(word)) {
      return false;
    }
    next_ += word.size();
    return true;
  }

  std::string_view data_;
  std::size_t next_ = 0;
  std::array<JSONValue*, JSONValue::maximumDepth> open_;  // arrays and objects, innermost last
  std::size_t depth_ = 0;                                 // of `open_`, the used part
  JSONValue result_;
};

namespace {

std::string_view withoutByteOrderMark(std::string_view data) {
  constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
  return data.starts_with(byteOrderMark) ? data.substr(byteOrderMark.size()) : data;
}

}  // namespace

std::optional<JSONValue> JSONValue::decode(std::string_view data) {
  return JSONReader(withoutByteOrderMark(data)).document();
}

std::optional<std::vector<JSONMember>> JSONObject::decodeMembers(std::string_view data) {
  return JSONReader(withoutByteOrderMark(data)).membersOfDocument();
}

}  // namespace tarnwell
