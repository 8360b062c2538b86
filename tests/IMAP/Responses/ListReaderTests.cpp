#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "IMAP/Responses/IMAPParser.h"
#include "support/Repeated.h"

namespace tarnwell {
namespace {

using test::repeated;

/// One line for the table: path | name | delimiter | special use or "-" | whether it can be selected.
std::string folderOf(std::string_view response) {
  const IMAPTokens tokens = IMAPParser::tokenize(response);
  const std::optional<IMAPFolder> folder = IMAPParser::parseList(tokens.elements());
  if (!folder) {
    return "absent";
  }
  return folder->path + " | " + folder->name + " | " + folder->delimiter + " | " +
         folder->specialUse.value_or("-") + " | " + (folder->selectable ? "selectable" : "noselect");
}

struct Row {
  std::string response;
  std::string folder;
};

void expectFolders(const std::vector<Row>& rows) {
  for (const Row& row : rows) {
    EXPECT_EQ(folderOf(row.response), row.folder) << row.response;
  }
}

TEST(ListReader, readsFolders) {
  expectFolders({
      {R"(* LIST (\HasNoChildren \Sent) "/" "Sent Messages")",
       R"(Sent Messages | Sent Messages | / | \Sent | selectable)"},
      {R"(* LIST (\HasNoChildren) "/" INBOX)", "INBOX | INBOX | / | - | selectable"},
      {R"(* LSUB () "." "INBOX.Archive.2024")", "INBOX.Archive.2024 | 2024 | . | - | selectable"},
      {R"(* list (\Noselect) "/" ~/Mail/foo)", "~/Mail/foo | foo | / | - | noselect"},
      {R"(* LSUB () "." #news.comp.mail.misc)", "#news.comp.mail.misc | misc | . | - | selectable"},
      {R"(* "Lsub" () "/" a)", "a | a | / | - | selectable"},
      {"* LIST () \"/\" {9}\r\nTo do/Now", "To do/Now | Now | / | - | selectable"},
      {R"(* LIST () "/" "a" ("CHILDINFO" ("SUBSCRIBED")))", "a | a | / | - | selectable"},
  });
}

TEST(ListReader, anotherShapeIsAbsent) {
  expectFolders({
      {"", "absent"},
      {"* LIST", "absent"},
      {R"(* LIST () "/")", "absent"},
      {R"("*" LIST () "/" a)", "absent"},
      {R"(+ LIST () "/" a)", "absent"},
      {R"(** LIST () "/" a)", "absent"},
      {R"((*) LIST () "/" a)", "absent"},
      {R"(* LISTS () "/" a)", "absent"},
      {R"(* XLIST () "/" a)", "absent"},
      {R"(* NIL () "/" a)", "absent"},
      {R"(* (LIST) () "/" a)", "absent"},
      {R"(* LIST (\Noselect) NIL "")", "absent"},
      {R"(* LIST () "/" NIL)", "absent"},
      {R"(* LIST () "/" (a))", "absent"},
      {R"(LIST () "/" a b)", "absent"},
  });
}

// Deliberate: without a hierarchy the slash stands for the delimiter.
TEST(ListReader, nilDelimiterReadsAsASlash) {
  expectFolders({
      {R"(* LIST (\NOSELECT \HasChildren) NIL "Foo")", "Foo | Foo | / | - | noselect"},
      {R"(* LIST () nil "a/b")", "a/b | b | / | - | selectable"},
      {R"(* LIST () (".") "a/b")", "a/b | b | / | - | selectable"},
  });
}

TEST(ListReader, nameIsTheLastComponentOfThePath) {
  expectFolders({
      {R"(* LIST () "" "a/b")", "a/b | a/b |  | - | selectable"},
      {R"(* LIST () "." "a/b")", "a/b | a/b | . | - | selectable"},
      {R"(* LIST () "/" "a/")", "a/ |  | / | - | selectable"},
      {R"(* LIST () "/" "/")", "/ |  | / | - | selectable"},
      {R"(* LIST () "/" "a//b")", "a//b | b | / | - | selectable"},
      {R"(* LIST () "\\" "a\\b")", "a\\b | b | \\ | - | selectable"},
      {R"(* LIST () "::" "a:::b")", "a:::b | :b | :: | - | selectable"},
      {R"(* LIST () "abc" "ab")", "ab | ab | abc | - | selectable"},
      {"* LIST () \"\xE3\x81\x82\" \"x\xE3\x81\x82y\"", "x\xE3\x81\x82y | y | \xE3\x81\x82 | - | selectable"},
  });
}

// Deliberate: modified UTF-7 stays as it is, because commands use the path as the server spells it.
TEST(ListReader, pathIsKeptAsSent) {
  expectFolders({
      {R"(* LIST () "/" "Arbeit/Entw&APw-rfe")", "Arbeit/Entw&APw-rfe | Entw&APw-rfe | / | - | selectable"},
  });
}

TEST(ListReader, firstKnownSpecialUseCounts) {
  expectFolders({
      {R"(* LIST (\Marked \Junk \Trash) "/" a)", R"(a | a | / | \Junk | selectable)"},
      {R"(* LIST (\Inbox) "/" a)", R"(a | a | / | \Inbox | selectable)"},
      {R"(* LIST ("\\All") "/" a)", R"(a | a | / | \All | selectable)"},
      {R"(* LIST (\sent) "/" "Sent")", "Sent | Sent | / | - | selectable"},
      {R"(* LIST (Sent) "/" a)", "a | a | / | - | selectable"},
      {R"(* LIST (\Sent2) "/" a)", "a | a | / | - | selectable"},
      {R"(* LIST (\TRASH \Drafts) "/" a)", R"(a | a | / | \Drafts | selectable)"},
  });
}

TEST(ListReader, onlyTextsAreAttributes) {
  expectFolders({
      {R"(* LIST (NIL (\Noselect \Sent) \Marked) "/" a)", "a | a | / | - | selectable"},
      {R"(* LIST NIL "/" a)", "a | a | / | - | selectable"},
      {R"(* LIST \Noselect "/" a)", "a | a | / | - | selectable"},
      {R"(* LIST (\nOsElEcT) "/" a)", "a | a | / | - | noselect"},
      {R"(* LIST (Noselect) "/" a)", "a | a | / | - | selectable"},
  });
}

TEST(ListReader, responseCutAnywhereIsAbsentOrAFolder) {
  const std::string response = R"(* LIST (\HasNoChildren \Sent) "/" "Sent Messages")";
  for (std::size_t length = 0; length < response.size(); ++length) {
    const std::string folder = folderOf(response.substr(0, length));
    // Of the path at least one character has to be there.
    EXPECT_EQ(folder != "absent", length > response.find("Sent Messages")) << length << ": " << folder;
  }
}

TEST(ListReader, readsALongPathOfDelimiters) {
  const std::string path = repeated("/", 1'000'000);
  const IMAPFolder folder =
      IMAPParser::parseList(IMAPParser::tokenize("* LIST () / " + path).elements()).value_or(IMAPFolder());
  EXPECT_EQ(folder.path.size(), path.size());
  EXPECT_EQ(folder.name, "");
}

}  // namespace
}  // namespace tarnwell
