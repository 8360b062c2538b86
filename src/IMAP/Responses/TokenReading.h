#pragma once

/// Helpers that the readers of responses share.
/// Threads: all functions are pure.

#include <algorithm>
#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "IMAP/Responses/IMAPToken.h"

namespace tarnwell {

/// Returns the elements of a list one after the other, and absent after the last one.
class ElementReader {
 public:
  explicit ElementReader(IMAPTokenList list) : next_(list.begin()), end_(list.end()) {}

  std::optional<IMAPToken> next() { return next_ == end_ ? std::nullopt : std::optional(*next_++); }

 private:
  IMAPTokenList::Iterator next_;
  IMAPTokenList::Iterator end_;
};

/// The text of an atom or a string. Absent for NIL, a list and a missing element.
inline std::optional<std::string> textOf(const std::optional<IMAPToken>& token) {
  return token ? token->text() : std::nullopt;
}

/// The elements of a list. Empty for anything else.
inline IMAPTokenList listOf(const std::optional<IMAPToken>& token) {
  return token ? token->list() : IMAPTokenList();
}

inline bool isList(const std::optional<IMAPToken>& token) {
  return token && token->kind() == IMAPToken::Kind::list;
}

inline bool hasText(IMAPToken token) {
  return token.kind() == IMAPToken::Kind::atom || token.kind() == IMAPToken::Kind::string;
}

/// The texts of a list, in order. Counts them first: in a vector that grows step by step, millions of texts
/// would be moved again and again.
inline std::vector<std::string> textsOf(IMAPTokenList list) {
  std::vector<std::string> texts;
  texts.reserve(static_cast<std::size_t>(std::count_if(list.begin(), list.end(), hasText)));
  for (const IMAPToken element : list) {
    if (std::optional<std::string> text = element.text()) {
      texts.push_back(*std::move(text));
    }
  }
  return texts;
}

}  // namespace tarnwell
