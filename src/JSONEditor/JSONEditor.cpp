#include "JSONEditor/JSONEditor.h"

#include <stdexcept>

#include "JSONEditor/JSONLayout.h"
#include "JSONEditor/JSONPlaces.h"

namespace tarnwell {
namespace {

constexpr std::string_view blanks = " \t\r\n";
constexpr std::string_view blanksInLine = " \t";

/// How far a path leads in a text.
struct WayPlace {
  ObjectPlace outermost;
  ObjectPlace object;                 // the last object on the way; has the member only if the way is whole
  std::optional<MemberPlace> holder;  // of `object`, unless that is the outermost
  std::size_t count = 0;              // of the keys that lead to `object`
};

/// Absent in a text without a value.
std::optional<WayPlace> follow(std::string_view text, const JSONPath& path) {
  if (path.empty()) {
    throw std::invalid_argument("a path has at least one key");
  }
  const std::optional<std::size_t> root = placeOfRoot(text);
  if (!root) {
    return std::nullopt;
  }
  WayPlace way;
  way.outermost = way.object = objectAt(text, *root, path[0]);
  while (way.object.found && way.count + 1 < path.size()) {
    way.holder = way.object.found;
    way.object = objectAt(text, way.holder->value, path[++way.count]);
  }
  return way;
}

std::string_view textOf(std::string_view text, std::size_t begin, std::size_t end) {
  return text.substr(begin, end - begin);
}

bool isBlank(std::string_view text, std::size_t begin, std::size_t end) {
  return textOf(text, begin, end).find_first_not_of(blanks) == std::string_view::npos;
}

bool isBlankInLine(std::string_view text, std::size_t begin, std::size_t end) {
  return textOf(text, begin, end).find_first_not_of(blanksInLine) == std::string_view::npos;
}

bool isLineEnd(char byte) { return byte == '\r' || byte == '\n'; }

std::string replaced(std::string_view text, TextRange range, std::string_view by) {
  return std::string(text.substr(0, range.begin)).append(by).append(text.substr(range.end));
}

/// The value in objects with the keys of the path from `begin` on.
JSONValue wrapped(JSONValue value, const JSONPath& path, std::size_t begin) {
  for (std::size_t index = path.size(); index > begin; --index) {
    JSONObject object;
    object.emplace(path[index - 1], std::move(value));
    value = std::move(object);
  }
  return value;
}

/// The end of the last comment of those that follow this place, with only these blanks between. The place
/// itself when none follows.
std::size_t afterComments(std::string_view text, std::size_t place, std::string_view between) {
  for (std::size_t end = place;;) {
    place = text.find_first_not_of(between, place);
    const std::size_t next = afterComment(text, place);
    if (next == place) {
      return end;
    }
    end = place = next;
  }
}

std::string withFirstMember(std::string_view text, const ObjectPlace& object, const JSONLayout& layout,
                            const std::string& member) {
  const std::size_t brace = object.range.end - 1;
  const std::size_t place = afterComments(text, object.range.begin + 1, blanks);
  const std::string_view rest = textOf(text, place, brace);
  const bool hasLineEnd = rest.find_first_of("\r\n") != std::string_view::npos;
  if (!layout.isOnLines) {
    return replaced(text, {brace, brace}, member + std::string(hasLineEnd ? "" : rest));
  }
  const std::string lines = layout.lineEnd + layout.indentation + member;
  if (hasLineEnd) {
    return replaced(text, {place, place}, lines);
  }
  const std::string_view outer = indentationAt(text, object.range.begin);
  return replaced(text, {place, brace}, lines + layout.lineEnd + std::string(outer));
}

/// After the last member.
std::string withLastMember(std::string_view text, const ObjectPlace& object, const JSONLayout& layout,
                           const std::string& member) {
  const std::optional<std::size_t> comma = object.last->commaAfter;
  const std::size_t lastEnd = object.last->range.end;
  std::size_t place = comma ? *comma + 1 : lastEnd;
  place = layout.isOnLines ? afterComments(text, place, blanksInLine) : place;
  std::string addition(comma ? "" : ",");
  addition += textOf(text, lastEnd, comma ? lastEnd : place);
  addition += layout.isOnLines ? layout.lineEnd + layout.indentation : layout.isSpaced ? " " : "";
  addition += member;
  addition += comma ? "," : "";
  return replaced(text, {comma ? place : lastEnd, place}, addition);
}

/// With the blanks that belong to a member: its lines when nothing else stands on them, otherwise those on
/// one side.
TextRange withBlanks(std::string_view text, TextRange range) {
  std::size_t begin = range.begin;
  while (text[begin - 1] == ' ' || text[begin - 1] == '\t') {
    --begin;
  }
  std::size_t end = text.find_first_not_of(blanksInLine, range.end);
  const bool isAtBegin = isLineEnd(text[begin - 1]);
  if (isAtBegin && isLineEnd(text[end])) {
    return {begin, afterLineEnd(text, end)};
  }
  const bool isOnlyBefore = text[range.begin] == ',' || (!isAtBegin && begin < range.begin);
  return isOnlyBefore ? TextRange{isAtBegin ? range.begin : begin, range.end} : TextRange{range.begin, end};
}

std::string without(std::string_view text, const ObjectPlace& object, const MemberPlace& member) {
  // A comma goes together with the member when only blanks stand between them, otherwise by itself.
  TextRange range = member.range;
  constexpr std::size_t none = std::string_view::npos;
  std::size_t comma = member.commaAfter.value_or(member.commaBefore.value_or(none));
  if (member.commaAfter && isBlank(text, range.end, comma)) {
    range.end = comma + 1;
    comma = none;
  } else if (comma < range.begin && isBlankInLine(text, comma + 1, range.begin)) {
    range.begin = comma;
    comma = none;
  }
  const TextRange inner = {object.range.begin + 1, object.range.end - 1};
  if (comma == none && isBlank(text, inner.begin, range.begin) && isBlank(text, range.end, inner.end)) {
    return replaced(text, inner, "");
  }
  std::string result = replaced(text, withBlanks(text, range), "");
  if (comma == none) {
    return result;
  }
  // What goes after the comma does not move it.
  const std::size_t place = comma < range.begin ? comma : comma - (text.size() - result.size());
  return replaced(result, {place, place + 1}, "");
}

std::optional<JSONValue> decoded(std::string_view text, const MemberPlace& member) {
  return JSONValue::decode(plainJSON(textOf(text, member.value, member.range.end)));
}

/// For a value that begins at this place.
std::optional<JSONValue> orNotJSON(std::optional<JSONValue> value, std::string_view text, std::size_t place) {
  if (!value) {
    throw JSONEditError::at(JSONEditError::Kind::notJSON, text, place);
  }
  return value;
}

std::string merged(std::string_view text, const JSONPath& path, const JSONObject& members) {
  std::string result(text);
  JSONPath inner = path;
  inner.emplace_back();
  for (const auto& [key, value] : members) {
    inner.back() = key;
    result = withJSONMember(result, inner, value);
  }
  return result;
}

std::string withMember(std::string_view text, const JSONPath& path, const JSONValue& value) {
  const std::optional<WayPlace> way = follow(text, path);
  if (!way) {
    const bool isAtBegin = text.empty() || text == byteOrderMark || isLineEnd(text.back());
    JSONLayout layout;
    layout.lineEnd = lineEndNear(text, text.size());
    return std::string(text) + (isAtBegin ? "" : layout.lineEnd) + layout.written(wrapped(value, path, 0)) +
           layout.lineEnd;
  }
  const std::optional<MemberPlace>& found = way->object.found;
  const std::optional<MemberPlace>& neighbour = found ? found : way->object.last;
  const JSONLayout layout = layoutIn(text, way->outermost, way->object, neighbour, way->holder);
  if (!found) {
    const std::string member = layout.written(path[way->count], wrapped(value, path, way->count + 1));
    return neighbour ? withLastMember(text, way->object, layout, member)
                     : withFirstMember(text, way->object, layout, member);
  }
  if (value.objectValue() && text[found->value] == '{') {
    return merged(text, path, *value.objectValue());
  }
  return decoded(text, *found) == value
             ? std::string(text)
             : replaced(text, {found->value, found->range.end}, layout.written(value));
}

}  // namespace

std::optional<JSONValue> jsonMember(std::string_view text, const JSONPath& path) {
  const std::optional<WayPlace> way = follow(text, path);
  if (!way || !way->object.found) {
    return std::nullopt;
  }
  return orNotJSON(decoded(text, *way->object.found), text, way->object.found->value);
}

std::optional<JSONValue> jsonDocument(std::string_view text) {
  const std::optional<std::size_t> root = placeOfRoot(text);
  return root ? orNotJSON(JSONValue::decode(plainJSON(text.substr(*root))), text, *root) : std::nullopt;
}

std::string withJSONMember(std::string_view text, const JSONPath& path, const JSONValue& value) {
  const JSONValue whole = wrapped(value, path, 0);
  if (JSONValue::decode(whole.serialized()) != whole) {
    throw std::invalid_argument("no JSON can hold this value");
  }
  std::string result = withMember(text, path, value);
  if (result.size() > maximumJSONTextSize) {
    throw JSONEditError(JSONEditError::Kind::tooLarge);
  }
  return result;
}

std::string withoutJSONMember(std::string_view text, const JSONPath& path) {
  const std::optional<WayPlace> way = follow(text, path);
  return way && way->object.found ? without(text, way->object, *way->object.found) : std::string(text);
}

}  // namespace tarnwell
