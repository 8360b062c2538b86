#include "Platform/PrivateFiles.h"

#include <sys/resource.h>
#include <sys/stat.h>

#include <algorithm>
#include <csignal>
#include <fstream>

#include "support/Files.h"
#include "support/ForkedProcess.h"
#include "support/TemporaryDirectory.h"

namespace tarnwell::test {
namespace {

namespace fs = std::filesystem;

TEST(ReadFilePrefix, givesAtMostTheLimit) {
  TemporaryDirectory directory;
  fs::path path = directory / "file";
  std::string text(40'000, 'x');
  text[39'999] = 'y';
  writeFile(path, text);
  for (std::size_t limit : {0U, 1U, 16'384U, 39'999U, 40'000U, 50'000U}) {
    EXPECT_EQ(readFilePrefix(path, limit), FilePrefix{text.substr(0, limit)}) << limit;
  }
}

TEST(ReadFilePrefix, bytesAreNotChanged) {
  TemporaryDirectory directory;
  std::string bytes("\0\r\n\xFF\x1A end", 9);
  writeFile(directory / "file", bytes);
  EXPECT_EQ(readFilePrefix(directory / "file", 100), FilePrefix{bytes});
  writeFile(directory / "empty", "");
  EXPECT_EQ(readFilePrefix(directory / "empty", 100), FilePrefix{});
}

TEST(ReadFilePrefix, whatIsNoRegularFileIsAbsentWithoutWaiting) {
  TemporaryDirectory directory;
  fs::path pipe = directory / "pipe";
  ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
  fs::create_symlink(directory / "nowhere", directory / "dangling");
  fs::create_symlink(pipe, directory / "link to pipe");
  for (const fs::path& path :
       {pipe, directory / "link to pipe", directory / "dangling", directory / "missing", directory.path(),
        fs::path("/dev/null"), fs::path("/dev/zero"), fs::path()}) {
    EXPECT_EQ(readFilePrefix(path, 100), std::nullopt) << path;
  }
}

TEST(ReadFilePrefix, symbolicLinkToAFileIsFollowed) {
  TemporaryDirectory directory;
  writeFile(directory / "file", "text");
  fs::create_symlink(directory / "file", directory / "link");
  EXPECT_EQ(readFilePrefix(directory / "link", 100), FilePrefix{"text"});
}

/// The file "real/file", and the link "links/file" to it.
TEST(ReadFilePrefix, tellsWhoElseMayHaveWrittenTheFile) {
  using enum OtherWriter;
  const struct {
    const char* name;
    unsigned file, folder, folderOfLink;
    OtherWriter byItsPath, byTheLink;
  } rows[] = {
      {"the user alone", 0600, 0700, 0700, none, none},
      {"everybody may read", 0644, 0755, 0755, none, none},
      {"the group may write", 0660, 0770, 0770, none, none},
      {"everybody may write the file", 0602, 0700, 0700, everybody, everybody},
      {"everybody may write all", 0666, 0777, 0777, everybody, everybody},
      {"everybody may write in the folder", 0600, 0777, 0700, everybodyInFolder, everybodyInFolder},
      {"everybody may write in the sticky folder", 0600, 01777, 01777, none, none},
      {"everybody may write in the folder of the link", 0600, 0700, 0777, none, everybodyInFolder},
      {"the folder may not be listed", 0600, 0300, 0300, none, none},
  };
  TemporaryDirectory directory;
  const fs::path file = directory / "real" / "file";
  const fs::path link = directory / "links" / "file";
  fs::create_directory(file.parent_path());
  fs::create_directory(link.parent_path());
  writeFile(file, "text");
  fs::create_symlink(file, link);
  const auto expected = [](OtherWriter other) { return FilePrefix{other == none ? "text" : "", other}; };
  for (const auto& row : rows) {
    fs::permissions(file.parent_path(), fs::perms(row.folder));
    fs::permissions(link.parent_path(), fs::perms(row.folderOfLink));
    fs::permissions(file, fs::perms(row.file));
    EXPECT_EQ(readFilePrefix(file, 100), expected(row.byItsPath)) << row.name;
    EXPECT_EQ(readFilePrefix(link, 100), expected(row.byTheLink)) << row.name << ", by the link";
  }
  fs::permissions(file.parent_path(), fs::perms::owner_all);
  fs::permissions(link.parent_path(), fs::perms::owner_all);
}

TEST(ReadFilePrefix, relativePathIsReadInTheWorkingDirectory) {
  TemporaryDirectory directory;
  writeFile(directory / "file", "text");
  EXPECT_EQ(inForkedProcess([&] {
              fs::current_path(directory.path());
              return readFilePrefix("file", 100).value_or(FilePrefix{"absent"}).text;
            }),
            "text");
}

TEST(CreatePrivateDirectories, allThatAreMadeBelongToTheUserAlone) {
  TemporaryDirectory directory;
  mode_t former = ::umask(0);
  createPrivateDirectories(directory / "one" / "two" / "three");
  ::umask(former);
  EXPECT_EQ(fileMode(directory / "one"), 0700U);
  EXPECT_EQ(fileMode(directory / "one" / "two"), 0700U);
  EXPECT_EQ(fileMode(directory / "one" / "two" / "three"), 0700U);
}

TEST(CreatePrivateDirectories, whatExistsStaysAsItIs) {
  TemporaryDirectory directory;
  fs::create_directory(directory / "open");
  fs::permissions(directory / "open", fs::perms(0755));
  fs::create_directory_symlink(directory / "open", directory / "link");
  createPrivateDirectories(directory / "open");
  createPrivateDirectories(directory / "link" / "inner");
  EXPECT_EQ(fileMode(directory / "open"), 0755U);
  EXPECT_EQ(fileMode(directory / "open" / "inner"), 0700U);
}

TEST(CreatePrivateDirectories, failureNamesThePath) {
  TemporaryDirectory directory;
  writeFile(directory / "file", "text");
  for (const fs::path& path : {directory / "file", directory / "file" / "inner"}) {
    try {
      createPrivateDirectories(path);
      ADD_FAILURE() << "no error for " << path;
    } catch (const fs::filesystem_error& error) {
      EXPECT_EQ(error.path1(), directory / "file");
    }
  }
  EXPECT_EQ(fileContents(directory / "file"), "text");
}

TEST(ReplacePrivateFile, newFileBelongsToTheUserAlone) {
  TemporaryDirectory directory;
  for (mode_t mask : {mode_t{0}, mode_t{022}, mode_t{077}}) {
    mode_t former = ::umask(mask);
    replacePrivateFile(directory / "file", "text");
    ::umask(former);
    EXPECT_EQ(fileMode(directory / "file"), 0600U);
  }
}

TEST(ReplacePrivateFile, nothingStaysBesideTheFile) {
  TemporaryDirectory directory;
  writeFile(directory / "file", std::string(100'000, 'o'));
  fs::permissions(directory / "file", fs::perms(0644));
  replacePrivateFile(directory / "file", "new");
  EXPECT_EQ(fileContents(directory / "file"), "new");
  EXPECT_EQ(fileMode(directory / "file"), 0600U);
  EXPECT_THAT(entryNames(directory.path()), testing::ElementsAre("file"));
}

TEST(ReplacePrivateFile, readerOfTheOldFileKeepsReadingTheOldText) {
  TemporaryDirectory directory;
  writeFile(directory / "file", "old");
  std::ifstream reader(directory / "file");
  replacePrivateFile(directory / "file", "new");
  std::string text;
  reader >> text;
  EXPECT_EQ(text, "old");
}

TEST(ReplacePrivateFile, fullDiskLeavesTheOldFileByteForByte) {
  TemporaryDirectory directory;
  writeFile(directory / "file", "old text");
  std::string report = inForkedProcess([&] {
    std::signal(SIGXFSZ, SIG_IGN);
    rlimit limit{4000, 4000};
    ::setrlimit(RLIMIT_FSIZE, &limit);
    replacePrivateFile(directory / "file", std::string(5000, 'n'));
    return std::string("replaced");
  });
  EXPECT_THAT(report, testing::HasSubstr("threw: "));
  EXPECT_THAT(report, testing::HasSubstr((directory / "file").string()));
  EXPECT_EQ(fileContents(directory / "file"), "old text");
  EXPECT_THAT(entryNames(directory.path()), testing::ElementsAre("file"));
}

TEST(ReplacePrivateFile, processThatIsKilledLeavesTheOldFile) {
  TemporaryDirectory directory;
  writeFile(directory / "file", "old text");
  std::string report = inForkedProcess([&] {
    rlimit limit{4000, 4000};  // the write past the limit kills the process
    ::setrlimit(RLIMIT_FSIZE, &limit);
    replacePrivateFile(directory / "file", std::string(5000, 'n'));
    return std::string("replaced");
  });
  EXPECT_THAT(report, testing::HasSubstr("died: "));
  EXPECT_EQ(fileContents(directory / "file"), "old text");
}

struct FailureRow {
  const char* name;
  const char* path;
};

TEST(ReplacePrivateFile, failureNamesThePathAndLeavesNothing) {
  TemporaryDirectory directory;
  writeFile(directory / "file", "old text");
  fs::create_directories(directory / "full" / "inner");
  const FailureRow rows[] = {
      {"no directory", "missing/file"},
      {"a file as directory", "file/config"},
      {"a directory in the file's place", "full"},
  };
  for (const FailureRow& row : rows) {
    try {
      replacePrivateFile(directory.path() / row.path, "new");
      ADD_FAILURE() << "no error: " << row.name;
    } catch (const fs::filesystem_error& error) {
      EXPECT_EQ(error.path1(), directory.path() / row.path) << row.name;
    }
  }
  EXPECT_EQ(fileContents(directory / "file"), "old text");
  EXPECT_THAT(entryNames(directory.path()), testing::ElementsAre("file", "full"));
}

}  // namespace
}  // namespace tarnwell::test
