#include "IMAP/Responses/IMAPParser.h"
#include "IMAP/Responses/Words.h"
#include "Text/ASCIICase.h"

namespace tarnwell {

/// RFC 3501, section 9: mailbox-data = "SEARCH" *(SP nz-number) / ...
std::optional<std::vector<std::uint32_t>> IMAPParser::parseSearch(std::string_view line) {
  takeWord(line);
  if (!equalsIgnoringASCIICase(takeWord(line), "SEARCH")) {
    return std::nullopt;
  }
  std::vector<std::uint32_t> numbers;
  for (std::string_view word; !(word = takeWord(line)).empty();) {
    if (const std::optional<std::uint32_t> number = unsigned32(word)) {
      numbers.push_back(*number);
    }
  }
  return numbers;
}

}  // namespace tarnwell
