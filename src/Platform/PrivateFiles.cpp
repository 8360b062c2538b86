#include "Platform/PrivateFiles.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <system_error>
#include <utility>

#include "Platform/AccessList.h"

namespace tarnwell {
namespace {

class Descriptor {
 public:
  explicit Descriptor(int number) : number_(number) {}
  Descriptor(const Descriptor&) = delete;
  ~Descriptor() { (void)close(); }

  bool isOpen() const { return number_ >= 0; }
  int number() const { return number_; }
  int close() { return isOpen() ? ::close(std::exchange(number_, -1)) : 0; }

 private:
  int number_;
};

[[noreturn]] void fail(const char* step, const std::filesystem::path& path) {
  throw std::filesystem::filesystem_error(step, path, std::error_code(errno, std::generic_category()));
}

void writeAll(int descriptor, std::string_view text, const std::filesystem::path& path) {
  while (!text.empty()) {
    ssize_t written = ::write(descriptor, text.data(), text.size());
    if (written < 0 && errno == EINTR) {
      continue;
    }
    if (written < 0) {
      fail("cannot write", path);
    }
    text.remove_prefix(static_cast<std::size_t>(written));
  }
}

/// The bits of a mode that say what the owner may do.
constexpr unsigned ofOwner = 0700;

/// The group of a new file is the wanted one. Others may not be given, and a list is about its group too.
bool hasItsGroup(int file, const FileRights& rights) {
  struct stat status{};
  return rights.group && ::fstat(file, &status) == 0 && status.st_gid == *rights.group;
}

/// The mode for a new file with the owner and group that it got. In another group than the wanted one, group
/// and others may do what both were to do: the members of either group may have been the others of before.
mode_t modeOf(int file, const FileRights& rights) {
  if (hasAccessList(file)) {  // a folder may give each new file a list
    return rights.mode & ofOwner;
  }
  if (!rights.group || hasItsGroup(file, rights)) {
    return rights.mode;
  }
  const unsigned ofBoth = (rights.mode >> 3U) & rights.mode & 07U;
  return (rights.mode & ofOwner) | (ofBoth << 3U) | ofBoth;
}

/// A file that was just made. The destructor removes it unless it is kept.
class NewFile {
 public:
  /// With a name of its own, beside the target.
  static NewFile beside(const std::filesystem::path& target) {
    std::string name = target.string() + ".XXXXXX";
    const int descriptor = ::mkstemp(name.data());
    if (descriptor < 0) {
      fail("cannot create a file beside", target);
    }
    (void)::fcntl(descriptor, F_SETFD, FD_CLOEXEC);
    return NewFile(std::move(name), descriptor, target);
  }

  /// The target is the path in errors.
  NewFile(std::string name, int descriptor, const std::filesystem::path& target)
      : name_(std::move(name)), descriptor_(descriptor), target_(target) {}
  NewFile(const NewFile&) = delete;
  ~NewFile() {
    if (!name_.empty()) {
      (void)::unlink(name_.c_str());
    }
  }

  /// Returns when the text is on the disk.
  void fill(std::string_view text, const FileRights& rights) {
    // Failures are ignored: some file systems have no modes, and only root gives files away. The new file is
    // the user's alone until it has its mode, which counts with what was given; the text comes last.
    if (rights.owner && rights.group && ::fchown(descriptor_.number(), *rights.owner, *rights.group) < 0) {
      (void)!::fchown(descriptor_.number(), static_cast<uid_t>(-1), *rights.group);
    }
    if (!rights.accessList || !hasItsGroup(descriptor_.number(), rights) ||
        !giveAccessList(descriptor_.number(), *rights.accessList)) {
      (void)::fchmod(descriptor_.number(), modeOf(descriptor_.number(), rights));
    }
    writeAll(descriptor_.number(), text, target_);
    if (::fsync(descriptor_.number()) < 0 || descriptor_.close() < 0) {
      fail("cannot write", target_);
    }
  }

  void takePlaceOfTarget() {
    if (::rename(name_.c_str(), target_.c_str()) < 0) {
      fail("cannot replace", target_);
    }
    keep();
  }

  void keep() { name_.clear(); }

 private:
  std::string name_;
  Descriptor descriptor_;
  const std::filesystem::path& target_;
};

/// Makes the new name durable. Errors are ignored: the file is already in place, and some file systems cannot
/// sync a directory.
void syncDirectory(const std::filesystem::path& directory) {
  Descriptor descriptor(
      ::open(directory.empty() ? "." : directory.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (descriptor.isOpen()) {
    (void)::fsync(descriptor.number());
  }
}

/// The flag to open a folder only to inspect it and to open files in it. Where O_PATH exists, this needs no
/// permission to list the folder.
#ifdef O_PATH
constexpr int toSearch = O_PATH;
#else
constexpr int toSearch = O_RDONLY;
#endif

Descriptor folderOf(const std::filesystem::path& path) {
  const std::filesystem::path folder = path.parent_path();
  return Descriptor(::open(folder.empty() ? "." : folder.c_str(), toSearch | O_DIRECTORY | O_CLOEXEC));
}

bool mayBeReplacedByEverybody(const struct stat& folder) {
  return (folder.st_mode & S_IWOTH) != 0 && (folder.st_mode & S_ISVTX) == 0;
}

OtherWriter otherWriterOf(const struct stat& file, const struct stat& folder,
                          const struct stat& folderOfPath) {
  if (file.st_uid != ::geteuid() && file.st_uid != 0) {
    return OtherWriter::owner;
  }
  if ((file.st_mode & S_IWOTH) != 0) {
    return OtherWriter::everybody;
  }
  return mayBeReplacedByEverybody(folder) || mayBeReplacedByEverybody(folderOfPath)
             ? OtherWriter::everybodyInFolder
             : OtherWriter::none;
}

std::optional<std::string> readPrefix(int file, std::size_t limit) {
  std::string text;
  char block[16 * 1024];
  while (text.size() < limit) {
    ssize_t count = ::read(file, block, std::min(sizeof block, limit - text.size()));
    if (count < 0 && errno == EINTR) {
      continue;
    }
    if (count < 0) {
      return std::nullopt;
    }
    if (count == 0) {
      break;
    }
    text.append(block, static_cast<std::size_t>(count));
  }
  return text;
}

}  // namespace

/// Resolves the path first, and then opens the file without following a link. The file that is read therefore
/// lies in the folder that is checked, even if somebody changes the links in between.
std::optional<FilePrefix> readFilePrefix(const std::filesystem::path& path, std::size_t limit) {
  std::error_code failed;
  const std::filesystem::path real = std::filesystem::canonical(path, failed);
  if (failed) {
    return std::nullopt;
  }
  const Descriptor folder = folderOf(real);
  const Descriptor folderOfPath = folderOf(path);
  // Without O_NONBLOCK, opening a pipe would wait for a writer.
  const Descriptor file(
      ::openat(folder.number(), real.filename().c_str(), O_RDONLY | O_NONBLOCK | O_NOFOLLOW | O_CLOEXEC));
  struct stat fileStatus{};
  struct stat folderStatus{};
  struct stat folderOfPathStatus{};
  if (::fstat(file.number(), &fileStatus) < 0 || !S_ISREG(fileStatus.st_mode) ||
      ::fstat(folder.number(), &folderStatus) < 0 ||
      ::fstat(folderOfPath.number(), &folderOfPathStatus) < 0) {
    return std::nullopt;
  }
  if (const OtherWriter other = otherWriterOf(fileStatus, folderStatus, folderOfPathStatus);
      other != OtherWriter::none) {
    return FilePrefix{"", other};
  }
  std::optional<std::string> text = readPrefix(file.number(), limit);
  return text ? std::optional(FilePrefix{*std::move(text)}) : std::nullopt;
}

void createPrivateDirectories(const std::filesystem::path& directory) {
  std::filesystem::path made;
  for (const auto& component : directory) {
    made /= component;
    if (::mkdir(made.c_str(), S_IRWXU) == 0) {
      continue;
    }
    int reason = errno;
    struct stat status{};
    if (::stat(made.c_str(), &status) < 0 || !S_ISDIR(status.st_mode)) {
      errno = reason;
      fail("cannot create the directory", made);
    }
  }
}

std::optional<FileRights> fileRights(const std::filesystem::path& path) {
  struct stat status{};
  if (::stat(path.c_str(), &status) < 0) {
    return std::nullopt;
  }
  FileRights rights{.owner = status.st_uid, .group = status.st_gid, .accessList = accessListOf(path)};
  // With an access list, the bits of the group say what everybody on the list may do at most.
  rights.mode = status.st_mode & (rights.accessList ? ofOwner : 0777U);
  return rights;
}

bool everybodyMayReplaceFilesIn(const std::filesystem::path& folder) {
  struct stat status{};
  return ::stat(folder.c_str(), &status) == 0 && mayBeReplacedByEverybody(status);
}

void replaceFile(const std::filesystem::path& path, std::string_view text, const FileRights& rights,
                 const std::function<void()>& lastLook) {
  NewFile file = NewFile::beside(path);
  file.fill(text, rights);
  if (lastLook) {
    lastLook();
  }
  file.takePlaceOfTarget();
  syncDirectory(path.parent_path());
}

void replacePrivateFile(const std::filesystem::path& path, std::string_view text) {
  replaceFile(path, text, FileRights{});
}

bool createFile(const std::filesystem::path& path, std::string_view text, const FileRights& rights) {
  const int descriptor =
      ::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, S_IRUSR | S_IWUSR);
  if (descriptor < 0 && errno == EEXIST) {
    return false;
  }
  if (descriptor < 0) {
    fail("cannot create", path);
  }
  NewFile file(path.string(), descriptor, path);
  file.fill(text, rights);
  file.keep();
  syncDirectory(path.parent_path());
  return true;
}

}  // namespace tarnwell
