/// Reads and writes a `JSONValue` (RFC 8259) with the library. The library's parser reports each part of a
/// document, and the value is built from these reports. So nesting is limited during the parse, and nothing
/// is built twice.

#include <cmath>
#include <nlohmann/json.hpp>

#include "MCP/JSON/JSONValue.h"
#include "Text/UTF8.h"

namespace tarnwell {

namespace {

using nlohmann::json;

/// The library's parser calls it for each part of a document, and stops at the first `false`.
class ValueBuilder {
 public:
  JSONValue value() && { return std::move(value_); }
  bool null() { return add(nullptr); }
  bool boolean(bool value) { return add(value); }
  bool number_integer(std::int64_t value) { return add(value); }
  /// Called only for numbers that are not negative.
  bool number_unsigned(std::uint64_t value) {
    return std::in_range<std::int64_t>(value) ? add(static_cast<std::int64_t>(value))
                                              : add(static_cast<double>(value));
  }
  bool number_float(double value, const std::string&) { return add(value); }
  bool string(std::string& text) { return add(std::move(text)); }
  bool binary(json::binary_t&) { return false; }  // not part of JSON

  bool start_array(std::size_t) { return open(JSONArray()); }
  bool end_array() { return add(closed<JSONArray>()); }
  bool start_object(std::size_t) { return open(Members()); }
  bool key(std::string& text) {
    std::get<Members>(open_.back()).emplace_back(std::move(text), nullptr);
    return true;
  }
  bool end_object() { return add(JSONObject(closed<Members>())); }

  bool parse_error(std::size_t, const std::string&, const json::exception&) { return false; }

 private:
  using Members = std::vector<JSONMember>;

  /// Adds the value to the innermost array or object. Without one the value is the whole document.
  bool add(JSONValue value) {
    if (open_.empty()) {
      value_ = std::move(value);
    } else if (auto* elements = std::get_if<JSONArray>(&open_.back())) {
      elements->push_back(std::move(value));
    } else {
      std::get<Members>(open_.back()).back().second = std::move(value);
    }
    return true;
  }

  bool open(std::variant<JSONArray, Members> parts) {
    if (open_.size() == JSONValue::maximumDepth) {
      return false;
    }
    open_.push_back(std::move(parts));
    return true;
  }

  template <class Parts>
  Parts closed() {
    auto parts = std::get<Parts>(std::move(open_.back()));
    open_.pop_back();
    return parts;
  }

  std::vector<std::variant<JSONArray, Members>> open_;  // innermost last
  JSONValue value_;
};

/// About the size in bytes of the written value when nothing in it is escaped.
std::size_t likelySize(const JSONValue& value) {
  std::size_t size = 24;  // the longest number, or the marks around a text
  if (const auto* text = std::get_if<std::string>(&value.payload())) {
    size += text->size();
  } else if (const JSONArray* elements = value.arrayValue()) {
    for (const JSONValue& element : *elements) {
      size += likelySize(element);
    }
  } else if (const JSONObject* members = value.objectValue()) {
    for (const auto& [key, member] : *members) {
      size += key.size() + likelySize(member);
    }
  }
  return size;
}

/// Joins the texts that the library writes for each text and number. To write a whole value, the library
/// would need its own tree, with a copy of texts of tens of megabytes.
class Writer {
 public:
  explicit Writer(bool isIndented) : isIndented_(isIndented) {}

  /// Returns the placeholder for a value without a JSON form.
  std::string writtenOr(const char* placeholder, const JSONValue& value) && {
    text_.reserve(likelySize(value));
    try {
      write(value);
    } catch (const json::exception&) {
      return placeholder;
    }
    return std::move(text_);
  }

 private:
  void write(const JSONValue& value) {
    std::visit([this](const auto& payload) { put(payload); }, value.payload());
  }

  /// Writes null, a boolean or an integer.
  template <class Simple>
  void put(Simple value) {
    text_ += json(value).dump();
  }

  void put(double value) {
    const json number = value;
    if (!std::isfinite(value)) {
      throw json::other_error::create(501, "not a finite number", &number);
    }
    text_ += number.dump();
  }

  /// Writes in pieces, because the library copies what it writes.
  void put(const std::string& text) {
    constexpr std::size_t pieceSize = 65'536;
    text_ += '"';
    for (std::string_view rest = text; !rest.empty();) {
      const std::string_view piece = bytePrefix(rest, pieceSize);
      const std::string quoted = json(piece).dump();
      text_.append(quoted, 1, quoted.size() - 2);
      rest.remove_prefix(piece.size());
    }
    text_ += '"';
  }

  void put(const JSONArray& elements) {
    putParts('[', ']', elements, [this](const JSONValue& element) { write(element); });
  }

  void put(const JSONObject& members) {
    putParts('{', '}', members, [this](const JSONMember& member) {
      put(member.first);
      text_ += isIndented_ ? ": " : ":";
      write(member.second);
    });
  }

  template <class Parts, class WritePart>
  void putParts(char open, char close, const Parts& parts, const WritePart& writePart) {
    text_ += open;
    ++depth_;
    for (bool isFirst = true; const auto& part : parts) {
      text_ += std::exchange(isFirst, false) ? "" : ",";
      beginLine();
      writePart(part);
    }
    --depth_;
    if (parts.begin() != parts.end()) {
      beginLine();
    }
    text_ += close;
  }

  void beginLine() {
    constexpr std::size_t indentation = 2;
    if (isIndented_) {
      text_ += '\n';
      text_.append(depth_ * indentation, ' ');
    }
  }

  bool isIndented_;
  std::string text_;
  std::size_t depth_ = 0;
};

}  // namespace

std::optional<JSONValue> JSONValue::decode(std::string_view data) {
  // The library ends the text at a zero byte and would ignore the rest.
  if (data.find('\0') != std::string_view::npos) {
    return std::nullopt;
  }
  ValueBuilder builder;
  return json::sax_parse(data, &builder) ? std::optional(std::move(builder).value()) : std::nullopt;
}

std::string JSONValue::serialized() const { return Writer(false).writtenOr("null", *this); }

std::string JSONValue::prettyString() const { return Writer(true).writtenOr("{}", *this); }

}  // namespace tarnwell
