#pragma once

/// Prints tokens on one line, for tables: the whole response in brackets, lists in parentheses, atoms bare,
/// strings in quotes, and NIL. CR, LF, quotes and backslashes in a text print as in C++. Two different lists
/// of tokens never print alike.
///
///     [* LIST (\\Sent) "/" "Sent Messages"]

#include <string>
#include <string_view>

#include "IMAP/Responses/IMAPToken.h"

namespace tarnwell::test {

inline std::string printedText(std::string_view text) {
  std::string printed;
  for (const char byte : text) {
    switch (byte) {
      case '\r':
        printed += "\\r";
        break;
      case '\n':
        printed += "\\n";
        break;
      case '"':
      case '\\':
        printed += '\\';
        [[fallthrough]];
      default:
        printed += byte;
    }
  }
  return printed;
}

inline std::string printedElements(IMAPTokenList list);

inline std::string printed(IMAPToken token) {
  switch (token.kind()) {
    case IMAPToken::Kind::atom:
      return printedText(token.text().value());
    case IMAPToken::Kind::string:
      return "\"" + printedText(token.text().value()) + "\"";
    case IMAPToken::Kind::list:
      return "(" + printedElements(token.list()) + ")";
    case IMAPToken::Kind::nilToken:
      break;
  }
  return token.text() ? "a NIL with a text" : "NIL";
}

inline std::string printedElements(IMAPTokenList list) {
  std::string line;
  for (const IMAPToken element : list) {
    line += (line.empty() ? "" : " ") + printed(element);
  }
  return line;
}

inline std::string printed(const IMAPTokens& tokens) {
  return "[" + printedElements(tokens.elements()) + "]";
}

}  // namespace tarnwell::test
