/// What else happens while a file is written: other programs, a full disk, a folder that may not be written.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>

#include "Assistants/ConfigurationFile.h"
#include "Platform/PrivateFiles.h"
#include "support/Files.h"
#include "support/ForkedProcess.h"
#include "support/RowName.h"
#include "support/TemporaryDirectory.h"

namespace tarnwell::test {
namespace {

namespace fs = std::filesystem;
using Kind = ConfigurationFileError::Kind;

std::size_t countOf(const fs::path& directory) {
  return static_cast<std::size_t>(std::distance(fs::directory_iterator(directory), {}));
}

std::optional<Kind> failureOf(const std::function<void()>& function) {
  try {
    function();
  } catch (const ConfigurationFileError& error) {
    return error.kind();
  }
  return std::nullopt;
}

std::string withMore(std::string_view text) { return std::string(text) + "more"; }

/// What the file says; empty for what is no file.
std::string textAt(const fs::path& path) { return fs::is_regular_file(path) ? fileContents(path) : ""; }

struct MeanwhileRow {
  const char* name;
  std::function<void(const fs::path& file)> meanwhile;
  Kind kind;
};

const MeanwhileRow meanwhileRows[] = {
    {"otherText", [](const fs::path& file) { writeFile(file, "other"); }, Kind::changed},
    {"oneByteMore", [](const fs::path& file) { writeFile(file, fileContents(file) + "\n"); }, Kind::changed},
    {"removed", [](const fs::path& file) { fs::remove(file); }, Kind::changed},
    {"linkToTheSameText",
     [](const fs::path& file) {
       fs::rename(file, file.string() + "2");
       fs::create_symlink(file.string() + "2", file);
     },
     Kind::changed},
    {"directory",
     [](const fs::path& file) {
       fs::remove(file);
       fs::create_directory(file);
     },
     Kind::unreadable},
    {"everybodyMayWriteIt", [](const fs::path& file) { fs::permissions(file, fs::perms(0666)); },
     Kind::otherWriter},
};

class ConfigurationFileMeanwhile : public testing::TestWithParam<MeanwhileRow> {};

TEST_P(ConfigurationFileMeanwhile, changedAfterTheProposalIsNotWritten) {
  const TemporaryDirectory directory;
  writeFile(directory / "file", "text ");
  const FileChange change = proposeChange(directory / "file", withMore);
  GetParam().meanwhile(directory / "file");
  const std::string text = textAt(directory / "file");
  const std::size_t count = countOf(directory.path());
  EXPECT_EQ(failureOf([&] { write(change); }), GetParam().kind);
  EXPECT_EQ(textAt(directory / "file"), text);
  EXPECT_EQ(countOf(directory.path()), count);
}

TEST_P(ConfigurationFileMeanwhile, changedAfterTheWriteIsNotTakenBack) {
  for (const char* before : {"text ", ""}) {
    const TemporaryDirectory directory;
    if (*before != '\0') {
      writeFile(directory / "file", before);
    }
    const WrittenFile written = write(proposeChange(directory / "file", withMore));
    GetParam().meanwhile(directory / "file");
    const std::string text = textAt(directory / "file");
    const std::size_t count = countOf(directory.path());
    EXPECT_EQ(failureOf([&] { undo(written); }), GetParam().kind);
    EXPECT_EQ(textAt(directory / "file"), text);
    EXPECT_EQ(countOf(directory.path()), count);
  }
}

INSTANTIATE_TEST_SUITE_P(Files, ConfigurationFileMeanwhile, testing::ValuesIn(meanwhileRows), rowName);

TEST(ConfigurationFileMeanwhile, fileThatAppearedIsNotReplaced) {
  const TemporaryDirectory directory;
  const FileChange change = proposeChange(directory / "file", withMore);
  writeFile(directory / "file", "");
  EXPECT_EQ(failureOf([&] { write(change); }), Kind::changed);
  EXPECT_EQ(countOf(directory.path()), 1U);
}

/// Here it cannot be read back, because it is too large.
TEST(ConfigurationFileMeanwhile, fileThatIsNotAsWrittenIsToldWithItsCopy) {
  const TemporaryDirectory directory;
  writeFile(directory / "file", "text ");
  const FileChange change = proposeChange(directory / "file", [](std::string_view) {
    return std::string(maximumConfigurationFileSize + 1, 'x');
  });
  try {
    write(change);
    FAIL() << "it is not what was written";
  } catch (const ConfigurationFileError& error) {
    EXPECT_EQ(error.kind(), Kind::notVerified);
    EXPECT_EQ(error.reason(), "it is too large");
    EXPECT_EQ(fileContents(error.backup().value()), "text ");
  }
}

struct DiskRow {
  const char* name;
  std::size_t before, after;  // sizes in bytes, while no file may grow beyond 4000
};

class ConfigurationFileOnAFullDisk : public testing::TestWithParam<DiskRow> {};

TEST_P(ConfigurationFileOnAFullDisk, staysAsItIs) {
  const TemporaryDirectory directory;
  const std::string before(GetParam().before, 'o');
  writeFile(directory / "file", before);
  const std::string report = inForkedProcess([&] {
    std::signal(SIGXFSZ, SIG_IGN);
    const rlimit limit{4000, 4000};
    ::setrlimit(RLIMIT_FSIZE, &limit);
    const FileChange change = proposeChange(
        directory / "file", [](std::string_view) { return std::string(GetParam().after, 'n'); });
    return std::string(failureOf([&] { write(change); }) == Kind::notWritten ? "not written" : "written");
  });
  EXPECT_EQ(report, "not written");
  EXPECT_EQ(fileContents(directory / "file"), before);
  EXPECT_EQ(countOf(directory.path()), 1U);
}

const DiskRow diskRows[] = {
    {"noRoomForTheText", 3000, 5000},
    {"noRoomForTheBackup", 5000, 3000},
};

INSTANTIATE_TEST_SUITE_P(Files, ConfigurationFileOnAFullDisk, testing::ValuesIn(diskRows), rowName);

/// As another user, because root may write everywhere.
std::string asNobody(const std::function<std::string()>& function) {
  return inForkedProcess([&] {
    constexpr uid_t nobody = 65534;
    if (::geteuid() == 0 && ::setresuid(nobody, nobody, nobody) != 0) {
      return std::string("the user cannot be changed");
    }
    return function();
  });
}

TEST(ConfigurationFileRights, folderThatMayNotBeWrittenStaysAsItIs) {
  const TemporaryDirectory directory;
  writeFile(directory / "file", "text ");
  if (::geteuid() == 0) {
    ASSERT_EQ(::chown((directory / "file").c_str(), 65534, 65534), 0);
  }
  fs::permissions(directory.path(), fs::perms(0555));
  const std::string report = asNobody([&] {
    const FileChange change = proposeChange(directory / "file", withMore);
    return std::string(failureOf([&] { write(change); }) == Kind::notWritten ? "not written" : "written");
  });
  fs::permissions(directory.path(), fs::perms(0700));
  EXPECT_EQ(report, "not written");
  EXPECT_EQ(fileContents(directory / "file"), "text ");
  EXPECT_EQ(countOf(directory.path()), 1U);
}

TEST(ConfigurationFileRights, groupStays) {
  const TemporaryDirectory directory;
  writeFile(directory / "file", "text ");
  const gid_t group = ::geteuid() == 0 ? 65534 : ::getegid();
  ASSERT_EQ(::chown((directory / "file").c_str(), static_cast<uid_t>(-1), group), 0);
  fs::permissions(directory / "file", fs::perms(0640));
  const FileRights rights{.mode = 0640, .owner = ::geteuid(), .group = group};
  const WrittenFile written = write(proposeChange(directory / "file", withMore));
  EXPECT_EQ(fileRights(directory / "file"), rights);
  EXPECT_EQ(fileRights(written.backup.value_or("")), rights);
  undo(written);
  EXPECT_EQ(fileRights(directory / "file"), rights);
}

TEST(ConfigurationFileRights, fileThatMayNotBeReadIsNoMissingFile) {
  const TemporaryDirectory directory;
  fs::create_directory(directory / "closed");
  writeFile(directory / "closed" / "file", "text");
  writeFile(directory / "file", "text");
  fs::permissions(directory / "file", fs::perms(0000));
  fs::permissions(directory / "closed", fs::perms(0000));
  fs::permissions(directory.path(), fs::perms(0755));
  for (const fs::path& file : {directory / "file", directory / "closed" / "file"}) {
    EXPECT_EQ(asNobody([&] {
                const std::optional<Kind> kind = failureOf([&] { (void)readConfigurationFile(file); });
                return std::string(kind == Kind::unreadable ? "unreadable" : "other");
              }),
              "unreadable")
        << file;
  }
  fs::permissions(directory / "closed", fs::perms(0700));
}

}  // namespace
}  // namespace tarnwell::test
