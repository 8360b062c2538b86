#include "IMAP/Responses/Words.h"

#include <algorithm>

#include "Text/DecimalNumber.h"

namespace tarnwell {

std::string_view takeWord(std::string_view& line) {
  line.remove_prefix(std::min(line.find_first_not_of(' '), line.size()));
  const std::string_view word = line.substr(0, line.find(' '));
  line.remove_prefix(word.size());
  return word;
}

std::optional<std::uint32_t> unsigned32(std::string_view text) {
  return decimalNumber<std::uint32_t>(text, Sign::plus);
}

}  // namespace tarnwell
