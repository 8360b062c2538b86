#pragma once

/// The parts that are measured, and what is asked of each.
///
///     add({.name = "base64", .bytes = text.size(), .goal = atLeast(1000), .work = [text] { ... }});
///
/// A work does one round over its whole input and returns a number that depends on the result, so that no
/// compiler can leave it out. Its input is made before, outside of the measurement.

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace tarnwell::bench {

/// What a part must reach. Any combination; none for a comparator.
struct Goal {
  std::optional<double> megabytesPerSecond = std::nullopt;  // at least
  std::optional<double> microseconds = std::nullopt;        // at most, for one round
  /// The names of parts over the same input that must take longer.
  std::vector<std::string> fasterThan = {};
};

struct Part {
  std::string name;
  std::size_t bytes = 0;  // of the input of one round
  Goal goal = {};
  std::function<std::size_t()> work;
};

/// Each adds the parts of one subject.
void addResponseParts(std::vector<Part>& parts);
void addTransferParts(std::vector<Part>& parts);
void addTextParts(std::vector<Part>& parts);
void addCharacterParts(std::vector<Part>& parts);
void addDetectorParts(std::vector<Part>& parts);

}  // namespace tarnwell::bench
