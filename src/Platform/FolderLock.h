#pragma once

/// Keeps programs with this code from changing files of one folder at the same time.
///
///     const FolderLock oneAtATime(folder);  // until the end of the block
///
/// Threads: any.

#include <chrono>
#include <filesystem>

namespace tarnwell {

/// While it lives, other locks of the same folder wait, in this process and in others. A folder that cannot
/// be locked, such as one on some network file systems, is not: its changes are then as they were without
/// locks.
class FolderLock {
 public:
  /// Throws `std::filesystem::filesystem_error` when another lock is not let go in this time: a program that
  /// was stopped may hold it for ever.
  explicit FolderLock(const std::filesystem::path& folder,
                      std::chrono::milliseconds patience = std::chrono::seconds(10));
  ~FolderLock();
  FolderLock(const FolderLock&) = delete;
  FolderLock& operator=(const FolderLock&) = delete;

 private:
  int descriptor_;
};

}  // namespace tarnwell
