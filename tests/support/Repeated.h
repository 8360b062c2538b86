#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace tarnwell::test {

/// `text`, `count` times.
inline std::string repeated(std::string_view text, std::size_t count) {
  std::string whole;
  whole.reserve(text.size() * count);
  for (std::size_t number = 0; number < count; ++number) {
    whole += text;
  }
  return whole;
}

}  // namespace tarnwell::test
