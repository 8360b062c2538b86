/// How a `JSONValue` is written (RFC 8259). Straight from the value into one text: the library's way leads
/// over a second tree of its own.

#include <charconv>
#include <cmath>
#include <limits>
#include <nlohmann/json.hpp>

#include "MCP/JSONText.h"
#include "MCP/JSONValue.h"

namespace tarnwell {

namespace {

enum class Layout { compact, indented };

/// About as many bytes as the value takes when nothing in it is escaped; all of them when it is one long
/// text.
std::size_t likelySize(const JSONValue& value) {
  constexpr std::size_t marks = 4;  // quotation marks, colon, comma
  constexpr std::size_t longestNumber = 20;
  if (const auto* text = std::get_if<std::string>(&value.payload())) {
    return text->size() + marks;
  }
  std::size_t size = longestNumber;
  if (const JSONArray* elements = value.arrayValue()) {
    for (const JSONValue& element : *elements) {
      size += likelySize(element);
    }
  } else if (const JSONObject* members = value.objectValue()) {
    for (const auto& [key, member] : *members) {
      size += key.size() + marks + likelySize(member);
    }
  }
  return size;
}

class Writer {
 public:
  explicit Writer(Layout layout) : layout_(layout) {}

  /// Absent for a value without a JSON form.
  std::optional<std::string> written(const JSONValue& value) && {
    // A text of tens of megabytes is written once and never moved; bytes that are not used take no memory.
    text_.reserve(likelySize(value));
    write(value);
    return isWritable_ ? std::optional(std::move(text_)) : std::nullopt;
  }

 private:
  static constexpr std::size_t indentation = 2;

  void write(const JSONValue& value) {
    const JSONValue::Payload& payload = value.payload();
    if (const auto* text = std::get_if<std::string>(&payload)) {
      writeText(*text);
    } else if (const auto* integer = std::get_if<std::int64_t>(&payload)) {
      writeInteger(*integer);
    } else if (const JSONObject* members = value.objectValue()) {
      writeContainer('{', '}', *members, [this](const JSONMember& member) { writeMember(member); });
    } else if (const JSONArray* elements = value.arrayValue()) {
      writeContainer('[', ']', *elements, [this](const JSONValue& element) { write(element); });
    } else if (const auto* number = std::get_if<double>(&payload)) {
      writeDouble(*number);
    } else if (const auto* boolean = std::get_if<bool>(&payload)) {
      text_ += *boolean ? "true" : "false";
    } else {
      text_ += "null";
    }
  }

  void writeInteger(std::int64_t value) {
    char digits[std::numeric_limits<std::int64_t>::digits10 + 2];
    text_.append(digits, std::to_chars(std::begin(digits), std::end(digits), value).ptr);
  }

  /// In the library's words: the shortest that reads back as the same number, and never like an integer.
  void writeDouble(double value) {
    isWritable_ = isWritable_ && std::isfinite(value);
    text_ += nlohmann::json(value).dump();
  }

  void writeMember(const JSONMember& member) {
    writeText(member.first);
    text_ += ':';
    if (layout_ == Layout::indented) {
      text_ += ' ';
    }
    write(member.second);
  }

  template <class Container, class WriteElement>
  void writeContainer(char open, char close, const Container& elements, const WriteElement& writeElement) {
    text_ += open;
    ++depth_;
    bool isFirst = true;
    for (const auto& element : elements) {
      if (!isFirst) {
        text_ += ',';
      }
      isFirst = false;
      beginLine();
      writeElement(element);
    }
    --depth_;
    if (!isFirst) {
      beginLine();
    }
    text_ += close;
  }

  void beginLine() {
    if (layout_ == Layout::indented) {
      text_ += '\n';
      text_.append(depth_ * indentation, ' ');
    }
  }

  void writeText(std::string_view value) {
    text_ += '"';
    const char* const end = value.data() + value.size();
    for (const char* begin = value.data();;) {
      const char* const next = endOfPlainRun(begin, end);
      text_.append(std::string_view(begin, next));
      if (next == end || static_cast<unsigned char>(*next) >= 0x80) {
        isWritable_ = isWritable_ && next == end;
        break;
      }
      writeEscaped(*next);
      begin = next + 1;
    }
    text_ += '"';
  }

  void writeEscaped(char character) {
    constexpr std::string_view named = "\"\\\b\f\n\r\t";
    constexpr std::string_view letters = "\"\\bfnrt";
    constexpr std::string_view digits = "0123456789abcdef";
    text_ += '\\';
    if (const std::size_t found = named.find(character); found != std::string_view::npos) {
      text_ += letters[found];
    } else {
      const auto byte = static_cast<unsigned char>(character);
      text_ += "u00";
      text_ += digits[byte >> 4];
      text_ += digits[byte & 0x0F];
    }
  }

  Layout layout_;
  std::string text_;
  std::size_t depth_ = 0;
  bool isWritable_ = true;
};

}  // namespace

std::string JSONValue::serialized() const { return Writer(Layout::compact).written(*this).value_or("null"); }

std::string JSONValue::prettyString() const { return Writer(Layout::indented).written(*this).value_or("{}"); }

}  // namespace tarnwell
