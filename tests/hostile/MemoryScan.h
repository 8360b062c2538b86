#pragma once

/// Looks through the writable memory of another process.

#include <fcntl.h>
#include <sys/types.h>
#include <unistd.h>

#include <cstdint>
#include <fstream>
#include <set>
#include <sstream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "hostile/ProcessFacts.h"

namespace tarnwell::test {

/// Where one of the texts stands, as the mapping, the text and its distance from the beginning; empty when
/// there is none. Throws when the process does not let itself be read.
inline std::vector<std::string> findInMemory(pid_t process, const std::set<std::string>& texts) {
  const int memory = ::open((processDirectory(process) / "mem").c_str(), O_RDONLY | O_CLOEXEC);
  if (memory < 0) {
    throw std::runtime_error("the memory of the program may not be read, which this test needs");
  }
  std::vector<std::string> places;
  std::ifstream mappings(processDirectory(process) / "maps");
  for (std::string line; std::getline(mappings, line);) {
    std::istringstream fields(line);
    std::uintptr_t begin = 0;
    std::uintptr_t end = 0;
    char dash = 0;
    std::string rights;
    fields >> std::hex >> begin >> dash >> end >> rights;
    // A sanitizer's shadow of terabytes holds marks and no texts.
    constexpr std::uintptr_t gigabyte = 1000 * 1000 * 1000;
    if (rights.find('w') == std::string::npos || (isSanitized && end - begin > gigabyte)) {
      continue;
    }
    std::string bytes(end - begin, '\0');
    const ssize_t count = ::pread(memory, bytes.data(), bytes.size(), static_cast<off_t>(begin));
    if (count < 0 || static_cast<std::size_t>(count) != bytes.size()) {
      if (line.find("[v") == std::string::npos) {
        ::close(memory);
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
  ::close(memory);
  return places;
}

}  // namespace tarnwell::test
