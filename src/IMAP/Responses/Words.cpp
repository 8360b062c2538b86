#include "IMAP/Responses/Words.h"

#include <algorithm>
#include <charconv>

namespace tarnwell {

std::string_view takeWord(std::string_view& line) {
  line.remove_prefix(std::min(line.find_first_not_of(' '), line.size()));
  const std::string_view word = line.substr(0, line.find(' '));
  line.remove_prefix(word.size());
  return word;
}

std::optional<std::uint32_t> unsigned32(std::string_view text) {
  if (text.starts_with('+')) {
    text.remove_prefix(1);
  }
  std::uint32_t number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || end != text.data() + text.size()) {
    return std::nullopt;
  }
  return number;
}

}  // namespace tarnwell
