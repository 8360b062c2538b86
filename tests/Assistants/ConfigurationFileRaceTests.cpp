/// Another program that acts between the looks at a file and the step that replaces it.

#include <gtest/gtest.h>
#include <unistd.h>

#include <functional>
#include <utility>

#include "Assistants/ConfigurationFile.h"
#include "Platform/FolderLock.h"
#include "support/Files.h"
#include "support/TemporaryDirectory.h"

namespace {

/// What another program does when the next text is about to go to the disk: after the first look at the file,
/// and before the last one.
std::function<void()> otherProgram;

}  // namespace

/// Takes the place of the system's fsync(2) in this test program, in which nothing has to survive.
int fsync(int /*file*/) {
  if (const std::function<void()> act = std::exchange(otherProgram, nullptr)) {
    act();
  }
  return 0;
}

namespace tarnwell::test {
namespace {

namespace fs = std::filesystem;
using Kind = ConfigurationFileError::Kind;
using namespace std::chrono_literals;

class RacedConfigurationFile : public testing::Test {
 protected:
  void put(std::string_view text) const { std::ofstream(file, std::ios::binary) << text; }
  FileChange proposal() const {
    return proposeChange(file, [](std::string_view text) { return std::string(text) + "more"; });
  }
  static std::optional<Kind> failureOf(const std::function<void()>& work) {
    try {
      work();
    } catch (const ConfigurationFileError& error) {
      return error.kind();
    }
    return std::nullopt;
  }
  std::ptrdiff_t count() const { return std::distance(fs::directory_iterator(directory.path()), {}); }

  TemporaryDirectory directory;
  const fs::path file = directory / "file";
};

TEST_F(RacedConfigurationFile, changedDuringTheWriteIsNotReplaced) {
  put("text ");
  const FileChange change = proposal();
  bool hasActed = false;
  otherProgram = [&] {
    put("other");
    hasActed = true;
  };
  EXPECT_EQ(failureOf([&] { write(change); }), Kind::changed);
  EXPECT_TRUE(hasActed);
  EXPECT_EQ(fileContents(file), "other");
  EXPECT_EQ(count(), 1);
}

TEST_F(RacedConfigurationFile, madeDuringTheWriteIsNotReplaced) {
  const FileChange change = proposal();
  otherProgram = [&] { put("other"); };
  EXPECT_EQ(failureOf([&] { write(change); }), Kind::changed);
  EXPECT_EQ(fileContents(file), "other");
  EXPECT_EQ(count(), 1);
}

TEST_F(RacedConfigurationFile, changedDuringTheUndoIsNotReplaced) {
  put("text ");
  const WrittenFile written = write(proposal());
  otherProgram = [&] { put("other"); };
  EXPECT_EQ(failureOf([&] { undo(written); }), Kind::changed);
  EXPECT_EQ(fileContents(file), "other");
  EXPECT_EQ(count(), 2);
}

TEST_F(RacedConfigurationFile, isNotWrittenWhileItsFolderIsLocked) {
  put("text ");
  const FileChange change = proposal();
  std::optional<FolderLock> lock(directory.path());
  EXPECT_EQ(failureOf([&] { write(change, 10ms); }), Kind::notWritten);
  EXPECT_EQ(fileContents(file), "text ");
  EXPECT_EQ(count(), 1);
  lock.reset();
  const WrittenFile written = write(change, 10ms);
  lock.emplace(directory.path());
  EXPECT_EQ(failureOf([&] { undo(written, 10ms); }), Kind::notWritten);
  EXPECT_EQ(fileContents(file), "text more");
}

}  // namespace
}  // namespace tarnwell::test
