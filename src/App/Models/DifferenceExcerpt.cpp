#include "App/Models/DifferenceExcerpt.h"

#include <algorithm>
#include <string>

namespace tarnwell {

namespace {

using Kind = DifferenceLine::Kind;

constexpr std::size_t around = 60;  // bytes of a long line before and after the change

const char* const ellipsis = "\u2026";

bool isInsideOfCharacter(const std::string& text, std::size_t place) {
  return place < text.size() && (static_cast<unsigned char>(text[place]) & 0xC0U) == 0x80U;
}

/// The bytes from `begin` to `end`, and those that complete the characters at both ends.
std::string excerpt(const std::string& text, std::size_t begin, std::size_t end) {
  while (begin > 0 && isInsideOfCharacter(text, begin)) {
    --begin;
  }
  while (isInsideOfCharacter(text, end)) {
    ++end;
  }
  end = std::min(end, text.size());
  return (begin > 0 ? ellipsis : "") + text.substr(begin, end - begin) + (end < text.size() ? ellipsis : "");
}

/// The line from a little before the change to a little after it. `same` is how many bytes at the beginning
/// and at the end do not change.
std::string shortened(const std::string& text, std::size_t sameBegin, std::size_t sameEnd) {
  const std::size_t begin = sameBegin > around ? sameBegin - around : 0;
  const std::size_t end = text.size() - sameEnd + std::min(sameEnd, around);
  return excerpt(text, begin, std::min(end, begin + longestShownLine));
}

void shortenPair(std::string& removed, std::string& added) {
  const auto [left, right] = std::ranges::mismatch(removed, added);
  const auto sameBegin = static_cast<std::size_t>(left - removed.begin());
  const std::size_t rest = std::min(removed.size(), added.size()) - sameBegin;
  std::size_t sameEnd = 0;
  while (sameEnd < rest && removed[removed.size() - 1 - sameEnd] == added[added.size() - 1 - sameEnd]) {
    ++sameEnd;
  }
  removed = shortened(removed, sameBegin, sameEnd);
  added = shortened(added, sameBegin, sameEnd);
}

bool isLong(const DifferenceLine& line) { return line.text.size() > longestShownLine; }

}  // namespace

std::vector<DifferenceLine> withShortLines(std::vector<DifferenceLine> lines) {
  for (std::size_t place = 0; place < lines.size(); ++place) {
    DifferenceLine& line = lines[place];
    const bool isPair = line.kind == Kind::removed && place + 1 < lines.size() &&
                        lines[place + 1].kind == Kind::added &&
                        (place == 0 || lines[place - 1].kind != Kind::removed);
    if (isPair && (isLong(line) || isLong(lines[place + 1]))) {
      shortenPair(line.text, lines[place + 1].text);
    } else if (isLong(line)) {
      line.text = excerpt(line.text, 0, longestShownLine);
    }
  }
  return lines;
}

}  // namespace tarnwell
