#pragma once

/// Reads the memory and the descriptors of a program that protects itself from other programs of the user.
///
/// A program is open to its tracer when it begins, before its first instruction. The files in /proc that are
/// opened then stay open, even after the tracer lets go and the program protects itself (proc(5)). This works
/// for any user and needs no help from the program.

#include <dirent.h>
#include <fcntl.h>
#include <sys/types.h>
#include <unistd.h>

#include <cstdint>
#include <stdexcept>
#include <string>
#include <utility>

#include "hostile/ProcessFacts.h"

namespace tarnwell::test {

class ProcessView {
 public:
  /// The process must just have executed its program, and must be stopped and traced by this one.
  explicit ProcessView(pid_t process)
      : memory_(opened(process, "mem", O_RDONLY)),
        mappings_(opened(process, "maps", O_RDONLY)),
        descriptors_(::fdopendir(opened(process, "fd", O_RDONLY | O_DIRECTORY))) {}
  ProcessView(const ProcessView&) = delete;
  ~ProcessView() {
    ::close(memory_);
    ::close(mappings_);
    ::closedir(descriptors_);
  }

  /// The lines of /proc/PID/maps. Throws when the process cannot be read.
  std::string mappings() const {
    ::lseek(mappings_, 0, SEEK_SET);
    std::string text;
    char block[4096];
    for (ssize_t count; (count = ::read(mappings_, block, sizeof block)) > 0;) {
      text.append(block, static_cast<std::size_t>(count));
    }
    if (text.empty()) {
      throw std::runtime_error("the memory of the program may not be read, which this test needs");
    }
    return text;
  }

  /// False when it cannot read all of these bytes.
  bool read(std::uintptr_t begin, std::string& bytes) const {
    const ssize_t count = ::pread(memory_, bytes.data(), bytes.size(), static_cast<off_t>(begin));
    return count >= 0 && static_cast<std::size_t>(count) == bytes.size();
  }

  /// The number of open descriptors.
  long descriptorCount() const {
    ::rewinddir(descriptors_);
    long count = 0;
    while (const dirent* entry = ::readdir(descriptors_)) {
      count += entry->d_name[0] == '.' ? 0 : 1;
    }
    if (count == 0) {
      throw std::runtime_error("the descriptors of the program may not be counted, which this test needs");
    }
    return count;
  }

 private:
  static int opened(pid_t process, const char* name, int flags) {
    const int descriptor = ::open((processDirectory(process) / name).c_str(), flags | O_CLOEXEC);
    if (descriptor < 0) {
      throw std::runtime_error(std::string("cannot look at a program that is traced: ") + name);
    }
    return descriptor;
  }

  int memory_;
  int mappings_;
  DIR* descriptors_;
};

}  // namespace tarnwell::test
