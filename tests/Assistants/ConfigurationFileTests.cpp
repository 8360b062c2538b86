#include "Assistants/ConfigurationFile.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>

#include "support/Files.h"
#include "support/RowName.h"
#include "support/TemporaryDirectory.h"

namespace tarnwell::test {
namespace {

namespace fs = std::filesystem;
using Kind = ConfigurationFileError::Kind;
using testing::ElementsAre;
using testing::MatchesRegex;

std::string withMore(std::string_view text) { return std::string(text) + "more"; }

/// The kind of the error that the function throws; absent when it throws none.
std::optional<Kind> failureOf(const std::function<void()>& function) {
  try {
    function();
  } catch (const ConfigurationFileError& error) {
    EXPECT_THAT(error.what(), testing::HasSubstr(error.path().string() + ": " + error.reason()));
    EXPECT_NE(error.reason(), "");
    return error.kind();
  }
  return std::nullopt;
}

constexpr const char* backupName = "file\\.tarnwell-[0-9]{8}T[0-9]{6}Z";

TEST(ConfigurationFile, aProposalChangesNothing) {
  const TemporaryDirectory directory;
  writeFile(directory / "file", "text ");
  const FileChange change = proposeChange(directory / "file", withMore);
  EXPECT_EQ(change.path, directory / "file");
  EXPECT_EQ(change.target, fs::canonical(directory / "file"));
  EXPECT_EQ(change.before, "text ");
  EXPECT_EQ(change.after, "text more");
  EXPECT_FALSE(change.isNothing());
  EXPECT_EQ(fileContents(directory / "file"), "text ");
  EXPECT_THAT(entryNames(directory.path()), ElementsAre("file"));
}

TEST(ConfigurationFile, isWrittenWithABackupAndTakenBack) {
  for (const unsigned mode : {0600U, 0640U, 0644U, 0664U, 0700U, 0400U}) {
    const TemporaryDirectory directory;
    writeFile(directory / "file", "text ");
    fs::permissions(directory / "file", fs::perms(mode));
    const WrittenFile written = write(proposeChange(directory / "file", withMore));
    EXPECT_EQ(fileContents(directory / "file"), "text more");
    EXPECT_EQ(fileMode(directory / "file"), mode);
    EXPECT_THAT(entryNames(directory.path()), ElementsAre("file", MatchesRegex(backupName)));
    ASSERT_TRUE(written.backup);
    EXPECT_EQ(fileContents(*written.backup), "text ");
    EXPECT_EQ(fileMode(*written.backup), mode);

    undo(written);
    EXPECT_EQ(fileContents(directory / "file"), "text ");
    EXPECT_EQ(fileMode(directory / "file"), mode);
    EXPECT_THAT(entryNames(directory.path()), ElementsAre("file", MatchesRegex(backupName)));
  }
}

TEST(ConfigurationFile, nothingIsWrittenWhenNothingChanges) {
  const TemporaryDirectory directory;
  writeFile(directory / "file", "text");
  const WrittenFile written =
      write(proposeChange(directory / "file", [](std::string_view text) { return std::string(text); }));
  EXPECT_TRUE(written.change.isNothing());
  EXPECT_EQ(written.backup, std::nullopt);
  undo(written);
  EXPECT_THAT(entryNames(directory.path()), ElementsAre("file"));
}

TEST(ConfigurationFile, missingFileIsMadeForTheUserAloneAndRemovedAgain) {
  const TemporaryDirectory directory;
  const FileChange change = proposeChange(directory / "file", withMore);
  EXPECT_EQ(change.before, std::nullopt);
  EXPECT_EQ(readConfigurationFile(directory / "file"), std::nullopt);
  const mode_t former = ::umask(0);
  const WrittenFile written = write(change);
  ::umask(former);
  EXPECT_EQ(fileContents(directory / "file"), "more");
  EXPECT_EQ(fileMode(directory / "file"), 0600U);
  EXPECT_EQ(written.backup, std::nullopt);
  EXPECT_THAT(entryNames(directory.path()), ElementsAre("file"));
  undo(written);
  EXPECT_THAT(entryNames(directory.path()), ElementsAre());
}

TEST(ConfigurationFile, backupsOfTheSameSecondStayBesideEachOther) {
  const TemporaryDirectory directory;
  writeFile(directory / "file", "0");
  for (int count = 0; count < 20; ++count) {
    write(proposeChange(directory / "file", withMore));
  }
  EXPECT_EQ(entryNames(directory.path()).size(), 21U);
}

TEST(ConfigurationFile, theEditMayRefuse) {
  const TemporaryDirectory directory;
  writeFile(directory / "file", "text");
  EXPECT_THROW((void)proposeChange(directory / "file",
                                   [](std::string_view) -> std::string { throw std::out_of_range("no"); }),
               std::out_of_range);
}

struct LinkRow {
  const char* name;
  std::vector<std::pair<const char*, const char*>> links;  // name and target, in the folder "home"
  const char* target;                                      // from the folder that holds "home" and "dotfiles"
  bool isThere;
};

class LinkedConfigurationFile : public testing::TestWithParam<LinkRow> {};

TEST_P(LinkedConfigurationFile, changesAtTheEndOfItsLinks) {
  const LinkRow& row = GetParam();
  const TemporaryDirectory directory;
  fs::create_directory(directory / "home");
  fs::create_directory(directory / "dotfiles");
  const fs::path target = directory / row.target;
  if (row.isThere) {
    writeFile(target, "text ");
    fs::permissions(target, fs::perms(0644));
  }
  for (const auto& [name, end] : row.links) {
    fs::create_symlink(std::string(end) == "ABSOLUTE" ? target : fs::path(end), directory / "home" / name);
  }
  const fs::path path = directory / "home" / "file";
  const FileChange change = proposeChange(path, withMore);
  EXPECT_EQ(change.target, fs::canonical(target.parent_path()) / target.filename());
  const WrittenFile written = write(change);
  EXPECT_EQ(fileContents(target), row.isThere ? "text more" : "more");
  EXPECT_EQ(fileMode(target), row.isThere ? 0644U : 0600U);
  EXPECT_TRUE(fs::is_symlink(path));
  EXPECT_EQ(written.backup ? written.backup->parent_path() : change.target.parent_path(),
            change.target.parent_path());
  EXPECT_EQ(entryNames(directory / "home").size(), row.links.size());
  undo(written);
  EXPECT_EQ(fs::exists(target), row.isThere);
  EXPECT_EQ(fileContents(target), row.isThere ? "text " : "");
  EXPECT_TRUE(fs::is_symlink(path));
}

const LinkRow linkRows[] = {
    {"relative", {{"file", "../dotfiles/real"}}, "dotfiles/real", true},
    {"absolute", {{"file", "ABSOLUTE"}}, "dotfiles/real", true},
    {"chain",
     {{"file", "second"}, {"second", "./third"}, {"third", "../dotfiles/real"}},
     "dotfiles/real",
     true},
    {"throughALinkedFolder", {{"file", "folder/real"}, {"folder", "../dotfiles"}}, "dotfiles/real", true},
    {"upFromALinkedFolder", {{"file", "folder/../real"}, {"folder", "../dotfiles"}}, "real", true},
    {"toNothing", {{"file", "../dotfiles/real"}}, "dotfiles/real", false},
    {"chainToNothing", {{"file", "second"}, {"second", "ABSOLUTE"}}, "dotfiles/real", false},
};

INSTANTIATE_TEST_SUITE_P(Links, LinkedConfigurationFile, testing::ValuesIn(linkRows), rowName);

struct RefusedRow {
  const char* name;
  std::function<void(const fs::path& folder)> prepare;  // makes "file" in the folder
  Kind kind;
};

class RefusedConfigurationFile : public testing::TestWithParam<RefusedRow> {};

TEST_P(RefusedConfigurationFile, isNotProposed) {
  const TemporaryDirectory directory;
  GetParam().prepare(directory.path());
  const std::vector<std::string> before = entryNames(directory.path());
  EXPECT_EQ(failureOf([&] { (void)proposeChange(directory / "file", withMore); }), GetParam().kind);
  EXPECT_EQ(entryNames(directory.path()), before);
  fs::permissions(directory.path(), fs::perms::owner_all);
}

const RefusedRow refusedRows[] = {
    {"directory", [](const fs::path& folder) { fs::create_directory(folder / "file"); }, Kind::unreadable},
    {"pipe", [](const fs::path& folder) { ASSERT_EQ(::mkfifo((folder / "file").c_str(), 0600), 0); },
     Kind::unreadable},
    {"device", [](const fs::path& folder) { fs::create_symlink("/dev/null", folder / "file"); },
     Kind::unreadable},
    {"linkToItself", [](const fs::path& folder) { fs::create_symlink("file", folder / "file"); },
     Kind::unreadable},
    {"linksInACircle",
     [](const fs::path& folder) {
       fs::create_symlink("other", folder / "file");
       fs::create_symlink("file", folder / "other");
     },
     Kind::unreadable},
    {"moreThanTheLimit",
     [](const fs::path& folder) {
       writeFile(folder / "file", "");
       fs::resize_file(folder / "file", maximumConfigurationFileSize + 1);
     },
     Kind::tooLarge},
    {"everybodyMayWriteIt",
     [](const fs::path& folder) {
       writeFile(folder / "file", "text");
       fs::permissions(folder / "file", fs::perms(0666));
     },
     Kind::otherWriter},
    {"everybodyMayWriteInItsFolder",
     [](const fs::path& folder) {
       writeFile(folder / "file", "text");
       fs::permissions(folder, fs::perms(0777));
     },
     Kind::otherWriter},
    {"missingWhereEverybodyMayWrite",
     [](const fs::path& folder) { fs::permissions(folder, fs::perms(0777)); }, Kind::otherWriter},
    {"linkToAMissingFolder",
     [](const fs::path& folder) { fs::create_symlink("missing/file", folder / "file"); }, Kind::notWritten},
};

INSTANTIATE_TEST_SUITE_P(Files, RefusedConfigurationFile, testing::ValuesIn(refusedRows), rowName);

TEST(ConfigurationFile, atTheLimitIsRead) {
  const TemporaryDirectory directory;
  writeFile(directory / "file", "");
  fs::resize_file(directory / "file", maximumConfigurationFileSize);
  EXPECT_EQ(readConfigurationFile(directory / "file").value_or("").size(), maximumConfigurationFileSize);
}

TEST(ConfigurationFile, missingFolderIsNotMade) {
  const TemporaryDirectory directory;
  EXPECT_EQ(readConfigurationFile(directory / "client/file"), std::nullopt);
  EXPECT_EQ(failureOf([&] { (void)proposeChange(directory / "client/file", withMore); }), Kind::notWritten);
  EXPECT_THAT(entryNames(directory.path()), ElementsAre());
}

}  // namespace
}  // namespace tarnwell::test
