#include "MCP/JSON/JSONValue.h"

#include <algorithm>
#include <functional>

#include "Text/DecimalNumber.h"

namespace tarnwell {

namespace {

std::optional<std::int64_t> integerFromDouble(double number) {
  constexpr double bound = 9223372036854775808.0;  // 2^63
  if (!(number >= -bound && number < bound)) {     // also false for NaN
    return std::nullopt;
  }
  return static_cast<std::int64_t>(number);
}

std::vector<JSONMember> moved(std::initializer_list<JSONObject::Given> given) {
  std::vector<JSONMember> members;
  members.reserve(given.size());
  for (const JSONObject::Given& member : given) {
    members.push_back({std::string(member.key), std::move(member.value)});
  }
  return members;
}

}  // namespace

JSONObject::JSONObject(std::initializer_list<Given> members) : JSONObject(moved(members)) {}

JSONObject::JSONObject(std::vector<JSONMember> members) : members_(std::move(members)) { putInOrder(); }

void JSONObject::putInOrder() {
  if (std::ranges::is_sorted(members_, std::less_equal(), &JSONMember::first)) {
    return;
  }
  // Not with a stable sort: the one of Debian 12's library uses what C++17 deprecates, and Clang 19 warns.
  std::vector<JSONMember*> places;
  places.reserve(members_.size());
  for (JSONMember& member : members_) {
    places.push_back(&member);
  }
  std::ranges::sort(places, {}, [](JSONMember* place) {
    return std::pair<std::string_view, JSONMember*>(place->first, place);
  });
  std::vector<JSONMember> ordered;
  ordered.reserve(members_.size());
  for (JSONMember* place : places) {
    if (!ordered.empty() && ordered.back().first == place->first) {
      ordered.pop_back();  // the last of several with the same key stays
    }
    ordered.push_back(std::move(*place));
  }
  members_ = std::move(ordered);
}

std::vector<JSONMember>::const_iterator JSONObject::placeOf(std::string_view key) const {
  return std::ranges::lower_bound(members_, key, {}, &JSONMember::first);
}

const JSONValue* JSONObject::find(std::string_view key) const {
  const auto place = placeOf(key);
  return place != members_.end() && place->first == key ? &place->second : nullptr;
}

JSONValue* JSONObject::find(std::string_view key) {
  return const_cast<JSONValue*>(std::as_const(*this).find(key));
}

JSONValue& JSONObject::operator[](std::string_view key) {
  emplace(key, nullptr);
  return *find(key);
}

void JSONObject::emplace(std::string_view key, JSONValue value) {
  if (!find(key)) {
    members_.emplace(placeOf(key), key, std::move(value));
  }
}

bool JSONObject::operator==(const JSONObject& other) const { return members_ == other.members_; }

JSONValue JSONValue::of(std::optional<std::string> text) {
  return text ? JSONValue(std::move(*text)) : JSONValue();
}

JSONValue JSONValue::of(std::optional<std::int64_t> integer) {
  return integer ? JSONValue(*integer) : JSONValue();
}

JSONValue JSONValue::of(std::optional<double> number) { return number ? JSONValue(*number) : JSONValue(); }

JSONValue JSONValue::of(bool value) { return value; }

JSONValue JSONValue::strings(const std::vector<std::string>& texts) {
  return JSONArray(texts.begin(), texts.end());
}

std::optional<std::string> JSONValue::stringValue() const {
  const auto* text = std::get_if<std::string>(&payload_);
  return text ? std::optional(*text) : std::nullopt;
}

std::optional<bool> JSONValue::boolValue() const {
  if (const auto* value = std::get_if<bool>(&payload_)) {
    return *value;
  }
  if (const auto* integer = std::get_if<std::int64_t>(&payload_)) {
    return *integer != 0;
  }
  return std::nullopt;
}

std::optional<std::int64_t> JSONValue::intValue() const {
  if (const auto* integer = std::get_if<std::int64_t>(&payload_)) {
    return *integer;
  }
  if (const auto* number = std::get_if<double>(&payload_)) {
    return integerFromDouble(*number);
  }
  if (const auto* text = std::get_if<std::string>(&payload_)) {
    return decimalNumber<std::int64_t>(*text, Sign::plusOrMinus);
  }
  return std::nullopt;
}

std::optional<double> JSONValue::doubleValue() const {
  if (const auto* number = std::get_if<double>(&payload_)) {
    return *number;
  }
  if (const auto* integer = std::get_if<std::int64_t>(&payload_)) {
    return static_cast<double>(*integer);
  }
  return std::nullopt;
}

const JSONValue* JSONValue::member(std::string_view key) const {
  const JSONObject* members = objectValue();
  return members ? members->find(key) : nullptr;
}

const JSONValue& JSONValue::operator[](std::string_view key) const {
  static const JSONValue null;
  const JSONValue* value = member(key);
  return value ? *value : null;
}

// Written out: Clang 14 crashes on a defaulted comparison of a type that contains itself.
bool JSONValue::operator==(const JSONValue& other) const { return payload_ == other.payload_; }

}  // namespace tarnwell
