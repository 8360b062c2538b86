#include "JSONEditor/JSONPlaces.h"

#include <utility>

#include "JSONEditor/JSONEditor.h"
#include "Text/UTF8.h"

namespace tarnwell {
namespace {

using Kind = JSONEditError::Kind;

void checkBytes(std::string_view text) {
  if (text.size() > maximumJSONTextSize) {
    throw JSONEditError(Kind::tooLarge);
  }
  bool isValid = true;
  for (std::size_t position = 0; position < text.size();) {
    const std::size_t before = position;
    if (nextCodePoint(text, position, &isValid) == 0 || !isValid) {
      throw JSONEditError::at(Kind::notUTF8, text, before);
    }
  }
}

/// True for a key between quotes that means these characters.
bool means(std::string_view written, std::string_view key) {
  if (written.find('\\') == std::string_view::npos) {
    return written == key;
  }
  const std::optional<JSONValue> text = JSONValue::decode('"' + std::string(written) + '"');
  return text && text->stringValue() == key;
}

std::size_t afterBlanksAndComments(std::string_view text, std::size_t place) {
  JSONReader reader(text, place);
  reader.skipBlanksAndComments();
  return reader.position();
}

}  // namespace

std::optional<std::size_t> placeOfRoot(std::string_view text) {
  checkBytes(text);
  JSONReader reader(text, text.starts_with(byteOrderMark) ? byteOrderMark.size() : 0);
  reader.skipBlanksAndComments();
  if (reader.isAtEnd()) {
    return std::nullopt;
  }
  const std::size_t root = reader.position();
  reader.skipValue();
  reader.skipBlanksAndComments();
  if (!reader.isAtEnd()) {
    throw JSONEditError::at(Kind::notJSON, text, reader.position());
  }
  return root;
}

ObjectPlace objectAt(std::string_view text, std::size_t place, std::string_view key) {
  if (text[place] != '{') {
    throw JSONEditError::at(Kind::notAnObject, text, place);
  }
  ObjectPlace object;
  JSONReader reader(text, place);
  reader.readObject([&](std::string_view written, const MemberPlace& member) {
    if (!object.first) {
      object.first = member;
    }
    object.last = member;
    if (!means(written, key)) {
      return;
    }
    if (object.found) {
      throw JSONEditError::at(Kind::ambiguous, text, member.range.begin);
    }
    object.found = member;
  });
  object.range = {place, reader.position()};
  return object;
}

std::size_t afterComment(std::string_view text, std::size_t place) {
  JSONReader reader(text, place);
  reader.skipComment();
  return reader.position();
}

std::string plainJSON(std::string_view value) {
  std::string plain;
  bool isCommaOpen = false;
  for (std::size_t place = 0; (place = afterBlanksAndComments(value, place)) < value.size();) {
    if (value[place] == ',') {
      isCommaOpen = true;
      ++place;
      continue;
    }
    const bool isEnd = value[place] == '}' || value[place] == ']';
    if (std::exchange(isCommaOpen, false) && !isEnd) {
      plain += ',';
    }
    std::size_t end = place + 1;
    if (value[place] == '"') {
      JSONReader reader(value, place);
      reader.skipValue();
      end = reader.position();
    }
    plain += value.substr(place, end - place);
    place = end;
  }
  return plain;
}

}  // namespace tarnwell
