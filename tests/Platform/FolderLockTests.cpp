#include "Platform/FolderLock.h"

#include <gtest/gtest.h>

#include <optional>

#include "support/ForkedProcess.h"
#include "support/TemporaryDirectory.h"

namespace tarnwell::test {
namespace {

using namespace std::chrono_literals;

std::string outcomeOf(const std::filesystem::path& folder) {
  try {
    const FolderLock lock(folder, 20ms);
  } catch (const std::filesystem::filesystem_error& error) {
    return error.path1() == folder ? "busy" : "other folder";
  }
  return "locked";
}

TEST(FolderLock, isHeldByOneAtATime) {
  const TemporaryDirectory directory;
  const TemporaryDirectory other;
  std::optional<FolderLock> lock(directory.path());
  EXPECT_EQ(outcomeOf(directory.path()), "busy");
  EXPECT_EQ(inForkedProcess([&] { return outcomeOf(directory.path()); }), "busy");
  EXPECT_EQ(outcomeOf(other.path()), "locked");
  lock.reset();
  EXPECT_EQ(outcomeOf(directory.path()), "locked");
}

TEST(FolderLock, folderThatCannotBeLockedIsNot) {
  const TemporaryDirectory directory;
  EXPECT_EQ(outcomeOf(directory / "missing"), "locked");
}

}  // namespace
}  // namespace tarnwell::test
