#pragma once

/// The only in-memory form of JSON (RFC 8259): messages, tool arguments, results and schemas.
///
///     JSONValue result = JSONObject{{"count", 2}, {"names", JSONValue::strings({"a", "b"})}};
///     result["count"].intValue();      // 2
///     result["missing"].stringValue(); // absent
///     result.serialized();             // {"count":2,"names":["a","b"]}
///
/// A text may have tens of megabytes. Moving a text into a value, or into the members of an object, does not
/// copy it:
///
///     JSONObject{{"uid", 7}, {"body", std::move(body)}}
///
/// A number without fraction and exponent that fits 64 bits is an integer. Any other number is a double.
/// `true` is not a number. Texts are UTF-8.
///
/// Threads: a plain value.

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace tarnwell {

class JSONValue;

/// A key and its value.
using JSONMember = std::pair<std::string, JSONValue>;

/// Members sorted by their keys, each key once. They are encoded in this order. Making an object of n members
/// at once, as with the braces above, takes n log n steps. Each single insertion takes n steps.
class JSONObject {
 public:
  struct Given;

  JSONObject() = default;
  /// If several members have the same key, the last one counts. The values are moved.
  JSONObject(std::initializer_list<Given> members);
  explicit JSONObject(std::vector<JSONMember> members);

  std::size_t size() const;
  std::vector<JSONMember>::const_iterator begin() const;
  std::vector<JSONMember>::const_iterator end() const;

  /// Returns a null pointer when there is no such member.
  const JSONValue* find(std::string_view key) const;
  JSONValue* find(std::string_view key);

  /// The member with this key. A new member is null.
  JSONValue& operator[](std::string_view key);
  /// Does not change an existing member.
  void emplace(std::string_view key, JSONValue value);

  bool operator==(const JSONObject&) const;

 private:
  /// Sorts the members. Of several with the same key it keeps the last one.
  void putInOrder();
  /// The place of the member with this key, or where it would be.
  std::vector<JSONMember>::const_iterator placeOf(std::string_view key) const;

  std::vector<JSONMember> members_;
};

using JSONArray = std::vector<JSONValue>;

class JSONValue {
 public:
  using Null = std::nullptr_t;
  using Payload = std::variant<Null, bool, std::int64_t, double, std::string, JSONArray, JSONObject>;

  /// Deeper nesting of arrays and objects is not parsed.
  static constexpr std::size_t maximumDepth = 512;

  JSONValue(Null = nullptr) : payload_(nullptr) {}
  template <std::same_as<bool> Bool>
  JSONValue(Bool value) : payload_(value) {}
  template <std::integral Integer>
    requires(!std::same_as<Integer, bool> && sizeof(Integer) <= sizeof(std::int64_t) &&
             (std::signed_integral<Integer> || sizeof(Integer) < sizeof(std::int64_t)))
  JSONValue(Integer value) : payload_(static_cast<std::int64_t>(value)) {}
  JSONValue(double value) : payload_(value) {}
  JSONValue(const char* text) : payload_(std::string(text)) {}
  JSONValue(std::string_view text) : payload_(std::string(text)) {}
  JSONValue(std::string text) : payload_(std::move(text)) {}
  JSONValue(JSONArray elements) : payload_(std::move(elements)) {}
  JSONValue(JSONObject members) : payload_(std::move(members)) {}

  /// An absent value gives null.
  static JSONValue of(std::optional<std::string> text);
  static JSONValue of(std::optional<std::int64_t> integer);
  static JSONValue of(std::optional<double> number);
  static JSONValue of(bool value);
  static JSONValue strings(const std::vector<std::string>& texts);

  /// Parses one JSON document. Absent for anything else: trailing text, invalid UTF-8, a lone surrogate, a
  /// number beyond the range of a double, or nesting beyond `maximumDepth`. Of two members with the same key
  /// the last one counts.
  static std::optional<JSONValue> decode(std::string_view data);

  /// Compact, with "/" unescaped. The text `null` when the value has no JSON form: it has a double that is
  /// not finite, or a text that is not UTF-8.
  std::string serialized() const;

  /// With line breaks, indentation and sorted keys, and "/" unescaped. "{}" when the value has no JSON form.
  std::string prettyString() const;

  bool isNull() const { return std::holds_alternative<Null>(payload_); }

  std::optional<std::string> stringValue() const;
  /// Also accepts an integer, which is true unless it is 0.
  std::optional<bool> boolValue() const;
  /// Also accepts a finite double within 64 bits, cut toward zero, and a text of digits with an optional
  /// sign.
  std::optional<std::int64_t> intValue() const;
  /// Also accepts an integer.
  std::optional<double> doubleValue() const;
  /// Null pointers for every other kind of value.
  const JSONArray* arrayValue() const { return std::get_if<JSONArray>(&payload_); }
  const JSONObject* objectValue() const { return std::get_if<JSONObject>(&payload_); }
  JSONObject* objectValue() { return std::get_if<JSONObject>(&payload_); }

  /// The member with this key. A null pointer when it is missing or this is not an object.
  const JSONValue* member(std::string_view key) const;
  /// The same, but null for a missing member.
  const JSONValue& operator[](std::string_view key) const;

  const Payload& payload() const { return payload_; }

  /// Equal kind and equal payloads. The integer 1 and the double 1.0 differ.
  bool operator==(const JSONValue&) const;

 private:
  Payload payload_;
};

inline std::size_t JSONObject::size() const { return members_.size(); }
inline std::vector<JSONMember>::const_iterator JSONObject::begin() const { return members_.begin(); }
inline std::vector<JSONMember>::const_iterator JSONObject::end() const { return members_.end(); }

/// A member of a braced list. The elements of such a list are constant. Because of `mutable` the value can
/// still be moved.
struct JSONObject::Given {
  std::string_view key;
  mutable JSONValue value;
};

}  // namespace tarnwell
