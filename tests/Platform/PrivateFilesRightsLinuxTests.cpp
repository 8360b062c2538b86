/// Rights that the system does not let a user give, and access lists.

#include <grp.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <fstream>
#include <ostream>

#include "Platform/PrivateFiles.h"
#include "support/Files.h"
#include "support/ForkedProcess.h"
#include "support/RowName.h"
#include "support/TemporaryDirectory.h"

namespace tarnwell::test {
namespace {

namespace fs = std::filesystem;

constexpr unsigned stranger = 54'321;

/// A user who is in no group but one of her own.
bool isNowTheStranger() {
  return ::setgroups(0, nullptr) == 0 && ::setgid(stranger) == 0 && ::setuid(stranger) == 0;
}

struct GroupRow {
  const char* name;
  unsigned wanted;
  unsigned given;
};

void PrintTo(const GroupRow& row, std::ostream* stream) { *stream << row.name; }

class GroupThatCannotBeGiven : public testing::TestWithParam<GroupRow> {};
INSTANTIATE_TEST_SUITE_P(Table, GroupThatCannotBeGiven,
                         testing::Values(GroupRow{"ownerAlone", 0600, 0600},
                                         GroupRow{"groupReads", 0640, 0600},
                                         GroupRow{"groupWrites", 0660, 0600},
                                         GroupRow{"everybodyReads", 0644, 0644},
                                         GroupRow{"groupWritesAndEverybodyReads", 0664, 0644},
                                         GroupRow{"groupAloneMayNot", 0604, 0600}),
                         rowName);

TEST_P(GroupThatCannotBeGiven, letsNobodyDoMore) {
  TemporaryDirectory directory;
  const bool isRoot = ::geteuid() == 0;
  if (isRoot) {
    ASSERT_EQ(::chown(directory.path().c_str(), stranger, stranger), 0);
  }
  const unsigned otherGroup = stranger + 1;
  EXPECT_EQ(inForkedProcess([&] {
              fs::current_path(directory.path());
              if (isRoot && !isNowTheStranger()) {
                return std::string("still root");
              }
              replaceFile("file", "text",
                          {.mode = GetParam().wanted, .owner = ::geteuid(), .group = otherGroup});
              return std::string("written");
            }),
            "written");
  EXPECT_EQ(fileMode(directory / "file"), GetParam().given);
  EXPECT_NE(fileRights(directory / "file")->group, otherGroup);
}

/// As acl(5) lays it out: the owner reads and writes, user 1 reads and writes, the group and others nothing.
void giveAccessList(const fs::path& path, const char* kind) {
  const unsigned char list[] = {2,    0, 0, 0,                       // version
                                1,    0, 6, 0, 255, 255, 255, 255,   // owner
                                2,    0, 6, 0, 1,   0,   0,   0,     // user 1
                                4,    0, 0, 0, 255, 255, 255, 255,   // group
                                0x10, 0, 6, 0, 255, 255, 255, 255,   // mask
                                0x20, 0, 0, 0, 255, 255, 255, 255};  // others
  ASSERT_EQ(::setxattr(path.c_str(), kind, list, sizeof list, 0), 0) << path;
}

class AccessListOfAFile : public testing::Test {
 protected:
  void SetUp() override {
    std::ofstream(file) << "old";
    giveAccessList(file, "system.posix_acl_access");
    ASSERT_EQ(fileMode(file), 0660U);
    rights = fileRights(file).value();
    ASSERT_TRUE(rights.accessList);
  }

  TemporaryDirectory directory;
  const fs::path file = directory / "file";
  FileRights rights;
};

TEST_F(AccessListOfAFile, comesWithItsText) {
  giveAccessList(directory.path(), "system.posix_acl_default");
  replaceFile(file, "new", rights);
  EXPECT_TRUE(createFile(directory / "copy", "old", rights));
  for (const fs::path& made : {file, directory / "copy"}) {
    EXPECT_EQ(fileRights(made), rights);
    EXPECT_EQ(fileMode(made), 0660U);
  }
}

/// The bits of its group look as if the group might read and write.
TEST_F(AccessListOfAFile, opensItToNobodyWhereItCannotBeGiven) {
  EXPECT_EQ(rights.mode, 0600U);
  for (const char* list : {"", "no list"}) {
    rights.accessList = list;
    replaceFile(file, "new", rights);
    EXPECT_EQ(fileMode(file), 0600U);
    EXPECT_EQ(fileRights(file)->accessList, std::nullopt);
  }
}

/// It says what the members of its group may do, and this is another group.
TEST_F(AccessListOfAFile, doesNotComeWithAnotherGroup) {
  const std::optional<std::string> list = rights.accessList;
  const FileRights wanted{.mode = 0640, .owner = ::geteuid(), .group = stranger + 1, .accessList = list};
  const bool isRoot = ::geteuid() == 0;
  if (isRoot) {
    ASSERT_EQ(::chown(directory.path().c_str(), stranger, stranger), 0);
  }
  EXPECT_EQ(inForkedProcess([&] {
              fs::current_path(directory.path());
              if (isRoot && !isNowTheStranger()) {
                return std::string("still root");
              }
              replaceFile("file", "new", wanted);
              return std::string("written");
            }),
            "written");
  EXPECT_EQ(fileRights(file)->accessList, std::nullopt);
  EXPECT_EQ(fileMode(file), 0600U);
}

TEST(AccessList, thatTheFolderGivesOpensTheFileToNobody) {
  TemporaryDirectory directory;
  giveAccessList(directory.path(), "system.posix_acl_default");
  replaceFile(directory / "file", "new", {.mode = 0640, .owner = {}, .group = {}});
  EXPECT_EQ(fileMode(directory / "file"), 0600U);
  EXPECT_TRUE(createFile(directory / "copy", "new", {.mode = 0644, .owner = {}, .group = {}}));
  EXPECT_EQ(fileMode(directory / "copy"), 0600U);
}

}  // namespace
}  // namespace tarnwell::test
