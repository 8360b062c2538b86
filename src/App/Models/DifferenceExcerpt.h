#pragma once

/// Makes the lines of a change short enough to be looked at. A settings file may be one line of a megabyte.
///
/// Threads: all functions are pure.

#include <vector>

#include "Assistants/TextDifference.h"

namespace tarnwell {

/// In bytes. Longer lines are shortened.
constexpr std::size_t longestShownLine = 400;

/// Where one line takes the place of another, both show what differs between them. An ellipsis stands for
/// what is left out. Only a line whose own change is longer is cut at its end.
std::vector<DifferenceLine> withShortLines(std::vector<DifferenceLine> lines);

}  // namespace tarnwell
