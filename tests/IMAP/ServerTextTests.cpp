/// What of a server's words enters an error: never the password.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>

#include "IMAP/ClientOf.h"
#include "IMAP/Connection/IMAPError.h"
#include "IMAP/IMAPClient.h"
#include "support/FakeIMAPServer.h"
#include "support/Repeated.h"
#include "support/RowName.h"

namespace tarnwell::test {
namespace {

using namespace std::chrono_literals;

TEST(ServerText, passwordIsMasked) {
  const std::string cut = std::string(195, 'x');
  const struct {
    const char* name;
    std::string text, password, summary;
  } rows[] = {
      {"alone", "app-pass-word", "app-pass-word", "***"},
      {"the address stays", "NO for you@example.org app-pass-word", "app-pass-word",
       "NO for you@example.org ***"},
      {"several", "secret or secret, notsecretly", "secret", "*** or ***, not***ly"},
      {"other case is another text", "SECRET", "secret", "SECRET"},
      {"a part of it is another text", "secre", "secret", "secre"},
      {"as on the wire", R"(LOGIN "u" "a\"b\\c")", R"(a"b\c)", R"(LOGIN "u" "***")"},
      {"as it is and as on the wire", R"(a"b\c a\"b\\c)", R"(a"b\c)", "*** ***"},
      {"overlapping itself", "x abcabcab y", "abcab", "x *** y"},
      {"overlapping over and over", "aaaaa", "aa", "***"},
      {"its blank sent as a tab", "bad ab\tcd!", "ab cd", "bad ***!"},
      {"its blank sent as a line break", "bad ab\ncd!", "ab cd", "bad ***!"},
      {"its tab", "bad ab\tcd!", "ab\tcd", "bad ***!"},
      {"its soft hyphen", "bad ab\u00ADcd!", "ab\u00ADcd", "bad ***!"},
      {"blanks at its ends, which are trimmed", "bad  ab", " ab ", "bad  ***"},
      {"japanese", "合言葉ひらけごまは違う", "ひらけごま", "合言葉***は違う"},
      {"after half a character", "\xE3\x81secret", "secret", "\uFFFD***"},
      {"no UTF-8", "x\xFFy z", "x\xFFy", "*** z"},
      {"over the cut", cut + "app-pass-word", "app-pass-word", cut + "***"},
      {"the mask over the cut", cut + "xxxapp-pass-word", "app-pass-word", cut + "xxx**"},
      {"long before the cut", repeated("app-pass-word ", 100), "app-pass-word", repeated("*** ", 50)},
      {"no password", "text", "", "text"},
      {"a password of blanks", "a b", "  ", "a b"},
      {"longer than the text", "abc", "abcabc", "abc"},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(IMAPClient::safeSummary(row.text, Secret(row.password)), row.summary) << row.name;
  }
}

/// test-connection prints them.
TEST(ServerText, namesOfCapabilitiesLoseThePasswordToo) {
  FakeIMAPServer server({answer("* OK\r\n"), expect("A0001 LOGIN \"user@example.org\" \"app-pass-word\"\r\n"),
                         answer("A0001 OK\r\n"), expect("A0002 CAPABILITY\r\n"),
                         answer("* CAPABILITY MOVE X-app-pass-word\r\nA0002 OK\r\n")});
  IMAPClient client = clientOf(server);
  client.connect();
  EXPECT_THAT(client.serverCapabilities(), testing::ElementsAre("MOVE", "X-***"));
}

struct PathRow {
  const char* name;
  Dialogue dialogue;
  std::function<void(IMAPClient&)> run;
  std::string description;
};

void PrintTo(const PathRow& row, std::ostream* out) { *out << row.name; }

class ServerTextPath : public testing::TestWithParam<PathRow> {};

/// Every way from the wire into an error.
TEST_P(ServerTextPath, hidesThePassword) {
  FakeIMAPServer server(GetParam().dialogue);
  IMAPClient client = clientOf(server);
  try {
    GetParam().run(client);
    ADD_FAILURE() << "no error";
  } catch (const IMAPError& error) {
    EXPECT_EQ(error.description(), GetParam().description);
  }
}

void openInbox(IMAPClient& client) {
  client.connect();
  client.selectInbox(IMAPClient::Access::readOnly);
}

void search(IMAPClient& client) {
  openInbox(client);
  client.searchInbox({}, 1);
}

void searchForText(IMAPClient& client) {
  openInbox(client);
  IMAPSearchCriteria criteria;
  criteria.from = "x";
  client.searchInbox(criteria, 1);
}

void move(IMAPClient& client) {
  openInbox(client);
  client.move(7, "Archive", IMAPClient::CopyFallback::forbidden);
}

void moveByCopy(IMAPClient& client) {
  openInbox(client);
  client.move(7, "Archive", IMAPClient::CopyFallback::allowed);
}

Dialogue inbox(const std::string& command, const std::string& answerToIt) {
  return loginDialogue() + Dialogue{expect(command + "\r\n"), answer(answerToIt + "\r\n")};
}

const Dialogue loggedIn{answer("* OK\r\n"), expect("A0001 LOGIN \"user@example.org\" \"app-pass-word\"\r\n"),
                        answer("A0001 OK\r\n"), expect("A0002 CAPABILITY\r\n")};

INSTANTIATE_TEST_SUITE_P(
    Errors, ServerTextPath,
    testing::Values(PathRow{"greeting",
                            {answer("+ app-pass-word\r\n")},
                            [](IMAPClient& client) { client.connect(); },
                            "Unexpected IMAP response: + ***"},
                    PathRow{
                        "login",
                        {answer("* OK\r\n"), expect("A0001 LOGIN \"user@example.org\" \"app-pass-word\"\r\n"),
                         answer("A0001 app-pass-word\r\n")},
                        [](IMAPClient& client) { client.connect(); },
                        "Unexpected IMAP response: A0001 ***"},
                    PathRow{"capability", loggedIn + Dialogue{answer("A0002 NO app-pass-word\r\n")},
                            [](IMAPClient& client) { client.connect(); }, "IMAP CAPABILITY failed: ***"},
                    PathRow{"selection",
                            loggedIn + Dialogue{answer("A0002 OK\r\n"), expect("A0003 EXAMINE INBOX\r\n"),
                                                answer("A0003 NO for you@example.org app-pass-word\r\n")},
                            openInbox, "IMAP EXAMINE failed: for you@example.org ***"},
                    PathRow{"folders", inbox("A0004 LIST \"\" \"*\"", "A0004 BAD app-pass-word"),
                            [](IMAPClient& client) {
                              openInbox(client);
                              client.listFolders();
                            },
                            "IMAP LIST failed: ***"},
                    PathRow{"search", inbox("A0004 UID SEARCH ALL", "A0004 NO \"app-pass-word\""), search,
                            "IMAP UID failed: \"***\""},
                    PathRow{"literal", inbox("A0004 UID SEARCH FROM {1}", "A0004 NO app-pass-word"),
                            searchForText, "Unexpected IMAP response: A0004 NO ***"},
                    PathRow{"noStatus", inbox("A0004 UID SEARCH ALL", "A0004 app-pass-word?"), search,
                            "Unexpected IMAP response: A0004 ***?"},
                    PathRow{"markRead", inbox("A0004 UID STORE 7 +FLAGS (\\Seen)", "A0004 NO app-pass-word"),
                            [](IMAPClient& client) {
                              openInbox(client);
                              client.markRead(7);
                            },
                            "IMAP UID failed: ***"},
                    PathRow{"move", inbox("A0004 UID MOVE 7 \"Archive\"", "A0004 NO app-pass-word"), move,
                            IMAPError::moveRejected("***").description()},
                    PathRow{"copy",
                            inbox("A0004 UID MOVE 7 \"Archive\"", "A0004 NO no") +
                                Dialogue{expect("A0005 UID COPY 7 \"Archive\"\r\n"),
                                         answer("A0005 NO app-pass-word\r\n")},
                            moveByCopy, "IMAP UID failed: ***"}),
    rowName);

}  // namespace
}  // namespace tarnwell::test
