#pragma once

/// What lies at a path.

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

namespace tarnwell::test {

/// The bytes of the file; none when there is no file.
inline std::string fileContents(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

/// The rights to a file or directory, as for chmod(2).
inline mode_t fileMode(const std::filesystem::path& path) {
  struct stat status{};
  EXPECT_EQ(::stat(path.c_str(), &status), 0) << path;
  return status.st_mode & 07777;
}

}  // namespace tarnwell::test
