#include "JSONEditor/JSONReader.h"

#include <algorithm>

#include "MCP/JSON/JSONValue.h"
#include "Text/ASCIICase.h"

namespace tarnwell {

void JSONReader::skipBlanksAndComments() {
  for (std::size_t before = text_.size() + 1; before != position_;) {
    before = position_;
    while (isJSONBlank(current())) {
      ++position_;
    }
    skipComment();
  }
}

void JSONReader::skipComment() {
  const std::string_view rest = text_.substr(position_);
  if (rest.starts_with("//")) {
    position_ = std::min(text_.find_first_of("\r\n", position_), text_.size());
  } else if (rest.starts_with("/*")) {
    const std::size_t end = rest.find("*/", 2);
    if (end == std::string_view::npos) {
      fail();
    }
    position_ += end + 2;
  }
}

void JSONReader::skipValue() {
  switch (current()) {
    case '{':
      return readObject([](std::string_view, const MemberPlace&) {});
    case '[':
      return skipArray();
    case '"':
      return skipString();
    case 't':
      return skipWord("true");
    case 'f':
      return skipWord("false");
    case 'n':
      return skipWord("null");
    default:
      skipNumber();
  }
}

void JSONReader::skip(char expected) {
  if (isAtEnd() || current() != expected) {
    fail();
  }
  ++position_;
}

void JSONReader::enter(char bracket) {
  if (depth_ == JSONValue::maximumDepth) {
    fail();
  }
  ++depth_;
  skip(bracket);
  skipBlanksAndComments();
}

void JSONReader::leave(char bracket) {
  skip(bracket);
  --depth_;
}

std::optional<std::size_t> JSONReader::skipComma() {
  skipBlanksAndComments();
  if (current() != ',') {
    return std::nullopt;
  }
  const std::size_t comma = position_++;
  skipBlanksAndComments();
  return comma;
}

void JSONReader::skipArray() {
  enter('[');
  for (bool isOpen = true; isOpen && current() != ']';) {
    skipValue();
    isOpen = skipComma().has_value();
  }
  leave(']');
}

void JSONReader::skipString() {
  skip('"');
  while (current() != '"') {
    if (static_cast<unsigned char>(current()) < 0x20) {
      fail();
    }
    if (current() == '\\') {
      ++position_;
      skipEscape();
    } else {
      ++position_;
    }
  }
  ++position_;
}

void JSONReader::skipEscape() {
  if (current() != 'u') {
    if (isAtEnd() || std::string_view("\"\\/bfnrt").find(current()) == std::string_view::npos) {
      fail();
    }
    ++position_;
    return;
  }
  ++position_;
  for (int digit = 0; digit < 4; ++digit) {
    const char lower = asciiLowercasedByte(current());
    if (!isASCIIDigit(lower) && !(lower >= 'a' && lower <= 'f')) {
      fail();
    }
    ++position_;
  }
}

void JSONReader::skipWord(std::string_view word) {
  for (const char letter : word) {
    skip(letter);
  }
}

void JSONReader::skipDigits() {
  do {
    if (!isASCIIDigit(current())) {
      fail();
    }
    ++position_;
  } while (isASCIIDigit(current()));
}

void JSONReader::skipNumber() {
  if (current() == '-') {
    ++position_;
  }
  if (current() == '0') {
    ++position_;
  } else {
    skipDigits();
  }
  if (current() == '.') {
    ++position_;
    skipDigits();
  }
  if (current() == 'e' || current() == 'E') {
    ++position_;
    if (current() == '+' || current() == '-') {
      ++position_;
    }
    skipDigits();
  }
}

}  // namespace tarnwell
