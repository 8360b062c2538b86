#pragma once

/// Finds runs of letters and digits in a folded text that may be part of a code.
///
///     codeUnitsIn("Order #12, code A7K-9QX")  // "12", not plain; "A7K-9QX", plain, of two parts
///
/// Threads: pure functions.

#include <array>
#include <cstddef>
#include <string_view>
#include <vector>

namespace tarnwell {

/// Letters and digits without anything between them.
struct CodePart {
  std::size_t begin = 0;
  std::size_t end = 0;
  unsigned digits = 0;
  unsigned capitals = 0;
  unsigned changes = 0;  // between letters and digits

  std::size_t size() const { return end - begin; }
  bool isNumber() const { return digits == size(); }
  bool isMixed() const { return digits > 0 && digits < size(); }
  bool isInCapitals() const { return digits + capitals == size(); }
  bool isInSmallLetters() const { return capitals == 0; }
};

/// Parts joined by hyphens.
struct CodeUnit {
  static constexpr std::size_t mostParts = 4;
  std::array<CodePart, mostParts> parts;
  std::size_t count = 0;
  std::size_t end = 0;
  bool isPlain = true;  // only letters, digits and hyphens, and no neighbour shows it to be another number

  std::size_t begin() const { return parts[0].begin; }
  bool isNumber() const { return count == 1 && parts[0].isNumber(); }
};

/// All units with a digit, in the order of the text. Skips web addresses.
std::vector<CodeUnit> codeUnitsIn(std::string_view folded);

}  // namespace tarnwell
