#pragma once

/// Files that belong to one user alone, read with a bound and replaced as a whole.
///
/// Threads: any. Two writers of one file leave the whole text of one of them.

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace tarnwell {

/// Who besides the user and root may have put a file where it is: another user, who owns it; everybody, who
/// may write it; everybody, who may replace it, because its folder may be written by all and is not sticky.
enum class OtherWriter { none, owner, everybody, everybodyInFolder };

struct FilePrefix {
  /// Empty when there is another writer.
  std::string text;
  OtherWriter otherWriter = OtherWriter::none;

  bool operator==(const FilePrefix&) const = default;
};

/// The beginning of a regular file, `limit` bytes at most; absent when there is no such file or it cannot
/// be read. Never waits: a pipe or a device in the file's place counts as unreadable. Links are followed.
/// What is judged is the file that is read, the folder in which it lies, and the folder of the path.
std::optional<FilePrefix> readFilePrefix(const std::filesystem::path& path, std::size_t limit);

/// Creates the directory and those it lies in, each with mode 0700; what exists stays as it is. Throws
/// `std::filesystem::filesystem_error` naming the path that could not be made.
void createPrivateDirectories(const std::filesystem::path& directory);

/// Puts a file of mode 0600 with this text at `path`, in one step, and returns once it is on the disk. On
/// failure throws `std::filesystem::filesystem_error` naming the path; whatever was there is then
/// untouched, and nothing is left beside it.
void replacePrivateFile(const std::filesystem::path& path, std::string_view text);

}  // namespace tarnwell
