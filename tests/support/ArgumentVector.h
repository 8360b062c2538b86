#pragma once

/// Texts as execve(2) and posix_spawn(3) take arguments and environments.

#include <string>
#include <vector>

namespace tarnwell::test {

/// Pointers into the texts, which must outlive them, and a null behind the last.
inline std::vector<char*> argumentVector(std::vector<std::string>& texts) {
  std::vector<char*> pointers;
  for (std::string& text : texts) {
    pointers.push_back(text.data());
  }
  pointers.push_back(nullptr);
  return pointers;
}

}  // namespace tarnwell::test
