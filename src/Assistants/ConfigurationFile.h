#pragma once

/// Changes a file of another program without losing a byte of it.
///
///     const FileChange change = proposeChange(path, edit);  // reads, changes nothing
///     lineDifference(change.before.value_or(""), change.after);  // for the user's eye
///     const WrittenFile written = write(change);
///     undo(written);
///
/// Links are followed: the file at the end of the last link changes, the links stay. So a file that a link in
/// a home directory names may lie in a directory of such files.
///
/// A write reads the file again and compares it with what was proposed, copies it beside itself, puts the new
/// text in its place in one step, and reads it once more. The new file has the mode and the access list
/// (Platform/AccessList.h) of the old one, and, as far as the system lets this user give it, its owner and
/// group. A file that was missing gets mode 0600.
///
/// Another program may write the file between the last look and the replacement; no system prevents that. Its
/// text is then lost. Between two programs with this code the folder's lock prevents it.
///
/// Threads: any.

#include <chrono>
#include <filesystem>
#include <functional>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

#include "JSONEditor/JSONEditor.h"

namespace tarnwell {

class ConfigurationFileError : public std::runtime_error {
 public:
  enum class Kind {
    /// May not be read, is no regular file, or its links lead in a circle.
    unreadable,
    /// It has more than `maximumConfigurationFileSize` bytes.
    tooLarge,
    /// It is not what it was when it was proposed (`write`) or written (`undo`). Nothing was written.
    changed,
    /// The system refused. The file is as it was.
    notWritten,
    /// It was written, but is now something else: another program writes it at the same time. `backup` is
    /// the copy of what it was.
    notVerified,
    /// A user other than this one and root owns the file, or every user may write it or replace it in its
    /// folder.
    otherWriter,
  };

  ConfigurationFileError(Kind kind, std::filesystem::path path, const std::string& reason,
                         std::optional<std::filesystem::path> backup = {});

  Kind kind() const { return kind_; }
  const std::filesystem::path& path() const { return path_; }
  /// A few English words, for example those of the system. `what` has them after the path.
  const std::string& reason() const { return reason_; }
  /// The copy that stays. Absent when the file is as it was, or there was none.
  const std::optional<std::filesystem::path>& backup() const { return backup_; }

 private:
  Kind kind_;
  std::filesystem::path path_;
  std::string reason_;
  std::optional<std::filesystem::path> backup_;
};

/// In bytes.
constexpr std::size_t maximumConfigurationFileSize = maximumJSONTextSize;

struct FileChange {
  std::filesystem::path path;         // as the program names it
  std::filesystem::path target;       // after the links
  std::optional<std::string> before;  // absent: no file
  std::string after;

  bool isNothing() const { return before == after; }
};

struct WrittenFile {
  FileChange change;
  /// Beside the target, with the time in its name: "settings.json.tarnwell-20240501T093000Z". Absent when
  /// there was no file, or nothing to write.
  std::optional<std::filesystem::path> backup;
};

/// The new text of a file from the old one, which is empty when there is no file.
using TextEdit = std::function<std::string(std::string_view)>;

/// The text of the file; absent when there is none. Throws `unreadable`, `tooLarge` and
/// `otherWriter`.
std::optional<std::string> readConfigurationFile(const std::filesystem::path& path);

/// Throws as `readConfigurationFile`, and `notWritten` when there is neither the file nor its folder. What
/// `edit` throws passes through.
FileChange proposeChange(const std::filesystem::path& path, const TextEdit& edit);

/// Writes nothing when the change is nothing. Makes no folder: a program whose folder is missing is not
/// installed. Waits this long for another write in the folder. Throws `unreadable`, `tooLarge`,
/// `otherWriter`, `changed`, `notWritten` and `notVerified`. A failure leaves no temporary file and no
/// backup, except `notVerified`, which leaves the backup.
WrittenFile write(const FileChange& change, std::chrono::milliseconds patience = std::chrono::seconds(10));

/// Copies the file beside itself as `write` does, for a file that its own program is about to change. Absent
/// when there is none. Throws `unreadable`, `tooLarge`, `otherWriter` and `notWritten`.
std::optional<std::filesystem::path> backUp(const std::filesystem::path& path);

/// Puts the text of before in place, or removes the file that `write` made. The backup stays. Throws as
/// `write` does.
void undo(const WrittenFile& written, std::chrono::milliseconds patience = std::chrono::seconds(10));

}  // namespace tarnwell
