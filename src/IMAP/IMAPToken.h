#pragma once

/// The tokens of one IMAP response: atoms, strings, NIL and nested lists (RFC 3501, section 9).
///
/// Tokens lie on one flat tape in the order in which they begin, not in a tree of small objects: nesting
/// of any depth costs the same few bytes for each token, walking it needs no call stack, and giving it
/// back frees one block. A list knows where it ends, so a reader can step over it.
///
///     IMAPTokens tokens = IMAPParser::tokenize("* LIST (\\Sent) \"/\" \"Sent Messages\"");
///     tokens.elements()[4]->text();                      // "Sent Messages"
///     for (IMAPToken flag : tokens.elements()[2]->list()) ...
///
/// Lifetime: `IMAPTokens` refers to the response's bytes, tokens and lists refer to `IMAPTokens`; what is
/// referred to must stay alive and in place. Tokens and lists are small handles, passed by value.
/// Threads: reading is safe from any thread.

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

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

  /// The text of an atom or a string: escapes undone, invalid UTF-8 replaced by U+FFFD. Absent for a list
  /// and for NIL.
  std::optional<std::string> text() const;

  /// True when `text()` would equal `expected` without regard to ASCII letter case.
  bool textEquals(std::string_view expected) const;

  /// The elements of a list; empty for any other kind.
  IMAPTokenList list() const;
};

/// The elements of one list, or of the whole response.
class IMAPTokenList {
 public:
  class Iterator;

  bool empty() const;
  Iterator begin() const;
  Iterator end() const;

  /// The element at a position, counted from 0; absent beyond the end. Steps over the elements before it.
  std::optional<IMAPToken> operator[](std::size_t position) const;
};

/// Owns the tape.
class IMAPTokens {
 public:
  /// The tokens at the top level.
  IMAPTokenList elements() const;
};

}  // namespace tarnwell
