#pragma once

/// Reads and replaces files that belong to one user. A read has a size limit; a write replaces the whole
/// file.
///
/// Threads: any. When two writers replace one file at the same time, it ends up with the whole text of one.

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace tarnwell {

/// Who, apart from the user and root, may have put a file where it is:
/// - `owner`: another user owns the file;
/// - `everybody`: every user may write the file;
/// - `everybodyInFolder`: every user may replace the file, because all may write its folder, which is not
///   sticky.
enum class OtherWriter { none, owner, everybody, everybodyInFolder };

struct FilePrefix {
  /// Empty when there is another writer.
  std::string text;
  OtherWriter otherWriter = OtherWriter::none;

  bool operator==(const FilePrefix&) const = default;
};

/// The first `limit` bytes of a regular file. Absent when there is no such file or it cannot be read. Never
/// waits: a pipe or a device counts as unreadable. Follows links. Checks for other writers: the file that is
/// read, the folder that holds it, and the folder in `path`.
std::optional<FilePrefix> readFilePrefix(const std::filesystem::path& path, std::size_t limit);

/// Creates the directory and its missing parents, each with mode 0700. Leaves existing directories as they
/// are. Throws `std::filesystem::filesystem_error` naming the path that could not be made.
void createPrivateDirectories(const std::filesystem::path& directory);

/// While it lives, other locks of the same folder wait, in this process and in others. A folder that cannot
/// be locked, such as one on some network file systems, is not: its changes are then as they were without
/// locks.
class FolderLock {
 public:
  explicit FolderLock(const std::filesystem::path& folder);
  ~FolderLock();
  FolderLock(const FolderLock&) = delete;
  FolderLock& operator=(const FolderLock&) = delete;

 private:
  int descriptor_;
};

/// Puts a file of mode 0600 with this text at `path` in one step. Returns when the file is on the disk. On
/// failure throws `std::filesystem::filesystem_error` naming the path. Then the old file is unchanged and no
/// temporary file remains.
void replacePrivateFile(const std::filesystem::path& path, std::string_view text);

}  // namespace tarnwell
