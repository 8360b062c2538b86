#pragma once

/// What a change does to a text, line by line, for the eye.
///
///     lineDifference("a\nb\nc\n", "a\nB\nc\n")  // same a, removed b, added B, same c
///
/// Lines end with LF, CR LF or CR, which are not part of them. Where only the line end differs, the line
/// counts as changed. The end of the file after the last line end is no line.
///
/// Threads: all functions are pure.

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace tarnwell {

struct DifferenceLine {
  enum class Kind {
    same,
    removed,
    added,
    left,  // `count` same lines that are left out
  };

  Kind kind = Kind::same;
  std::string text;  // empty for `left`
  std::size_t count = 0;

  bool operator==(const DifferenceLine&) const = default;
};

/// The changed lines with up to `around` same lines before and after each, removed lines before added ones.
/// One line alone is not left out. Empty when nothing differs. The lines between the first and the last
/// change are compared each with each; when these are more than four million pairs, all of them count as
/// changed.
std::vector<DifferenceLine> lineDifference(std::string_view before, std::string_view after,
                                           std::size_t around = 3);

}  // namespace tarnwell
