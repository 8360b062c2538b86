#include "Platform/FolderLock.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>
#include <thread>

namespace tarnwell {

/// flock(2) waits without a limit, so it is asked again and again. A lock belongs to the open file, so it
/// ends with the descriptor, also when the process is killed.
FolderLock::FolderLock(const std::filesystem::path& folder, std::chrono::milliseconds patience)
    : descriptor_(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)) {
  const auto end = std::chrono::steady_clock::now() + patience;
  while (descriptor_ >= 0 && ::flock(descriptor_, LOCK_EX | LOCK_NB) != 0 &&
         (errno == EWOULDBLOCK || errno == EINTR)) {
    if (std::chrono::steady_clock::now() >= end) {
      ::close(descriptor_);
      throw std::filesystem::filesystem_error("another program is changing files in the folder", folder,
                                              std::make_error_code(std::errc::device_or_resource_busy));
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
  }
}

FolderLock::~FolderLock() {
  if (descriptor_ >= 0) {
    ::close(descriptor_);
  }
}

}  // namespace tarnwell
