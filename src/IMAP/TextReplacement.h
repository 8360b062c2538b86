#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>

namespace tarnwell::IMAPParser {

/// The text with some spans replaced, built from left to right.
class TextReplacement {
 public:
  explicit TextReplacement(std::string_view text) : text_(text) { result_.reserve(text.size()); }

  /// Copies up to `start`, then takes what stands for the span from there to `end`.
  void replace(std::size_t start, std::size_t end, std::string_view substitute) {
    result_.append(text_, copied_, start - copied_);
    result_ += substitute;
    copied_ = end;
  }

  std::string finished() && {
    result_.append(text_, copied_);
    return std::move(result_);
  }

 private:
  std::string_view text_;
  std::size_t copied_ = 0;
  std::string result_;
};

}  // namespace tarnwell::IMAPParser
