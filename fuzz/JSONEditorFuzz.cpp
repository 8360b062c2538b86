// Any text is edited, or refused by each function alike. An edit changes its member and no other byte: a new
// member is inserted whole, a member goes whole, and only blanks around it go with it. The comments of others
// stay. What was plain JSON stays plain JSON, with only that member changed.

#include <algorithm>
#include <optional>
#include <string>

#include "Fuzzing.h"
#include "JSONEditor/JSONEditor.h"

namespace tarnwell {
namespace {

using fuzz::require;

/// What one text has and another does not, at one place.
struct Difference {
  std::string_view removed, added;
};

Difference differenceOf(std::string_view before, std::string_view after) {
  const std::size_t common = std::min(before.size(), after.size());
  std::size_t prefix = 0;
  while (prefix < common && before[prefix] == after[prefix]) {
    ++prefix;
  }
  std::size_t suffix = 0;
  while (suffix < common - prefix && before[before.size() - 1 - suffix] == after[after.size() - 1 - suffix]) {
    ++suffix;
  }
  return {before.substr(prefix, before.size() - prefix - suffix),
          after.substr(prefix, after.size() - prefix - suffix)};
}

bool isBlank(std::string_view text) { return text.find_first_not_of(" \t\r\n") == std::string_view::npos; }

std::size_t prefixOf(std::string_view before, std::string_view after) {
  return static_cast<std::size_t>(std::ranges::mismatch(before, after).in1 - before.begin());
}

/// True when `longer` is `shorter` with one piece and perhaps a comma before or after it, apart from blanks
/// of `shorter` at the piece's place.
bool hasOnePieceMore(std::string_view shorter, std::string_view longer) {
  if (isBlank(differenceOf(shorter, longer).removed)) {
    return true;
  }
  const std::size_t first = prefixOf(shorter, longer);
  if (longer[first] == ',' &&
      isBlank(differenceOf(shorter.substr(first), longer.substr(first + 1)).removed)) {
    return true;
  }
  // The comma may also come after the piece.
  for (std::size_t comma = longer.find(',', first); comma != std::string_view::npos;
       comma = longer.find(',', comma + 1)) {
    const std::size_t rest = longer.size() - comma - 1;
    if (rest <= shorter.size() && shorter.ends_with(longer.substr(comma + 1)) &&
        isBlank(differenceOf(shorter.substr(0, shorter.size() - rest), longer.substr(0, comma)).removed)) {
      return true;
    }
  }
  return false;
}

/// The comments of a text, one after the other.
std::string commentsOf(std::string_view text) {
  std::string comments;
  for (std::size_t place = 0; place < text.size(); ++place) {
    std::size_t end = place;
    if (text[place] == '"') {
      for (end = place + 1; text[end] != '"'; ++end) {
        end += text[end] == '\\' ? 1U : 0U;
      }
    } else if (text.substr(place).starts_with("//")) {
      end = std::min(text.find_first_of("\r\n", place), text.size()) - 1;
      comments += text.substr(place, end + 1 - place);
    } else if (text.substr(place).starts_with("/*")) {
      end = text.find("*/", place + 2) + 1;
      comments += text.substr(place, end + 1 - place);
    }
    place = end;
  }
  return comments;
}

/// The value as merging makes it: members that only the old object has stay.
JSONValue merged(const JSONValue& old, const JSONValue& value) {
  if (!old.objectValue() || !value.objectValue()) {
    return value;
  }
  JSONValue result = old;
  for (const auto& [key, member] : *value.objectValue()) {
    JSONValue& place = (*result.objectValue())[key];
    place = merged(place, member);
  }
  return result;
}

void requirePlainJSON(std::string_view before, const std::string& after, const JSONPath& path,
                      const std::optional<JSONValue>& value) {
  std::optional<JSONValue> expected = JSONValue::decode(before);
  if (!expected) {
    return;
  }
  const std::optional<JSONValue> decoded = JSONValue::decode(after);
  require(decoded.has_value(), "plain JSON stays plain JSON");
  JSONValue* place = &*expected;
  for (std::size_t index = 0; index + 1 < path.size(); ++index) {
    place->objectValue()->emplace(path[index], JSONObject());
    place = place->objectValue()->find(path[index]);
  }
  JSONObject& object = *place->objectValue();
  if (value) {
    object[path.back()] = merged(object[path.back()], *value);
    require(*decoded == *expected, "only the member changes");
  } else {
    std::vector<JSONMember> rest(object.begin(), object.end());
    std::erase_if(rest, [&](const JSONMember& member) { return member.first == path.back(); });
    object = JSONObject(std::move(rest));
    require(*decoded == *expected, "only the member goes");
  }
}

void requireRemoval(const std::string& text, const JSONPath& path) {
  const std::string removed = withoutJSONMember(text, path);
  require(!jsonMember(removed, path), "a removed member is gone");
  require(withoutJSONMember(removed, path) == removed, "removing twice is the same as once");
  if (removed != text) {
    require(hasOnePieceMore(removed, text), "only the member goes");
    require(isBlank(differenceOf(commentsOf(text), commentsOf(removed)).added), "no comment comes or moves");
    requirePlainJSON(text, removed, path, std::nullopt);
  }
}

void requireEdit(std::string_view text, const JSONPath& path, const JSONValue& value) {
  const std::string with = withJSONMember(text, path, value);
  require(withJSONMember(with, path, value) == with, "writing twice is the same as once");
  requirePlainJSON(text, with, path, value);
  std::optional<JSONValue> old;
  bool isReadable = true;
  try {
    old = jsonMember(text, path);
  } catch (const JSONEditError&) {
    isReadable = false;
  }
  if (isReadable) {
    require(jsonMember(with, path) == (old ? merged(*old, value) : value), "a written member reads back");
  }
  if (isReadable && !old) {
    require(hasOnePieceMore(text, with), "a new member is inserted");
    require(commentsOf(with) == commentsOf(text), "a new member leaves the comments");
    require(commentsOf(withoutJSONMember(with, path)) == commentsOf(text),
            "a member goes without others' comments");
  }
  requireRemoval(with, path);
}

}  // namespace
}  // namespace tarnwell

/// The first byte chooses the path and the value.
FUZZ_TARGET(std::string_view input) {
  static const JSONPath paths[] = {{"a"}, {"servers", "a"}, {"a", "b", "c"}};
  static const JSONValue values[] = {
      JSONObject{{"command", "/a"}, {"args", JSONValue::strings({"b", "c"})}}, 1, JSONObject{},
      JSONObject{{"b", JSONObject{{"c", nullptr}, {"d", JSONArray{JSONArray{}, JSONObject{}}}}}}};
  const unsigned choice = takeChoice(input);
  const JSONPath& path = paths[choice % std::size(paths)];
  const JSONValue& value = values[choice / std::size(paths) % std::size(values)];
  bool isRefused = false;
  try {
    requireRemoval(std::string(input), path);
  } catch (const JSONEditError&) {
    isRefused = true;
  }
  try {
    requireEdit(input, path, value);
  } catch (const JSONEditError& error) {
    // A key of the value's own objects may stand twice in the old value.
    require(isRefused || error.kind() == JSONEditError::Kind::ambiguous,
            "what can be removed can be written");
  }
}
