#pragma once

/// The parts to measure, and their goals.
///
///     add({.name = "base64", .bytes = text.size(), .goal = atLeast(1000), .work = [text] { ... }});
///
/// `work` does one round over its whole input. It returns a number that depends on the result, so the
/// compiler cannot remove the work. The input is made before the measurement.

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace tarnwell::bench {

/// The goals of a part, in any combination. A comparator has no goals.
struct Goal {
  std::optional<double> megabytesPerSecond = std::nullopt;  // at least
  std::optional<double> microseconds = std::nullopt;        // at most, for one round
  /// The names of parts with the same input that must take longer.
  std::vector<std::string> fasterThan = {};
};

struct Part {
  std::string name;
  std::size_t bytes = 0;  // of the input of one round
  Goal goal = {};
  std::function<std::size_t()> work;
};

/// Each function adds the parts of one subject.
void addResponseParts(std::vector<Part>& parts);
void addTransferParts(std::vector<Part>& parts);
void addTextParts(std::vector<Part>& parts);
void addCharacterParts(std::vector<Part>& parts);
void addDetectorParts(std::vector<Part>& parts);

}  // namespace tarnwell::bench
