#pragma once

/// Argument and environment lists for execve(2) and posix_spawn(3).

#include <string>
#include <vector>

namespace tarnwell::test {

/// Pointers into the texts and a null at the end. The texts must outlive them.
inline std::vector<char*> argumentVector(std::vector<std::string>& texts) {
  std::vector<char*> pointers;
  for (std::string& text : texts) {
    pointers.push_back(text.data());
  }
  pointers.push_back(nullptr);
  return pointers;
}

}  // namespace tarnwell::test
