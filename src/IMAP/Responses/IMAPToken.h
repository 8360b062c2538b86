#pragma once

/// The tokens of one IMAP response: atoms, strings, NIL and nested lists (RFC 3501, section 9).
///
/// Tokens lie on one flat tape in the order in which they begin, not in a tree of small objects. A token
/// takes 16 bytes at any depth of nesting. Walking the tape needs no recursion, and freeing it frees one
/// block. A list stores its end, so a reader can skip it.
///
///     IMAPTokens tokens = IMAPParser::tokenize("* LIST (\\Sent) \"/\" \"Sent Messages\"");
///     tokens.elements()[4]->text();                      // "Sent Messages"
///     for (IMAPToken flag : tokens.elements()[2]->list()) ...
///
/// Lifetime: `IMAPTokens` refers to the bytes of the response; tokens and lists refer to `IMAPTokens`. Keep
/// what they refer to alive and in place. Tokens and lists are small handles, passed by value.
/// Threads: any thread may read.

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Text/ASCIICase.h"

namespace tarnwell {

class IMAPTokenList;
class IMAPTokens;

class IMAPToken {
 public:
  enum class Kind : std::uint8_t {
    atom,      // a run of atom characters that is not NIL
    string,    // a quoted string or a literal
    list,      // a parenthesised list
    nilToken,  // the atom NIL in any letter case
  };

  Kind kind() const;

  /// The text of an atom or a string, with escapes removed and invalid UTF-8 replaced by U+FFFD. Absent for a
  /// list and for NIL.
  std::optional<std::string> text() const;

  /// The bytes of an atom or a string as sent, with escapes removed. Absent for a list and for NIL.
  std::optional<std::string> bytes() const;

  /// True when the text equals `word`, ignoring ASCII letter case. `word` must be ASCII. False without a
  /// text.
  bool textEquals(std::string_view word) const;

  /// The elements of a list; empty for any other kind.
  IMAPTokenList list() const;

 private:
  friend class IMAPTokenList;

  /// `textEquals` for a string with escapes.
  bool escapedTextEquals(std::string_view word) const;

  IMAPToken(const IMAPTokens* tokens, std::size_t index) : tokens_(tokens), index_(index) {}

  const IMAPTokens* tokens_;
  std::size_t index_;
};

/// The elements of one list, or of the whole response.
class IMAPTokenList {
 public:
  class Iterator;

  /// A list without elements.
  IMAPTokenList() = default;

  bool empty() const { return first_ == last_; }
  Iterator begin() const;
  Iterator end() const;

  /// The element at a position, counted from 0. Absent after the last one. Steps over all elements before it.
  std::optional<IMAPToken> operator[](std::size_t position) const;

 private:
  friend class IMAPToken;
  friend class IMAPTokens;

  IMAPTokenList(const IMAPTokens* tokens, std::size_t first, std::size_t last)
      : tokens_(tokens), first_(first), last_(last) {}

  const IMAPTokens* tokens_ = nullptr;
  std::size_t first_ = 0;  // on the tape
  std::size_t last_ = 0;   // one after the last descendant of the last element
};

/// A forward iterator; each step goes to the next element of the same list.
class IMAPTokenList::Iterator {
 public:
  using value_type = IMAPToken;
  using difference_type = std::ptrdiff_t;

  Iterator() = default;

  IMAPToken operator*() const { return {tokens_, index_}; }
  Iterator& operator++();
  Iterator operator++(int) {
    const Iterator before = *this;
    ++*this;
    return before;
  }
  bool operator==(const Iterator&) const = default;

 private:
  friend class IMAPTokenList;

  Iterator(const IMAPTokens* tokens, std::size_t index) : tokens_(tokens), index_(index) {}

  const IMAPTokens* tokens_ = nullptr;
  std::size_t index_ = 0;
};

/// Owns the tape.
class IMAPTokens {
 public:
  /// The tokens at the top level.
  IMAPTokenList elements() const { return {this, 0, tape_.size()}; }

 private:
  friend class IMAPToken;
  friend class IMAPTokenList::Iterator;
  friend class IMAPTokenizer;

  enum class Form : std::uint8_t { atom, string, escapedString, list, nilToken };

  /// For an atom or a string, `begin` and `end` are the range of its bytes in the response. For a list, `end`
  /// is the index on the tape after its last descendant. The low bits of the first word hold the form. The
  /// other 61 bits hold an offset: larger than any memory, so no limit needs a check.
  struct Entry {
    Entry(Form kind, std::size_t first, std::size_t last)
        : beginAndForm(std::uint64_t{first} << formBits | static_cast<std::uint64_t>(kind)), end(last) {}

    Form form() const { return static_cast<Form>(beginAndForm & ((1U << formBits) - 1)); }
    std::size_t begin() const { return static_cast<std::size_t>(beginAndForm >> formBits); }

    static constexpr unsigned formBits = 3;
    std::uint64_t beginAndForm;
    std::uint64_t end;
  };
  static_assert(sizeof(Entry) == 16);

  explicit IMAPTokens(std::string_view response) : response_(response) {}

  /// The bytes of an atom or a string as they are in the response.
  std::string_view bytes(const Entry& entry) const {
    return response_.substr(entry.begin(), entry.end - entry.begin());
  }

  std::string_view response_;
  std::vector<Entry> tape_;
};

inline IMAPTokenList::Iterator IMAPTokenList::begin() const { return {tokens_, first_}; }
inline IMAPTokenList::Iterator IMAPTokenList::end() const { return {tokens_, last_}; }

inline IMAPToken::Kind IMAPToken::kind() const {
  switch (tokens_->tape_[index_].form()) {
    case IMAPTokens::Form::atom:
      return Kind::atom;
    case IMAPTokens::Form::string:
    case IMAPTokens::Form::escapedString:
      return Kind::string;
    case IMAPTokens::Form::list:
      return Kind::list;
    case IMAPTokens::Form::nilToken:
      break;
  }
  return Kind::nilToken;
}

inline bool IMAPToken::textEquals(std::string_view word) const {
  const IMAPTokens::Entry& entry = tokens_->tape_[index_];
  switch (entry.form()) {
    case IMAPTokens::Form::atom:
    case IMAPTokens::Form::string:
      return equalsIgnoringASCIICase(tokens_->bytes(entry), word);
    case IMAPTokens::Form::escapedString:
      return escapedTextEquals(word);
    case IMAPTokens::Form::list:
    case IMAPTokens::Form::nilToken:
      break;
  }
  return false;
}

inline IMAPTokenList IMAPToken::list() const {
  const IMAPTokens::Entry& entry = tokens_->tape_[index_];
  if (entry.form() != IMAPTokens::Form::list) {
    return {};
  }
  return {tokens_, index_ + 1, static_cast<std::size_t>(entry.end)};
}

inline IMAPTokenList::Iterator& IMAPTokenList::Iterator::operator++() {
  const IMAPTokens::Entry& entry = tokens_->tape_[index_];
  index_ = entry.form() == IMAPTokens::Form::list ? static_cast<std::size_t>(entry.end) : index_ + 1;
  return *this;
}

}  // namespace tarnwell
