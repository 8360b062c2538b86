#pragma once

/// Texts made at random from difficult fragments, the same in every run.

#include <random>
#include <span>
#include <string>
#include <string_view>

namespace tarnwell {

class HostileText {
 public:
  /// Print the start value with a failure: it identifies the sequence of texts.
  static constexpr unsigned startValue = 20250611;

  explicit HostileText(std::span<const std::string_view> fragments) : fragments_(fragments) {}

  /// The next text, made of up to `most` fragments.
  std::string next(std::size_t most) {
    std::string text;
    for (std::size_t left = random_() % (most + 1); left > 0; --left) {
      text += fragments_[random_() % fragments_.size()];
    }
    return text;
  }

 private:
  std::span<const std::string_view> fragments_;
  std::mt19937 random_{startValue};
};

/// The fragment repeated to at least `size` bytes.
inline std::string filledWith(std::string_view fragment, std::size_t size) {
  std::string text;
  while (text.size() < size) {
    text += fragment;
  }
  return text;
}

}  // namespace tarnwell
