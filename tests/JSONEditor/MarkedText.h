#pragma once

/// A text with marks that tell three texts at once: « and » stand around what connecting adds, ‹ and › around
/// what removing takes away again.
///
///     MarkedText("{\"a\": 1«‹, \"b\": 2›»}")  // without: {"a": 1}, with: {"a": 1, "b": 2}, removed: {"a":
///     1}

#include <string>
#include <string_view>

namespace tarnwell::test {

struct MarkedText {
  std::string without, with, removed;

  explicit MarkedText(std::string_view marked) {
    bool isAdded = false;
    bool isTaken = false;
    const auto isMark = [&](std::string_view mark) {
      const bool is = marked.starts_with(mark);
      marked.remove_prefix(is ? mark.size() : 0);
      return is;
    };
    while (!marked.empty()) {
      if (isMark("«")) {
        isAdded = true;
      } else if (isMark("»")) {
        isAdded = false;
      } else if (isMark("‹")) {
        isTaken = true;
      } else if (isMark("›")) {
        isTaken = false;
      } else {
        with += marked.front();
        without += isAdded ? "" : marked.substr(0, 1);
        removed += isTaken ? "" : marked.substr(0, 1);
        marked.remove_prefix(1);
      }
    }
  }
};

}  // namespace tarnwell::test
