#include "IMAP/MailboxMapper.h"

#include <gtest/gtest.h>

#include "support/RowName.h"

namespace tarnwell::test {
namespace {

using Folders = std::vector<IMAPFolder>;

IMAPFolder folder(std::string path, std::string name, std::optional<std::string> specialUse = std::nullopt) {
  return {.name = std::move(name),
          .path = std::move(path),
          .delimiter = "/",
          .specialUse = std::move(specialUse)};
}

/// A folder without a parent, whose name is its path.
IMAPFolder folder(const std::string& path) { return folder(path, path); }

/// The found folder as its place in the list; -1 when there is none.
int placeOf(const std::optional<IMAPFolder>& found, const Folders& folders) {
  for (std::size_t place = 0; found && place < folders.size(); ++place) {
    if (folders[place] == *found) {
      return static_cast<int>(place);
    }
  }
  EXPECT_FALSE(found) << "a folder that is not in the list";
  return -1;
}

// --- resolve ---------------------------------------------------------------------------------------------

struct ResolveRow {
  const char* name;
  const char* wanted;
  Folders folders;
  int place;
};

class Resolve : public testing::TestWithParam<ResolveRow> {};

TEST_P(Resolve, findsTheFolder) {
  const ResolveRow& row = GetParam();
  EXPECT_EQ(placeOf(MailboxMapper::resolve(row.wanted, row.folders), row.folders), row.place);
}

INSTANTIATE_TEST_SUITE_P(
    Table, Resolve,
    testing::Values(
        ResolveRow{"emptyList", "x", {}, -1}, ResolveRow{"emptyNameInEmptyList", "", {}, -1},
        ResolveRow{"emptyName", "", {folder("Archive")}, -1},
        ResolveRow{"path", "archive", {folder("Archive"), folder("Archive/2023", "2023")}, 0},
        ResolveRow{"pathOfAChild", "Archive/2023", {folder("Archive"), folder("Archive/2023", "2023")}, 1},
        ResolveRow{"nameOfAChild", "2023", {folder("Archive"), folder("Archive/2023", "2023")}, 1},
        ResolveRow{"pathInOtherCase", "aRCHIVE/2023", {folder("ARCHIVE/2023", "2023")}, 0},
        ResolveRow{"nameInOtherCase", "WORK", {folder("x/Work", "wOrK")}, 0},
        ResolveRow{"pathInOtherCaseBeyondASCII", "ÉTÉ/äß", {folder("été/ÄSS"), folder("Été/Äß", "Äß")}, 1},
        ResolveRow{"nameInOtherCaseBeyondASCII", "СЧЕТА", {folder("a/Счета", "Счета")}, 0},
        ResolveRow{"japanese", "書類", {folder("x/書類", "書類")}, 0},
        ResolveRow{"pathListedLaterBeatsName", "Work", {folder("Old/Work", "Work"), folder("Work")}, 1},
        ResolveRow{"firstOfTwoPaths", "tea", {folder("TEA", "a"), folder("Tea", "b"), folder("tea", "c")}, 0},
        ResolveRow{"firstOfTwoNames", "tea", {folder("b/Tea", "Tea"), folder("a/tea", "tea")}, 0},
        ResolveRow{
            "exactCaseIsNoBetterThanOther", "tea", {folder("x/TEA", "TEA"), folder("y/tea", "tea")}, 0},
        ResolveRow{"noPrefix", "Arch", {folder("Archive")}, -1},
        ResolveRow{"noSuffix", "chive", {folder("Archive")}, -1},
        ResolveRow{"noLongerName", "Archives", {folder("Archive")}, -1},
        ResolveRow{"noPartOfAPath", "a/b", {folder("a/b/c", "c")}, -1},
        ResolveRow{"noSpecialUse", "\\Archive", {folder("Old", "Old", "\\Archive")}, -1},
        ResolveRow{"noTrimming", " Work ", {folder("Work")}, -1},
        ResolveRow{"blanksCount", "Sent Messages", {folder("SentMessages"), folder("Sent Messages")}, 1},
        ResolveRow{"quotesAndBackslashes", "say \"A\\B\"", {folder("Say \"a\\b\"")}, 0},
        ResolveRow{"inbox", "inbox", {folder("INBOX")}, 0}),
    rowName);

TEST(MailboxMapper, resolveDoesNotLookAtSelectable) {
  IMAPFolder unselectable = folder("Lists");
  unselectable.selectable = false;
  EXPECT_EQ(MailboxMapper::resolve("lists", {unselectable, folder("x/Lists", "Lists")}), unselectable);
}

INSTANTIATE_TEST_SUITE_P(
    ModifiedUTF7, Resolve,
    testing::Values(
        ResolveRow{"path", "プロジェクト", {folder("INBOX"), folder("&MNcw7TC4MKcwrzDI-")}, 1},
        ResolveRow{"pathOfAChild", "書類/プロジェクト", {folder("&ZviYXg-/&MNcw7TC4MKcwrzDI-")}, 0},
        ResolveRow{"name", "プロジェクト", {folder("a/&MNcw7TC4MKcwrzDI-", "&MNcw7TC4MKcwrzDI-")}, 0},
        ResolveRow{"asSent", "&MNcw7TC4MKcwrzDI-", {folder("&MNcw7TC4MKcwrzDI-")}, 0},
        ResolveRow{"otherCase", "ENTWÜRFE", {folder("Entw&APw-rfe")}, 0},
        ResolveRow{"ampersand", "r&d", {folder("R&-D")}, 0},
        ResolveRow{"ampersandAsSentFirst", "R&D", {folder("R&-D"), folder("R&D")}, 1},
        ResolveRow{"pathAsSentBeatsReadableListedFirst", "書類", {folder("&ZviYXg-"), folder("書類")}, 1},
        ResolveRow{"nameAsSentBeatsReadablePath", "書類", {folder("&ZviYXg-"), folder("a/書類", "書類")}, 1},
        ResolveRow{"readablePathBeatsReadableName",
                   "書類",
                   {folder("a/&ZviYXg-", "&ZviYXg-"), folder("&ZviYXg-")},
                   1},
        ResolveRow{"firstOfTwoReadableNames",
                   "書類",
                   {folder("a/&ZviYXg-", "&ZviYXg-"), folder("b/&ZviYXg-", "&ZviYXg-")},
                   0},
        ResolveRow{"levelThatCannotBeDecodedStays", "書類/&x", {folder("&ZviYXg-/&x", "&x")}, 0},
        ResolveRow{"spellingThatIsNotValidIsNotRead", "書類", {folder("&ZvgAJg-"), folder("&ZviYXg")}, -1},
        ResolveRow{"asciiInAShiftIsNotRead", "INBOX", {folder("&AEkATgBCAE8AWA-")}, -1},
        ResolveRow{"controlCharactersAreNotRead", "a\nb", {folder("a&AAo-b")}, -1},
        ResolveRow{"noPartOfAName", "書", {folder("&ZviYXg-")}, -1}),
    rowName);

// --- trashFolder -----------------------------------------------------------------------------------------

struct TrashRow {
  const char* name;
  Folders folders;
  int place;
};

class Trash : public testing::TestWithParam<TrashRow> {};

TEST_P(Trash, findsTheFolder) {
  EXPECT_EQ(placeOf(MailboxMapper::trashFolder(GetParam().folders), GetParam().folders), GetParam().place);
}

INSTANTIATE_TEST_SUITE_P(
    SpecialUse, Trash,
    testing::Values(
        TrashRow{"beatsANameListedFirst",
                 {folder("Deleted Messages"), folder("Rubbish", "Rubbish", "\\Trash")},
                 1},
        TrashRow{"firstOfTwo", {folder("b", "b", "\\Trash"), folder("a", "a", "\\Trash")}, 0},
        TrashRow{"beatsModifiedUTF7", {folder("&MLQw33ux-"), folder("Rubbish", "Rubbish", "\\Trash")}, 1},
        TrashRow{"lowerCaseIsNone", {folder("x", "x", "\\trash"), folder("Trash")}, 1},
        TrashRow{"withoutBackslashIsNone", {folder("x", "x", "Trash")}, -1},
        TrashRow{"longerIsNone", {folder("x", "x", "\\Trash ")}, -1},
        TrashRow{"anotherIsNone", {folder("x", "x", "\\Junk")}, -1},
        TrashRow{"anotherDoesNotHideTheName", {folder("Trash", "Trash", "\\Junk")}, 0}),
    rowName);

INSTANTIATE_TEST_SUITE_P(
    Name, Trash,
    testing::Values(
        TrashRow{"emptyList", {}, -1}, TrashRow{"none", {folder("INBOX"), folder("Archive")}, -1},
        TrashRow{"bin", {folder("Bin")}, -1},
        TrashRow{"trashAsName", {folder("INBOX"), folder("a/Trash", "Trash")}, 1},
        TrashRow{"trashAsPath", {folder("INBOX"), folder("Trash", "x")}, 1},
        TrashRow{"trashInCapitals", {folder("TRASH")}, 0},
        TrashRow{"deletedMessagesAsName", {folder("a/Deleted Messages", "Deleted Messages")}, 0},
        TrashRow{"deletedMessagesAsPath", {folder("DELETED MESSAGES", "x")}, 0},
        TrashRow{"deletedItemsAsName", {folder("a/Deleted Items", "Deleted Items")}, 0},
        TrashRow{"deletedItemsAsPath", {folder("deleted items", "x")}, 0},
        TrashRow{"deletedAsName", {folder("a/Deleted", "Deleted")}, 0},
        TrashRow{"deletedAsPath", {folder("deleteD", "x")}, 0},
        TrashRow{"japaneseAsName", {folder("a/\u30B4\u30DF\u7BB1", "\u30B4\u30DF\u7BB1")}, 0},
        TrashRow{"japaneseAsPath", {folder("\u30B4\u30DF\u7BB1", "x")}, 0},
        TrashRow{"hiraganaIsAnother", {folder("\u3054\u307F\u7BB1")}, -1},
        TrashRow{"listOrderBeatsTheOrderOfTheNames", {folder("\u30B4\u30DF\u7BB1"), folder("Trash")}, 0},
        TrashRow{
            "pathListedFirstBeatsNameListedLater", {folder("Deleted", "x"), folder("a/Trash", "Trash")}, 0},
        TrashRow{"nameListedFirstBeatsPathListedLater", {folder("a/Deleted", "Deleted"), folder("Trash")}, 0},
        TrashRow{"modifiedUTF7AsName", {folder("INBOX"), folder("a/&MLQw33ux-", "&MLQw33ux-")}, 1},
        TrashRow{"modifiedUTF7AsPath", {folder("&MLQw33ux-", "x")}, 0},
        TrashRow{"nameAsSentBeatsModifiedUTF7ListedFirst", {folder("&MLQw33ux-"), folder("Trash")}, 1},
        TrashRow{"spellingThatIsNotValid", {folder("&MLQw33ux"), folder("&AHQAcgBhAHMAaA-")}, -1},
        TrashRow{
            "noPartOfAName", {folder("Trash old"), folder("My Trash"), folder("Trash/2023", "2023")}, -1},
        TrashRow{"noTrimming", {folder(" Trash")}, -1}),
    rowName);

TEST(MailboxMapper, trashFolderDoesNotLookAtSelectable) {
  IMAPFolder unselectable = folder("Trash");
  unselectable.selectable = false;
  EXPECT_EQ(MailboxMapper::trashFolder({unselectable, folder("Deleted")}), unselectable);
}

}  // namespace
}  // namespace tarnwell::test
