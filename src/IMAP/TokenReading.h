#pragma once

/// What the readers of responses share.
/// Threads: all functions are pure.

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "IMAP/IMAPToken.h"

namespace tarnwell {

/// The first elements of a list, each absent beyond its end.
template <std::size_t count>
std::array<std::optional<IMAPToken>, count> leadingElements(IMAPTokenList list) {
  std::array<std::optional<IMAPToken>, count> elements;
  auto element = list.begin();
  for (std::size_t position = 0; position < count && element != list.end(); ++position, ++element) {
    elements[position] = *element;
  }
  return elements;
}

/// The text of an atom or a string; absent for NIL, a list and a missing element.
inline std::optional<std::string> textOf(const std::optional<IMAPToken>& token) {
  return token ? token->text() : std::nullopt;
}

/// The elements of a list; empty for anything else.
inline IMAPTokenList listOf(const std::optional<IMAPToken>& token) {
  return token ? token->list() : IMAPTokenList();
}

inline bool isList(const std::optional<IMAPToken>& token) {
  return token && token->kind() == IMAPToken::Kind::list;
}

/// The texts among the elements, in order.
inline std::vector<std::string> textsOf(IMAPTokenList list) {
  std::vector<std::string> texts;
  for (const IMAPToken element : list) {
    if (std::optional<std::string> text = element.text()) {
      texts.push_back(*std::move(text));
    }
  }
  return texts;
}

}  // namespace tarnwell
