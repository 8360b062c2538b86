#include "Platform/PrivateFiles.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <system_error>
#include <utility>

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

/// A new file in the folder of its target. The destructor removes it unless it has replaced the target.
class TemporaryFile {
 public:
  explicit TemporaryFile(const std::filesystem::path& target)
      : target_(target), name_(target.string() + ".XXXXXX"), descriptor_(::mkstemp(name_.data())) {
    if (!descriptor_.isOpen()) {
      fail("cannot create a file beside", target_);
    }
    (void)::fcntl(descriptor_.number(), F_SETFD, FD_CLOEXEC);
  }
  TemporaryFile(const TemporaryFile&) = delete;
  ~TemporaryFile() {
    if (!name_.empty()) {
      (void)::unlink(name_.c_str());
    }
  }

  void fill(std::string_view text) {
    // mkstemp already asked for this mode. A failure is ignored, because some file systems have no modes.
    (void)::fchmod(descriptor_.number(), S_IRUSR | S_IWUSR);
    writeAll(descriptor_.number(), text, target_);
    if (::fsync(descriptor_.number()) < 0 || descriptor_.close() < 0) {
      fail("cannot write", target_);
    }
  }

  void takePlaceOfTarget() {
    if (::rename(name_.c_str(), target_.c_str()) < 0) {
      fail("cannot replace", target_);
    }
    name_.clear();
  }

 private:
  const std::filesystem::path& target_;
  std::string name_;
  Descriptor descriptor_;
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

void replacePrivateFile(const std::filesystem::path& path, std::string_view text) {
  TemporaryFile file(path);
  file.fill(text);
  file.takePlaceOfTarget();
  syncDirectory(path.parent_path());
}

/// A lock belongs to the open file, so it ends with the descriptor, also when the process is killed.
FolderLock::FolderLock(const std::filesystem::path& folder)
    : descriptor_(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)) {
  while (descriptor_ >= 0 && ::flock(descriptor_, LOCK_EX) != 0 && errno == EINTR) {
  }
}

FolderLock::~FolderLock() {
  if (descriptor_ >= 0) {
    ::close(descriptor_);
  }
}

}  // namespace tarnwell
