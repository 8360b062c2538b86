#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <stdexcept>

#include "Platform/PrivateFiles.h"
#include "support/Files.h"
#include "support/ForkedProcess.h"
#include "support/TemporaryDirectory.h"

namespace tarnwell::test {
namespace {

namespace fs = std::filesystem;

TEST(ReplaceFile, givesTheNewFileItsRights) {
  TemporaryDirectory directory;
  writeFile(directory / "file", "old");
  const unsigned group = ::geteuid() == 0 ? 65534 : ::getegid();  // only root may give any group
  for (const unsigned mode : {0400U, 0644U, 0777U}) {
    const FileRights rights{.mode = mode, .owner = ::geteuid(), .group = group};
    mode_t former = ::umask(077);
    replaceFile(directory / "file", "new", rights);
    ::umask(former);
    EXPECT_EQ(fileRights(directory / "file"), rights);
    EXPECT_EQ(fileContents(directory / "file"), "new");
  }
  EXPECT_EQ(fileRights(directory / "missing"), std::nullopt);
}

TEST(ReplaceFile, theLastLookMayRefuse) {
  TemporaryDirectory directory;
  writeFile(directory / "file", "old");
  std::string seen;
  const auto look = [&] {
    seen = fileContents(directory / "file");
    throw std::runtime_error("changed");
  };
  EXPECT_THROW(replaceFile(directory / "file", "new", {}, look), std::runtime_error);
  EXPECT_EQ(seen, "old");
  EXPECT_EQ(fileContents(directory / "file"), "old");
  EXPECT_THAT(entryNames(directory.path()), testing::ElementsAre("file"));
}

TEST(CreateFile, makesOnlyANewFile) {
  TemporaryDirectory directory;
  fs::create_symlink("missing", directory / "link");
  EXPECT_TRUE(createFile(directory / "file", "first", {.mode = 0640, .owner = {}, .group = {}}));
  EXPECT_FALSE(createFile(directory / "file", "second", {}));
  EXPECT_FALSE(createFile(directory / "link", "second", {}));
  EXPECT_EQ(fileContents(directory / "file"), "first");
  EXPECT_EQ(fileMode(directory / "file"), 0640U);
  EXPECT_THAT(entryNames(directory.path()), testing::ElementsAre("file", "link"));
}

TEST(CreateFile, fullDiskLeavesNothing) {
  TemporaryDirectory directory;
  std::string report = inForkedProcess([&] {
    std::signal(SIGXFSZ, SIG_IGN);
    rlimit limit{4000, 4000};
    ::setrlimit(RLIMIT_FSIZE, &limit);
    createFile(directory / "file", std::string(5000, 'n'), {});
    return std::string("made");
  });
  EXPECT_THAT(report, testing::HasSubstr("threw: "));
  EXPECT_THAT(entryNames(directory.path()), testing::ElementsAre());
}

TEST(EverybodyMayReplaceFilesIn, foldersThatAreOpenAndNotSticky) {
  TemporaryDirectory directory;
  for (const auto& [mode, expected] : {std::pair(0700U, false), {0777U, true}, {01777U, false}}) {
    fs::permissions(directory.path(), fs::perms(mode));
    EXPECT_EQ(everybodyMayReplaceFilesIn(directory.path()), expected) << mode;
  }
  EXPECT_FALSE(everybodyMayReplaceFilesIn(directory / "missing"));
}

}  // namespace
}  // namespace tarnwell::test
