#pragma once

/// Replaces parts of a long text without a copy of it.
///
///     std::string text = "a&lt;b";
///     TextReplacement replacement(text);
///     replacement.replace(1, 5, "<");
///     replacement.finish();  // "a<b"
///
/// Threads: one at a time.

#include <cstddef>
#include <cstring>
#include <string>
#include <string_view>

namespace tarnwell::TextDecoding {

/// Replaces spans of a text in place, from left to right. The text after the last replaced span stays
/// readable in its old place until `finish`. A substitute must not be longer than its span.
class TextReplacement {
 public:
  explicit TextReplacement(std::string& text) : text_(text) {}

  /// Keeps the text before `start`, then writes `substitute` for the span from there to `end`.
  void replace(std::size_t start, std::size_t end, std::string_view substitute) {
    keepUpTo(start);
    std::memcpy(text_.data() + written_, substitute.data(), substitute.size());
    written_ += substitute.size();
    read_ = end;
  }

  /// Keeps the rest.
  void finish() {
    keepUpTo(text_.size());
    text_.resize(written_);
  }

 private:
  void keepUpTo(std::size_t end) {
    if (written_ != read_) {
      std::memmove(text_.data() + written_, text_.data() + read_, end - read_);
    }
    written_ += end - read_;
  }

  std::string& text_;
  std::size_t read_ = 0;
  std::size_t written_ = 0;
};

}  // namespace tarnwell::TextDecoding
