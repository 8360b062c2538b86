#include "JSONEditor/JSONEditError.h"

#include <string>

#include "JSONEditor/JSONReader.h"
#include "Text/UTF8.h"

namespace tarnwell {
namespace {

const char* description(JSONEditError::Kind kind) {
  switch (kind) {
    case JSONEditError::Kind::notJSON:
      return "not JSON";
    case JSONEditError::Kind::notAnObject:
      return "not a JSON object";
    case JSONEditError::Kind::ambiguous:
      return "a key stands here for the second time";
    case JSONEditError::Kind::notUTF8:
      return "not a text in UTF-8";
    case JSONEditError::Kind::tooLarge:
      return "too large";
  }
  return "";
}

std::string withPlace(std::string text, std::size_t line, std::size_t column) {
  return line == 0 ? text
                   : "line " + std::to_string(line) + ", column " + std::to_string(column) + ": " + text;
}

}  // namespace

JSONEditError::JSONEditError(Kind kind, std::size_t line, std::size_t column)
    : std::runtime_error(withPlace(description(kind), line, column)),
      kind_(kind),
      line_(line),
      column_(column) {}

JSONEditError JSONEditError::at(Kind kind, std::string_view text, std::size_t position) {
  std::size_t line = 1;
  std::size_t begin = text.starts_with(byteOrderMark) ? byteOrderMark.size() : 0;
  for (std::size_t place = begin; place < position; ++place) {
    const bool isHalf = text[place] == '\r' && place + 1 < text.size() && text[place + 1] == '\n';
    if (text[place] == '\n' || (text[place] == '\r' && !isHalf)) {
      ++line;
      begin = place + 1;
    }
  }
  std::size_t column = 1;
  for (std::size_t place = begin; place < position; ++column) {
    nextCodePoint(text, place);
  }
  return JSONEditError(kind, line, column);
}

}  // namespace tarnwell
