#pragma once

/// Searches the writable memory of another process.

#include <cstdint>
#include <set>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "hostile/ProcessFacts.h"
#include "hostile/ProcessView.h"

namespace tarnwell::test {

/// The places of the texts: the mapping, the text and its distance from the beginning. Empty when there is
/// none. Throws when the process cannot be read.
inline std::vector<std::string> findInMemory(const ProcessView& process, const std::set<std::string>& texts) {
  std::vector<std::string> places;
  std::istringstream mappings(process.mappings());
  for (std::string line; std::getline(mappings, line);) {
    std::istringstream fields(line);
    std::uintptr_t begin = 0;
    std::uintptr_t end = 0;
    char dash = 0;
    std::string rights;
    fields >> std::hex >> begin >> dash >> end >> rights;
    // A sanitizer's shadow of terabytes has marks but no texts.
    constexpr std::uintptr_t gigabyte = 1000 * 1000 * 1000;
    if (rights.find('w') == std::string::npos || (isSanitized && end - begin > gigabyte)) {
      continue;
    }
    std::string bytes(end - begin, '\0');
    if (!process.read(begin, bytes)) {
      if (line.find("[v") == std::string::npos) {
        throw std::runtime_error("a mapping cannot be read: " + line);
      }
      continue;  // belongs to the kernel
    }
    for (const std::string& text : texts) {
      for (std::size_t at = bytes.find(text); at != std::string::npos; at = bytes.find(text, at + 1)) {
        places.push_back(line + ": \"" + text + "\" at " + std::to_string(at));
      }
    }
  }
  return places;
}

}  // namespace tarnwell::test
