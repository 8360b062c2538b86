/// How a `JSONValue` is read (RFC 8259): in one walk over the bytes and without the call stack. Every part is
/// built in its final place; open arrays and objects wait on a stack of their own, whose height is bounded.
///
/// The library's parser, with which the tests compare it, takes five times the steps for a short request.

#include <array>

#include "MCP/JSONScanner.h"
#include "MCP/JSONValue.h"

namespace tarnwell {

class JSONReader {
 public:
  explicit JSONReader(std::string_view data) : words_(data) {}

  std::optional<JSONValue> document() {
    JSONValue value;
    return readValue(value) && isAtEnd() ? std::optional(std::move(value)) : std::nullopt;
  }

  bool readMembers(std::span<const JSONObject::Wanted> wanted) {
    words_.skipBlanks();
    if (!words_.take('{')) {
      return false;
    }
    open_[depth_++] = nullptr;  // counts, but no object is made
    std::string unescaped;
    for (bool isFirst = true;; isFirst = false) {
      words_.skipBlanks();
      if (words_.take('}')) {
        return isAtEnd();
      }
      if (!isFirst && !words_.take(',')) {
        return false;
      }
      const std::optional<std::string_view> key = readKey(unescaped);
      if (!key || !readMember(*key, wanted)) {
        return false;
      }
    }
  }

 private:
  bool readMember(std::string_view key, std::span<const JSONObject::Wanted> wanted) {
    for (const JSONObject::Wanted& member : wanted) {
      if (member.key == key) {
        return readValue(member.value.emplace());
      }
    }
    JSONValue unwanted;
    return readValue(unwanted);
  }

  /// A value with all its parts.
  bool readValue(JSONValue& value) {
    const std::size_t outside = depth_;
    bool isReadable = beginValue(value);
    while (isReadable && depth_ > outside) {
      JSONValue& innermost = *open_[depth_ - 1];
      auto* object = std::get_if<JSONObject>(&innermost.payload_);
      isReadable = object ? continueObject(*object) : continueArray(std::get<JSONArray>(innermost.payload_));
    }
    return isReadable;
  }

  bool isAtEnd() {
    words_.skipBlanks();
    return words_.isAtEnd();
  }

  /// Reads a value without parts, or opens an array or object.
  bool beginValue(JSONValue& value) {
    words_.skipBlanks();
    switch (words_.peek()) {
      case '{':
        return words_.take('{') && open(value, JSONObject());
      case '[':
        return words_.take('[') && open(value, JSONArray());
      case '"':
        if (const std::optional<std::string_view> text = words_.takePlainText()) {
          value.payload_.emplace<std::string>(*text);
          return true;
        }
        return words_.readText(value.payload_.emplace<std::string>());
      case 't':
        value.payload_ = true;
        return words_.take("true");
      case 'f':
        value.payload_ = false;
        return words_.take("false");
      case 'n':
        return words_.take("null");
      default:
        return words_.readNumber(value.payload_);
    }
  }

  template <class Empty>
  bool open(JSONValue& value, Empty empty) {
    if (depth_ == open_.size()) {
      return false;
    }
    value.payload_ = std::move(empty);
    open_[depth_++] = &value;
    return true;
  }

  /// Reads the next element as far as `beginValue` goes, or the end of the array.
  bool continueArray(JSONArray& elements) {
    words_.skipBlanks();
    if (words_.take(']')) {
      --depth_;
      return true;
    }
    return (elements.empty() || words_.take(',')) && beginValue(elements.emplace_back());
  }

  /// Reads the next member as far as `beginValue` goes, or the end of the object.
  bool continueObject(JSONObject& object) {
    constexpr std::size_t usualCount = 4;
    std::vector<JSONMember>& members = object.members_;
    words_.skipBlanks();
    if (words_.take('}')) {
      --depth_;
      object.putInOrder();
      return true;
    }
    if (members.empty()) {
      members.reserve(usualCount);
    } else if (!words_.take(',')) {
      return false;
    }
    auto& [key, value] = members.emplace_back();
    const std::optional<std::string_view> text = readKey(key);
    if (!text) {
      return false;
    }
    key = *text;
    return beginValue(value);
  }

  /// The key, which lies in the input or, when it has escapes, in `unescaped`.
  std::optional<std::string_view> readKey(std::string& unescaped) {
    words_.skipBlanks();
    if (words_.peek() != '"') {
      return std::nullopt;
    }
    std::optional<std::string_view> key = words_.takePlainText();
    if (!key) {
      unescaped.clear();
      if (!words_.readText(unescaped)) {
        return std::nullopt;
      }
      key = unescaped;
    }
    words_.skipBlanks();
    return words_.take(':') ? key : std::nullopt;
  }

  JSONScanner words_;
  std::array<JSONValue*, JSONValue::maximumDepth> open_;  // arrays and objects, innermost last
  std::size_t depth_ = 0;                                 // of `open_`, the used part
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

bool JSONObject::decodeMembers(std::string_view data, std::span<const Wanted> wanted) {
  return JSONReader(withoutByteOrderMark(data)).readMembers(wanted);
}

}  // namespace tarnwell
