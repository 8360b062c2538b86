#pragma once

/// Facts that the system tells about a running program.

#include <sys/types.h>

#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>

namespace tarnwell::test {

/// True for a build with a sanitizer. Its shadow memory and allocator distort every figure. GCC tells of it
/// by macros, Clang as features.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
inline constexpr bool isSanitized = true;
#elif defined(__has_feature)
inline constexpr bool isSanitized = __has_feature(address_sanitizer) || __has_feature(thread_sanitizer);
#else
inline constexpr bool isSanitized = false;
#endif

inline std::filesystem::path processDirectory(pid_t process) {
  return std::filesystem::path("/proc") / std::to_string(process);
}

/// A number from /proc/PID/status, such as VmHWM and VmRSS (in kB) or Threads.
inline long processFigure(pid_t process, const std::string& name) {
  std::ifstream status(processDirectory(process) / "status");
  for (std::string line; std::getline(status, line);) {
    if (line.starts_with(name + ":")) {
      return std::stol(line.substr(name.size() + 1));
    }
  }
  throw std::runtime_error("the system does not tell " + name);
}

}  // namespace tarnwell::test
