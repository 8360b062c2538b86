#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>

namespace tarnwell::IMAPParser {

/// The text with some spans replaced, built from left to right. Spans are not empty. A text of which nothing
/// is replaced is not copied but handed back.
class TextReplacement {
 public:
  explicit TextReplacement(std::string text) : text_(std::move(text)) {}

  /// Copies up to `start`, then takes what stands for the span from there to `end`.
  void replace(std::size_t start, std::size_t end, std::string_view substitute) {
    if (copied_ == 0) {
      result_.reserve(text_.size());
    }
    result_.append(text_, copied_, start - copied_);
    result_ += substitute;
    copied_ = end;
  }

  /// The text before any replacement.
  std::string_view text() const { return text_; }

  std::string finished() && {
    if (copied_ == 0) {
      return std::move(text_);
    }
    result_.append(text_, copied_);
    return std::move(result_);
  }

 private:
  std::string text_;
  std::size_t copied_ = 0;
  std::string result_;
};

}  // namespace tarnwell::IMAPParser
