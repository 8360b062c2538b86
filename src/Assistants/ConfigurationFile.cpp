#include "Assistants/ConfigurationFile.h"

#include <algorithm>
#include <system_error>
#include <utility>

#include "Core/ISO8601.h"
#include "Platform/FolderLock.h"
#include "Platform/PrivateFiles.h"

namespace tarnwell {
namespace {

namespace fs = std::filesystem;
using Kind = ConfigurationFileError::Kind;

/// The end of the links, with the real path of its folder as far as that exists. Nothing needs to be there.
fs::path targetOf(const fs::path& path) {
  constexpr int maximumLinks = 40;
  fs::path target = fs::absolute(path);
  std::error_code failed;
  for (int count = 0; fs::symlink_status(target, failed).type() == fs::file_type::symlink; ++count) {
    if (count == maximumLinks) {
      throw ConfigurationFileError(Kind::unreadable, path, "its links lead in a circle");
    }
    target = target.parent_path() / fs::read_symlink(target, failed);
  }
  const fs::path folder = fs::canonical(target.parent_path(), failed);
  return failed ? target : folder / target.filename();
}

/// Also true when nobody can know.
bool isThere(const fs::path& path) {
  std::error_code ignored;
  return fs::symlink_status(path, ignored).type() != fs::file_type::not_found;
}

std::optional<std::string> textOf(const fs::path& path, const fs::path& target) {
  if (!isThere(target)) {
    if (everybodyMayReplaceFilesIn(target.parent_path())) {
      throw ConfigurationFileError(Kind::otherWriter, target, "every user may write in its folder");
    }
    return std::nullopt;
  }
  // One byte over the limit shows that the file is too large.
  std::optional<FilePrefix> file = readFilePrefix(path, maximumConfigurationFileSize + 1);
  if (!file) {
    throw ConfigurationFileError(Kind::unreadable, target, "it cannot be read, or is no regular file");
  }
  if (file->otherWriter != OtherWriter::none) {
    throw ConfigurationFileError(Kind::otherWriter, target, "another user may write it");
  }
  if (file->text.size() > maximumConfigurationFileSize) {
    throw ConfigurationFileError(Kind::tooLarge, target, "it is too large");
  }
  return std::move(file->text);
}

/// Throws `changed` unless the path still leads to this text of this target.
void requireText(const FileChange& change, const std::optional<std::string>& text) {
  if (targetOf(change.path) != change.target || textOf(change.path, change.target) != text) {
    throw ConfigurationFileError(Kind::changed, change.target, "another program has changed it");
  }
}

/// The same after a write.
void verifyText(const WrittenFile& written, const std::optional<std::string>& text) {
  try {
    requireText(written.change, text);
  } catch (const ConfigurationFileError& error) {
    throw ConfigurationFileError(Kind::notVerified, written.change.target, error.reason(), written.backup);
  }
}

/// Calls a function that writes, and gives the system's errors the type of this module.
template <class Write>
auto orNotWritten(const fs::path& path, const Write& write) {
  try {
    return write();
  } catch (const fs::filesystem_error& error) {
    throw ConfigurationFileError(Kind::notWritten, path, error.code().message());
  }
}

FolderLock lockFor(const fs::path& target, std::chrono::milliseconds patience) {
  try {
    return FolderLock(target.parent_path(), patience);
  } catch (const fs::filesystem_error&) {
    throw ConfigurationFileError(Kind::notWritten, target,
                                 "another program has been changing files in its folder for too long");
  }
}

/// Copies the text beside the target. A copy of the same second is not overwritten: the new one gets a
/// number.
fs::path makeBackup(const fs::path& target, std::string_view text, const FileRights& rights) {
  std::string time = formatISO8601(currentInstant());
  std::erase_if(time, [](char byte) { return byte == '-' || byte == ':'; });
  const std::string name = target.string() + ".tarnwell-" + time;
  fs::path backup = name;
  for (int number = 2; !createFile(backup, text, rights); ++number) {
    backup = name + "-" + std::to_string(number);
  }
  return backup;
}

}  // namespace

ConfigurationFileError::ConfigurationFileError(Kind kind, fs::path path, const std::string& reason,
                                               std::optional<fs::path> backup)
    : std::runtime_error(path.string() + ": " + reason),
      kind_(kind),
      path_(std::move(path)),
      reason_(reason),
      backup_(std::move(backup)) {}

std::optional<std::string> readConfigurationFile(const fs::path& path) {
  return textOf(path, targetOf(path));
}

FileChange proposeChange(const fs::path& path, const TextEdit& edit) {
  FileChange change{.path = path, .target = targetOf(path), .before = {}, .after = {}};
  change.before = textOf(path, change.target);
  if (!change.before && !isThere(change.target.parent_path())) {
    throw ConfigurationFileError(Kind::notWritten, change.target, "its folder does not exist");
  }
  change.after = edit(change.before.value_or(""));
  return change;
}

WrittenFile write(const FileChange& change, std::chrono::milliseconds patience) {
  WrittenFile written{.change = change, .backup = {}};
  if (change.isNothing()) {
    return written;
  }
  const FolderLock oneAtATime = lockFor(change.target, patience);
  requireText(change, change.before);
  const FileRights rights = fileRights(change.target).value_or(FileRights{});
  if (change.before) {
    written.backup =
        orNotWritten(change.target, [&] { return makeBackup(change.target, *change.before, rights); });
  }
  try {
    orNotWritten(change.target, [&] {
      replaceFile(change.target, change.after, rights, [&] { requireText(change, change.before); });
    });
  } catch (const ConfigurationFileError&) {
    std::error_code ignored;
    fs::remove(written.backup.value_or(fs::path()), ignored);
    throw;
  }
  verifyText(written, change.after);
  return written;
}

std::optional<fs::path> backUp(const fs::path& path) {
  const fs::path target = targetOf(path);
  const std::optional<std::string> text = textOf(path, target);
  if (!text) {
    return std::nullopt;
  }
  const FileRights rights = fileRights(target).value_or(FileRights{});
  return orNotWritten(target, [&] { return makeBackup(target, *text, rights); });
}

void undo(const WrittenFile& written, std::chrono::milliseconds patience) {
  const FileChange& change = written.change;
  if (change.isNothing()) {
    return;
  }
  const FolderLock oneAtATime = lockFor(change.target, patience);
  const auto look = [&] { requireText(change, change.after); };
  look();
  orNotWritten(change.target, [&] {
    if (change.before) {
      replaceFile(change.target, *change.before, fileRights(change.target).value_or(FileRights{}), look);
    } else {
      fs::remove(change.target);
    }
  });
  verifyText(written, change.before);
}

}  // namespace tarnwell
