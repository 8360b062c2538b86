#pragma once

/// Reads and replaces files that belong to one user. A read has a size limit; a write replaces the whole
/// file. An extended attribute (other than an access list) or another name (hard link) of the old file does
/// not come with it.
///
/// Threads: any. When two writers replace one file at the same time, it ends up with the whole text of one.

#include <cstddef>
#include <filesystem>
#include <functional>
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

/// True when every user may replace a file of the folder: all may write the folder, and it is not sticky.
bool everybodyMayReplaceFilesIn(const std::filesystem::path& folder);

/// Who may do what with a file, by default the user alone.
struct FileRights {
  unsigned mode = 0600;  // read, write and execute of owner, group and others
  std::optional<unsigned> owner{};
  std::optional<unsigned> group{};
  /// Of a file with one (Platform/AccessList.h). A new file gets it, with the bits of a mode that it says,
  /// if it gets the group too. Otherwise it gets `mode`.
  std::optional<std::string> accessList{};

  bool operator==(const FileRights&) const = default;
};

/// Absent when there is no file, or it is out of reach. Follows links. For a file with an access list the
/// mode is that of the owner alone: its other bits do not say what others may do.
std::optional<FileRights> fileRights(const std::filesystem::path& path);

/// Puts a file with this text at `path` in one step. Replaces a link, does not follow it. Returns when the
/// file is on the disk. Owner and group are what the system lets this user give; nobody else may do
/// more with the file than `rights` say. On failure throws `std::filesystem::filesystem_error` naming the
/// path. Then the old file is unchanged and no temporary file remains; so too when `lastLook` throws, which
/// is called when all but the last step is done.
void replaceFile(const std::filesystem::path& path, std::string_view text, const FileRights& rights,
                 const std::function<void()>& lastLook = {});

/// The same with mode 0600.
void replacePrivateFile(const std::filesystem::path& path, std::string_view text);

/// Makes a new file with this text. Returns false when something has this name already. Returns and fails as
/// `replaceFile`.
bool createFile(const std::filesystem::path& path, std::string_view text, const FileRights& rights);

}  // namespace tarnwell
