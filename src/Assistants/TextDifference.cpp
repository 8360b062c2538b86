#include "Assistants/TextDifference.h"

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <span>
#include <utility>

namespace tarnwell {
namespace {

using Kind = DifferenceLine::Kind;
using Lines = std::span<const std::string_view>;

/// With their line ends.
std::vector<std::string_view> linesOf(std::string_view text) {
  std::vector<std::string_view> lines;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find_first_of("\r\n"), text.size() - 1);
    const std::size_t size = text.substr(end).starts_with("\r\n") ? end + 2 : end + 1;
    lines.push_back(text.substr(0, size));
    text.remove_prefix(size);
  }
  return lines;
}

void append(std::vector<DifferenceLine>& result, Kind kind, Lines lines) {
  for (const std::string_view line : lines) {
    result.push_back({kind, std::string(line.substr(0, line.find_first_of("\r\n"))), 0});
  }
}

/// How many lines the rests of two texts have in common, in the same order, from each pair of lines on.
class CommonLines {
 public:
  CommonLines(Lines before, Lines after) : width_(after.size() + 1), counts_((before.size() + 1) * width_) {
    for (std::size_t row = before.size(); row-- > 0;) {
      for (std::size_t column = after.size(); column-- > 0;) {
        counts_[row * width_ + column] = before[row] == after[column]
                                             ? at(row + 1, column + 1) + 1
                                             : std::max(at(row + 1, column), at(row, column + 1));
      }
    }
  }

  std::uint32_t at(std::size_t row, std::size_t column) const { return counts_[row * width_ + column]; }

 private:
  std::size_t width_;
  std::vector<std::uint32_t> counts_;
};

/// Appends the difference of the parts of two texts in which all changes lie.
void appendChanges(std::vector<DifferenceLine>& result, Lines before, Lines after) {
  constexpr std::size_t maximumPairs = 4'000'000;
  if (before.size() > maximumPairs / (after.size() + 1)) {
    append(result, Kind::removed, before);
    append(result, Kind::added, after);
    return;
  }
  const CommonLines common(before, after);
  std::size_t row = 0;
  std::size_t column = 0;
  while (row < before.size() && column < after.size()) {
    if (before[row] == after[column]) {
      append(result, Kind::same, before.subspan(row++, 1));
      ++column;
    } else if (common.at(row + 1, column) >= common.at(row, column + 1)) {
      append(result, Kind::removed, before.subspan(row++, 1));
    } else {
      append(result, Kind::added, after.subspan(column++, 1));
    }
  }
  append(result, Kind::removed, before.subspan(row));
  append(result, Kind::added, after.subspan(column));
}

/// Leaves out the same lines that are far from every change.
std::vector<DifferenceLine> shortened(std::vector<DifferenceLine> lines, std::size_t around) {
  const auto isChanged = [](const DifferenceLine& line) { return line.kind != Kind::same; };
  std::vector<DifferenceLine> result;
  for (auto line = lines.begin(); line != lines.end();) {
    const auto change = std::find_if(line, lines.end(), isChanged);
    const auto run = static_cast<std::size_t>(change - line);
    const std::size_t before = line == lines.begin() ? 0 : std::min(around, run);
    const std::size_t after = change == lines.end() ? 0 : std::min(around, run - before);
    // In place of one line there is as much room for the line itself.
    const bool isWhole = run - before - after <= 1;
    const auto isKept = [&](std::size_t index) { return isWhole || index < before || index >= run - after; };
    for (std::size_t index = 0; index < run; ++index) {
      if (isKept(index)) {
        result.push_back(std::move(line[static_cast<std::ptrdiff_t>(index)]));
      } else if (index == before) {
        result.push_back({Kind::left, "", run - before - after});
      }
    }
    line = std::find_if_not(change, lines.end(), isChanged);
    std::move(change, line, std::back_inserter(result));
  }
  return result;
}

}  // namespace

std::vector<DifferenceLine> lineDifference(std::string_view before, std::string_view after,
                                           std::size_t around) {
  if (before == after) {
    return {};
  }
  const std::vector<std::string_view> oldLines = linesOf(before);
  const std::vector<std::string_view> newLines = linesOf(after);
  Lines rest = oldLines;
  Lines newRest = newLines;
  std::size_t begin = 0;
  while (begin < rest.size() && begin < newRest.size() && rest[begin] == newRest[begin]) {
    ++begin;
  }
  const Lines head = rest.first(begin);
  rest = rest.subspan(begin);
  newRest = newRest.subspan(begin);
  std::size_t end = 0;
  while (end < rest.size() && end < newRest.size() &&
         rest[rest.size() - 1 - end] == newRest[newRest.size() - 1 - end]) {
    ++end;
  }
  std::vector<DifferenceLine> lines;
  append(lines, Kind::same, head);
  appendChanges(lines, rest.first(rest.size() - end), newRest.first(newRest.size() - end));
  append(lines, Kind::same, rest.last(end));
  return shortened(std::move(lines), around);
}

}  // namespace tarnwell
