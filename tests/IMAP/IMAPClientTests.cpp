#include "IMAP/IMAPClient.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>

#include "Core/LogBuffer.h"
#include "IMAP/ClientOf.h"
#include "IMAP/Connection/IMAPError.h"
#include "support/BrokenSession.h"
#include "support/FakeIMAPServer.h"
#include "support/RowName.h"

namespace tarnwell::test {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::HasSubstr;

using Access = IMAPClient::Access;
using Kind = IMAPError::Kind;

const Dialogue logout{expect("A0004 LOGOUT\r\n"), answer("* BYE\r\nA0004 OK bye\r\n"), closeHere()};

std::string descriptionOf(const std::function<void()>& operation) {
  try {
    operation();
  } catch (const IMAPError& error) {
    return error.description();
  }
  return "";
}

/// A whole session with one command in its middle.
struct Session {
  Dialogue command;
  std::function<void(IMAPClient&)> run;
};

/// Plays login, the command and LOGOUT, and demands the exact bytes.
void playExactly(const Session& session) {
  Dialogue dialogue = loginDialogue() + session.command +
                      Dialogue{expect("A0005 LOGOUT\r\n"), answer("* BYE\r\nA0005 OK bye\r\n"), closeHere()};
  FakeIMAPServer server(dialogue);
  IMAPClient client = clientOf(server);
  client.connect();
  client.selectInbox(Access::readOnly);
  session.run(client);
  client.disconnect();
  EXPECT_EQ(server.mismatch(), "");
}

TEST(IMAPClient, sessionSendsExactlyItsCommands) {
  FakeIMAPServer server(loginDialogue() + logout);
  IMAPClient client = clientOf(server);
  client.connect();
  client.selectInbox(Access::readOnly);
  client.disconnect();
  EXPECT_EQ(server.mismatch(), "");
  EXPECT_THAT(client.serverCapabilities(), ElementsAre("IMAP4REV1", "MOVE", "UIDPLUS"));
  EXPECT_TRUE(client.supportsMove());
}

TEST(IMAPClient, sessionReadsTheSameFromPiecesOfOneByte) {
  Dialogue dialogue = loginDialogue() + logout;
  for (Step& step : dialogue) {
    if (step.kind == Step::Kind::answer) {
      step.kind = Step::Kind::answerSlowly;
    }
  }
  FakeIMAPServer server(dialogue);
  IMAPClient client = clientOf(server);
  client.connect();
  client.selectInbox(Access::readOnly);
  client.disconnect();
  EXPECT_EQ(server.mismatch(), "");
}

TEST(IMAPClient, readWriteAccessSelects) {
  FakeIMAPServer server(loginDialogue("SELECT INBOX") + logout);
  IMAPClient client = clientOf(server);
  client.connect();
  client.selectInbox(Access::readWrite);
  client.disconnect();
  EXPECT_EQ(server.mismatch(), "");
}

TEST(IMAPClient, successfulLoginIsLoggedWithTheAddressRedacted) {
  LogBuffer::shared().clear();
  FakeIMAPServer server(loginDialogue() + logout);
  IMAPClient client = clientOf(server);
  client.connect();
  const std::vector<LogEntry> entries = LogBuffer::shared().snapshot();
  ASSERT_EQ(entries.size(), 1u);
  EXPECT_EQ(entries[0].message, "Authenticated to IMAP for us***@example.org");
  EXPECT_EQ(entries[0].category, "imap");
  EXPECT_EQ(entries[0].level, LogLevel::info);
}

TEST(IMAPClient, commandAfterAFailedConnectMeetsAClosedConnection) {
  FakeIMAPServer server({}, {.certificate = {.subjectAltName = "DNS:mail.example.org"}});
  IMAPClient client = clientOf(server);
  EXPECT_THAT(descriptionOf([&] { client.connect(); }), HasSubstr("hostname mismatch"));
  EXPECT_EQ(descriptionOf([&] { client.listFolders(); }), IMAPError::connectionClosed().description());
  IMAPClient unreachable("", 993, testEmail, Secret(testPassword), 1s);
  EXPECT_NE(descriptionOf([&] { unreachable.connect(); }), "");
  EXPECT_EQ(descriptionOf([&] { unreachable.selectInbox(Access::readOnly); }),
            IMAPError::connectionClosed().description());
}

TEST(IMAPClient, secondConnectBeginsWithoutWhatTheFirstLearned) {
  FakeIMAPServer first(loginDialogue());
  FakeIMAPServer second({answer("* OK ready\r\n"),
                         expect("A0004 LOGIN \"user@example.org\" \"app-pass-word\"\r\n"),
                         answer("A0004 OK\r\n"), expect("A0005 CAPABILITY\r\n"),
                         answer("* CAPABILITY IMAP4rev1\r\nA0005 OK\r\n"), stallHere()});
  std::uint16_t port = first.port();
  IMAPClient client([&] { return std::make_unique<IMAPConnection>("localhost", port, 10s); }, testEmail,
                    Secret(testPassword));
  client.connect();
  client.selectInbox(Access::readOnly);
  port = second.port();
  client.connect();
  EXPECT_THAT(client.serverCapabilities(), ElementsAre("IMAP4REV1"));
  EXPECT_EQ(descriptionOf([&] { client.searchInbox({}, 1); }), IMAPError::mailboxNotSelected().description());
}

// --- Failing at every step -------------------------------------------------------------------------------

struct WholeSession {
  void operator()(const FakeIMAPServer& server, std::chrono::duration<double> timeout) const {
    IMAPClient client = clientOf(server, timeout);
    try {
      client.connect();
      client.selectInbox(Access::readOnly);
      client.listFolders();
      IMAPSearchCriteria criteria;
      criteria.subject = "tea";
      client.fetchMessages(client.searchInbox(criteria, 20));
      client.fetchBodyText(1);
    } catch (...) {
      client.disconnect();
      throw;
    }
    client.disconnect();
  }
};

Dialogue wholeSession() {
  return loginDialogue() +
         Dialogue{
             expect("A0004 LIST \"\" \"*\"\r\n"),
             answer("* LIST () \"/\" INBOX\r\nA0004 OK\r\n"),
             expect("A0005 UID SEARCH SUBJECT {3}\r\n"),
             answer("+ go on\r\n"),
             expect("tea\r\n"),
             answer("* SEARCH 1\r\nA0005 OK\r\n"),
             expect("A0006 UID FETCH 1 (UID FLAGS INTERNALDATE ENVELOPE BODYSTRUCTURE)\r\n"),
             answer("* 1 FETCH (UID 1 FLAGS ())\r\nA0006 OK\r\n"),
             expect("A0007 UID FETCH 1 (UID FLAGS INTERNALDATE ENVELOPE BODYSTRUCTURE)\r\n"),
             answer("* 1 FETCH (UID 1 BODYSTRUCTURE (\"text\" \"plain\" NIL NIL NIL \"7bit\" 5 1))\r\nA0007 "
                    "OK\r\n"),
             expect("A0008 UID FETCH 1 (BODY.PEEK[1])\r\n"),
             answer("* 1 FETCH (UID 1 BODY[1] {5}\r\nhe"),
             answer("llo)\r\nA0008 OK\r\n"),
         };
}

TEST(IMAPClient, wholeSessionPlaysThrough) {
  FakeIMAPServer server(wholeSession() +
                        Dialogue{expect("A0009 LOGOUT\r\n"), answer("A0009 OK\r\n"), closeHere()});
  EXPECT_NO_THROW(WholeSession()(server, 10s));
  EXPECT_EQ(server.mismatch(), "");
}

/// Breaks the dialogue instead of each of the server's answers in turn.
void breakAtEveryAnswer(const Step& end, Timeout timeout, const std::vector<Kind>& kinds) {
  for (const Dialogue& broken : brokenAtEveryAnswer(wholeSession(), end)) {
    const BrokenSession outcome = playBroken(broken, timeout, WholeSession());
    ASSERT_TRUE(outcome.error) << "after " << broken.size() - 1 << " steps";
    EXPECT_THAT(kinds, testing::Contains(outcome.error->kind()))
        << "after " << broken.size() - 1 << " steps: " << outcome.error->description();
    EXPECT_EQ(outcome.mismatch, "");
    EXPECT_THAT(outcome.received, testing::Not(HasSubstr("LOGOUT"))) << "a dead session is left silently";
  }
}

TEST(IMAPClient, closedConnectionAtEveryStepIsReportedAsClosed) {
  breakAtEveryAnswer(closeHere(), 10s, {Kind::connectionClosed});
}

TEST(IMAPClient, resetConnectionAtEveryStepIsReportedAtOnce) {
  breakAtEveryAnswer(resetHere(), 600s, {Kind::connectionFailed, Kind::connectionClosed});
}

TEST(IMAPClient, silenceAtEveryStepEndsInATimeout) {
  breakAtEveryAnswer(stallHere(), 200ms, {Kind::timeout});
}

TEST(IMAPClient, disconnectingFromAServerThatIgnoresLogoutEnds) {
  FakeIMAPServer server(loginDialogue() + Dialogue{expect("A0004 LOGOUT\r\n"), stallHere()});
  IMAPClient client = clientOf(server, 2s);
  client.connect();
  client.selectInbox(Access::readOnly);
  client.disconnect();
  EXPECT_EQ(server.mismatch(), "");
}

// --- Greeting and login ----------------------------------------------------------------------------------

TEST(IMAPClient, anyUntaggedGreetingPasses) {
  for (const char* greeting : {"* OK\r\n", "* BYE busy\r\n", "* PREAUTH hello\r\n", "*\r\n"}) {
    Dialogue dialogue = loginDialogue() + logout;
    dialogue[0] = answer(greeting);
    FakeIMAPServer server(dialogue);
    IMAPClient client = clientOf(server);
    client.connect();
    client.selectInbox(Access::readOnly);
    client.disconnect();
    EXPECT_EQ(server.mismatch(), "") << greeting;
  }
}

TEST(IMAPClient, greetingWithoutAnAsteriskIsUnexpected) {
  FakeIMAPServer server({answer("+ hello\x07there\r\n"), expect("A0001 LOGOUT\r\n"), answer("A0001 OK\r\n")});
  IMAPClient client = clientOf(server);
  EXPECT_EQ(descriptionOf([&] { client.connect(); }), "Unexpected IMAP response: + hello there");
  client.disconnect();
  EXPECT_EQ(server.mismatch(), "");
}

TEST(IMAPClient, refusedLoginIsAnAuthenticationFailure) {
  for (const char* completion : {"A0001 NO no\r\n", "A0001 BAD bad\r\n"}) {
    FakeIMAPServer server({answer("* OK\r\n"),
                           expect("A0001 LOGIN \"user@example.org\" \"app-pass-word\"\r\n"),
                           answer(completion), expect("A0002 LOGOUT\r\n"), answer("A0002 OK\r\n")});
    IMAPClient client = clientOf(server);
    EXPECT_EQ(descriptionOf([&] { client.connect(); }),
              "Authentication failed. Check the email address and Apple app-specific password.");
    client.disconnect();
    EXPECT_EQ(server.mismatch(), "");
  }
}

TEST(IMAPClient, passwordWithQuotesIsSentEscaped) {
  FakeIMAPServer server({answer("* OK\r\n"), expect("A0001 LOGIN \"a\\\\b\" \"p\\\"w\"\r\n"), closeHere()});
  IMAPClient client("localhost", server.port(), "a\\b", Secret("p\"w"), 10s);
  EXPECT_THROW(client.connect(), IMAPError);
  EXPECT_EQ(server.mismatch(), "");
}

TEST(IMAPClient, controlCharacterInAddressOrPasswordIsRefusedBeforeAnythingIsSent) {
  const std::pair<std::string, std::string> rows[] = {{"user\r\nA0002 LOGOUT", "pass"},
                                                      {"user", "pa\nss"},
                                                      {"user", std::string("p\0w", 3)},
                                                      {"us\u0085er", "pass"}};
  for (const auto& [email, password] : rows) {
    FakeIMAPServer server({answer("* OK\r\n"), expect("A0001 LOGOUT\r\n"), answer("A0001 OK\r\n")});
    IMAPClient client("localhost", server.port(), email, Secret(password), 10s);
    EXPECT_EQ(descriptionOf([&] { client.connect(); }),
              "Invalid argument: control character in IMAP argument");
    client.disconnect();
    EXPECT_EQ(server.mismatch(), "");
  }
}

TEST(IMAPClient, portOutOfRangeIsAnInvalidArgument) {
  for (const std::int64_t port : {std::int64_t{-1}, std::int64_t{65536}, std::int64_t{99999}}) {
    IMAPClient client("localhost", port, testEmail, Secret(testPassword), 1s);
    EXPECT_EQ(descriptionOf([&] { client.connect(); }),
              "Invalid argument: IMAP port " + std::to_string(port) + " is out of range");
    client.disconnect();
  }
}

TEST(IMAPClient, capabilitiesAreCollectedFromEveryLineAndUpperCased) {
  Dialogue dialogue = loginDialogue() + logout;
  dialogue[4] = answer("* capability imap4rev1 Move\r\n* 3 EXISTS\r\n* CAPABILITY  X-A\r\nA0002 OK\r\n");
  FakeIMAPServer server(dialogue);
  IMAPClient client = clientOf(server);
  client.connect();
  EXPECT_THAT(client.serverCapabilities(), ElementsAre("IMAP4REV1", "MOVE", "X-A"));
}

TEST(IMAPClient, capabilitiesCannotSteerATerminal) {
  Dialogue dialogue = loginDialogue() + logout;
  dialogue[4] = answer("* CAPABILITY IMAP4rev1 X\033]0;pwned\a \u202EY Z\xFF\r\nA0002 OK\r\n");
  FakeIMAPServer server(dialogue);
  IMAPClient client = clientOf(server);
  client.connect();
  EXPECT_THAT(client.serverCapabilities(), ElementsAre("IMAP4REV1", "X ]0;PWNED", "Y", "Z\uFFFD"));
}

TEST(IMAPClient, failedCommandNamesItsFirstWord) {
  const struct {
    std::size_t step;
    const char* completion;
    const char* description;
  } rows[] = {
      {4, "A0002 NO \033[1mgo\r\n", "IMAP CAPABILITY failed: [1mgo"},
      {6, "A0003 BAD [X] what\r\n", "IMAP EXAMINE failed: [X] what"},
  };
  for (const auto& row : rows) {
    Dialogue dialogue = loginDialogue();
    dialogue[row.step] = answer(row.completion);
    dialogue.resize(row.step + 1);
    dialogue.push_back(stallHere());
    FakeIMAPServer server(dialogue);
    IMAPClient client = clientOf(server);
    EXPECT_EQ(descriptionOf([&] {
                client.connect();
                client.selectInbox(Access::readOnly);
              }),
              row.description);
  }
}

TEST(IMAPClient, everyReadingCommandNeedsTheInbox) {
  FakeIMAPServer server(loginDialogue());
  IMAPClient client = clientOf(server, 1s);
  client.connect();
  const std::string expected = "No mailbox is selected.";
  EXPECT_EQ(descriptionOf([&] { client.searchInbox({}, 1); }), expected);
  EXPECT_EQ(descriptionOf([&] { client.fetchMessages({1}); }), expected);
  EXPECT_EQ(descriptionOf([&] { client.fetchMessages({}); }), expected);
  EXPECT_EQ(descriptionOf([&] { client.fetchMessage(1); }), expected);
  EXPECT_EQ(descriptionOf([&] { client.fetchBodyText(1); }), expected);
  EXPECT_EQ(descriptionOf([&] { client.fetchBodyText(IMAPMessage{}); }), expected);
}

TEST(IMAPClient, commandsWithoutAConnectionAreRefused) {
  IMAPClient client("localhost", 993, testEmail, Secret(testPassword), 1s);
  EXPECT_EQ(descriptionOf([&] { client.listFolders(); }), "The IMAP connection was closed unexpectedly.");
  client.disconnect();
}

TEST(IMAPClient, tenThousandthCommandHasAFiveDigitTag) {
  constexpr int commands = 10000;
  Dialogue dialogue{answer("* OK\r\n"), expect("A0001 LOGIN \"user@example.org\" \"app-pass-word\"\r\n"),
                    answer("A0001 OK\r\n"), expect("A0002 CAPABILITY\r\n"), answer("A0002 OK\r\n")};
  for (int number = 3; number <= commands; ++number) {
    std::string tag = std::to_string(number);
    tag.insert(0, tag.size() < 4 ? 4 - tag.size() : 0, '0');
    dialogue.push_back(expect("A" + tag + " EXAMINE INBOX\r\n"));
    dialogue.push_back(answer("A" + tag + " OK\r\n"));
  }
  FakeIMAPServer server(dialogue);
  IMAPClient client = clientOf(server, 30s);
  client.connect();
  for (int number = 3; number <= commands; ++number) {
    client.selectInbox(Access::readOnly);
  }
  EXPECT_THAT(server.received(), testing::EndsWith("A10000 EXAMINE INBOX\r\n"));
}

// --- Folders ---------------------------------------------------------------------------------------------

TEST(IMAPClient, foldersComeBackInTheServersOrderWithoutUnreadableLines) {
  playExactly({{expect("A0004 LIST \"\" \"*\"\r\n"),
                answer("* LIST (\\Trash) \"/\" \"Trash\"\r\n* 3 EXISTS\r\n* LIST () \"/\" \"\"\r\n"
                       "* LIST () \".\" {3}\r\nA.b\r\nA0004 OK\r\n")},
               [](IMAPClient& client) {
                 const std::vector<IMAPFolder> folders = client.listFolders();
                 ASSERT_EQ(folders.size(), 2u);
                 EXPECT_EQ(folders[0].path, "Trash");
                 EXPECT_EQ(folders[1].path, "A.b");
                 EXPECT_EQ(folders[1].name, "b");
               }});
}

// --- Search ----------------------------------------------------------------------------------------------

Instant day(int year, unsigned month, unsigned dayOfMonth) {
  return std::chrono::sys_days(std::chrono::year(year) / std::chrono::month(month) /
                               std::chrono::day(dayOfMonth));
}

struct SearchRow {
  const char* name;
  IMAPSearchCriteria criteria;
  Dialogue command;
};

class Search : public testing::TestWithParam<SearchRow> {};

TEST_P(Search, sendsExactlyTheseBytes) {
  Dialogue command = GetParam().command;
  command.push_back(answer("* SEARCH\r\nA0004 OK\r\n"));
  playExactly({command, [&](IMAPClient& client) { client.searchInbox(GetParam().criteria, 20); }});
}

INSTANTIATE_TEST_SUITE_P(
    Table, Search,
    testing::Values(
        SearchRow{"nothingAsksForAll", {}, {expect("A0004 UID SEARCH ALL\r\n")}},
        SearchRow{"unreadOnly", {.unreadOnly = true}, {expect("A0004 UID SEARCH UNSEEN\r\n")}},
        SearchRow{"datesWithoutLeadingZero",
                  {.since = day(2024, 3, 5), .before = day(2024, 12, 31)},
                  {expect("A0004 UID SEARCH SINCE 5-Mar-2024 BEFORE 31-Dec-2024\r\n")}},
        SearchRow{"emptyTextsAskForNothing",
                  {.freeText = "", .from = "", .subject = ""},
                  {expect("A0004 UID SEARCH ALL\r\n")}},
        SearchRow{"asciiSubjectIsALiteralWithoutCharset",
                  {.subject = "tea"},
                  {expect("A0004 UID SEARCH SUBJECT {3}\r\n"), answer("+\r\n"), expect("tea\r\n")}},
        SearchRow{"accentedSubjectNamesTheCharset",
                  {.subject = "caf\u00e9"},
                  {expect("A0004 UID SEARCH CHARSET UTF-8 SUBJECT {5}\r\n"), answer("+ ok\r\n"),
                   expect("caf\u00e9\r\n")}},
        SearchRow{"combiningMarkNamesTheCharset",
                  {.from = "e\u0301"},
                  {expect("A0004 UID SEARCH CHARSET UTF-8 FROM {3}\r\n"), answer("+ ok\r\n"),
                   expect("e\u0301\r\n")}},
        SearchRow{
            "lineBreakIsASCIIAndStaysInsideTheLiteral",
            {.freeText = "x\r\nA0005 LOGOUT"},
            {expect("A0004 UID SEARCH TEXT {15}\r\n"), answer("+ ok\r\n"), expect("x\r\nA0005 LOGOUT\r\n")}},
        SearchRow{"everythingInItsFixedOrder",
                  {.freeText = "c",
                   .unreadOnly = true,
                   .since = day(2024, 1, 1),
                   .before = day(2024, 2, 1),
                   .from = "a",
                   .subject = "b\""},
                  {expect("A0004 UID SEARCH UNSEEN SINCE 1-Jan-2024 BEFORE 1-Feb-2024 FROM {1}\r\n"),
                   answer("+\r\n"), expect("a SUBJECT {2}\r\n"), answer("+\r\n"), expect("b\" TEXT {1}\r\n"),
                   answer("+\r\n"), expect("c\r\n")}}),
    rowName);

TEST(IMAPClient, instantIsSearchedByItsDayInUTC) {
  EXPECT_EQ(IMAPClient::imapDate(day(2024, 2, 29) + std::chrono::hours(23)), "29-Feb-2024");
  EXPECT_EQ(IMAPClient::imapDate(day(1969, 12, 31) + std::chrono::hours(1)), "31-Dec-1969");
}

TEST(IMAPClient, yearIsSearchedInFourDigits) {
  EXPECT_EQ(IMAPClient::imapDate(day(999, 3, 5)), "5-Mar-0999");
  EXPECT_EQ(IMAPClient::imapDate(day(1, 1, 1)), "1-Jan-0001");
  EXPECT_EQ(IMAPClient::imapDate(day(0, 12, 31)), "31-Dec-0001") << "the year before the year 1";
}

TEST(IMAPClient, searchResultsAreNewestFirstAndLimited) {
  const struct {
    const char* lines;
    std::size_t limit;
    std::vector<std::uint32_t> uids;
  } rows[] = {
      {"* SEARCH 5 12 9\r\n", 2, {12, 9}},
      {"* SEARCH 5 12 9\r\n", 0, {}},
      {"* SEARCH\r\n", 5, {}},
      {"", 5, {}},
      {"* SEARCH 1\r\n* 7 EXISTS\r\n* search 3 2\r\n", 5, {3, 2, 1}},
      {"* SEARCH 4294967295 4294967296 x -1 7 (MODSEQ 9)\r\n", 5, {4294967295, 7}},
  };
  for (const auto& row : rows) {
    playExactly(
        {{expect("A0004 UID SEARCH ALL\r\n"), answer(row.lines + std::string("A0004 OK\r\n"))},
         [&](IMAPClient& client) { EXPECT_EQ(client.searchInbox({}, row.limit), row.uids) << row.lines; }});
  }
}

TEST(IMAPClient, literalIsNotSentWithoutTheServersPlus) {
  for (const char* refusal : {"A0004 NO no\r\n", "A0004 BAD bad\r\n", "* 3 EXISTS\r\n"}) {
    FakeIMAPServer server(loginDialogue() + Dialogue{expect("A0004 UID SEARCH SUBJECT {6}\r\n"),
                                                     answer(refusal), expect("A0005 LOGOUT\r\n"),
                                                     answer("A0005 OK\r\n"), closeHere()});
    IMAPClient client = clientOf(server);
    client.connect();
    client.selectInbox(Access::readOnly);
    IMAPSearchCriteria criteria;
    criteria.subject = "secret";
    EXPECT_THAT(descriptionOf([&] { client.searchInbox(criteria, 1); }),
                testing::StartsWith("Unexpected IMAP response: "));
    client.disconnect();
    EXPECT_EQ(server.mismatch(), "");
    EXPECT_THAT(server.received(), testing::Not(HasSubstr("secret")));
  }
}

// --- Fetch -----------------------------------------------------------------------------------------------

constexpr const char* summaryItems = " (UID FLAGS INTERNALDATE ENVELOPE BODYSTRUCTURE)\r\n";

TEST(IMAPClient, messagesComeBackInTheRequestedOrderWithoutMissingOnes) {
  playExactly({{expect(std::string("A0004 UID FETCH 7,3,5") + summaryItems),
                answer("* 1 FETCH (UID 3 FLAGS (\\Old))\r\n* 9 FETCH (FLAGS ())\r\n* 2 FETCH (UID 7)\r\n"
                       "* 8 FETCH (UID 99)\r\n* 1 FETCH (UID 3 FLAGS (\\New))\r\nA0004 OK\r\n")},
               [](IMAPClient& client) {
                 const std::vector<IMAPMessage> messages = client.fetchMessages({7, 3, 5});
                 ASSERT_EQ(messages.size(), 2u);
                 EXPECT_EQ(messages[0].uid, 7u);
                 EXPECT_EQ(messages[1].uid, 3u);
                 EXPECT_THAT(messages[1].flags, ElementsAre("\\New")) << "the later response counts";
               }});
}

TEST(IMAPClient, fetchingNothingSendsNothing) {
  FakeIMAPServer server(loginDialogue() + logout);
  IMAPClient client = clientOf(server);
  client.connect();
  client.selectInbox(Access::readOnly);
  EXPECT_TRUE(client.fetchMessages({}).empty());
  client.disconnect();
  EXPECT_EQ(server.mismatch(), "");
}

struct BodyRow {
  const char* name;
  const char* structure;
  const char* section;  // asked for; null when none is
  std::string response;
  IMAPClient::BodyText expected;
};

class Body : public testing::TestWithParam<BodyRow> {};

TEST_P(Body, isReadFromThePreferredPart) {
  const BodyRow& row = GetParam();
  Dialogue dialogue =
      loginDialogue() +
      Dialogue{expect(std::string("A0004 UID FETCH 4") + summaryItems),
               answer("* 1 FETCH (UID 4 BODYSTRUCTURE " + std::string(row.structure) + ")\r\nA0004 OK\r\n")};
  if (row.section) {
    dialogue.push_back(expect("A0005 UID FETCH 4 (BODY.PEEK[" + std::string(row.section) + "])\r\n"));
    dialogue.push_back(answer(row.response + "A0005 OK\r\n"));
  }
  dialogue.push_back(closeHere());
  FakeIMAPServer server(dialogue);
  IMAPClient client = clientOf(server);
  client.connect();
  client.selectInbox(Access::readOnly);
  const IMAPClient::BodyText body = client.fetchBodyText(4);
  EXPECT_EQ(body.text, row.expected.text);
  EXPECT_EQ(body.hadBody, row.expected.hadBody);
  EXPECT_EQ(server.mismatch(), "");
}

constexpr const char* plainPart = R"(("text" "plain" ("charset" "utf-8") NIL NIL "7bit" 5 1))";
constexpr const char* htmlPart = R"(("text" "html" NIL NIL NIL "quoted-printable" 5 1))";

INSTANTIATE_TEST_SUITE_P(
    Table, Body,
    testing::Values(
        BodyRow{"plain", plainPart, "1", "* 1 FETCH (UID 4 BODY[1] {5}\r\nhello)\r\n", {"hello", true}},
        BodyRow{"htmlBecomesText",
                htmlPart,
                "1",
                "* 1 FETCH (UID 4 BODY[1] {20}\r\n<b>a=3Db</b> &amp; c)\r\n",
                {" a=b  & c", true}},
        BodyRow{
            "nested",
            R"((("text" "html" NIL NIL NIL "7bit" 1 1)(("text" "plain" NIL NIL NIL "base64" 1 1) "mixed") "alternative"))",
            "2.1",
            "* 1 FETCH (UID 4 BODY[2.1] {8}\r\naGVsbG8=)\r\n",
            {"hello", true}},
        BodyRow{
            "attachmentsOnly", R"(("application" "pdf" NIL NIL NIL "base64" 5))", nullptr, "", {"", false}},
        BodyRow{"emptyLiteral", plainPart, "1", "* 1 FETCH (UID 4 BODY[1] {0}\r\n)\r\n", {"", false}},
        BodyRow{"noLiteral", plainPart, "1", "* 1 FETCH (UID 4 BODY[1] NIL)\r\n", {"", false}},
        BodyRow{"noResponse", plainPart, "1", "", {"", false}},
        BodyRow{"bracesThatAnnounceNothing",
                plainPart,
                "1",
                "* 1 FETCH (X \"{-0}\")\r\n* 2 FETCH (X {})\r\n",
                {"", false}},
        BodyRow{"literalWithTextAroundIt",
                plainPart,
                "1",
                "* 1 FETCH (FLAGS (\\Seen) BODY[1] {5}\r\nhello X {3}\r\nabc UID 4)\r\n",
                {"hello", true}},
        BodyRow{"literalInALaterLine",
                plainPart,
                "1",
                "* 1 FETCH (FLAGS ({x}))\r\n* 3 EXISTS\r\n* 1 FETCH (BODY[1] {5+}\r\nhello UID 4)\r\n",
                {"hello", true}}),
    rowName);

TEST(IMAPClient, bodyOfAnUnknownMessageIsUnexpected) {
  playExactly({{expect(std::string("A0004 UID FETCH 4711") + summaryItems), answer("A0004 OK nothing\r\n")},
               [](IMAPClient& client) {
                 EXPECT_EQ(descriptionOf([&] { client.fetchBodyText(4711); }),
                           "Unexpected IMAP response: Message not found for UID 4711");
               }});
}

std::vector<IMAPMessage> withPlainText(const std::vector<std::uint32_t>& uids) {
  std::vector<IMAPMessage> messages;
  for (const std::uint32_t uid : uids) {
    IMAPMessage message;
    message.uid = uid;
    message.bodyInfo.preferredText =
        IMAPTextPart{.section = "1", .encoding = "7bit", .charset = {}, .isHTML = false};
    messages.push_back(message);
  }
  return messages;
}

std::string bodyCommand(const std::string& tag, int uid) {
  return tag + " UID FETCH " + std::to_string(uid) + " (BODY.PEEK[1])\r\n";
}

TEST(IMAPClient, bodiesOfSeveralMessagesAreReadInOrderAfterThoseWithoutAText) {
  FakeIMAPServer server(
      loginDialogue() +
      Dialogue{expect(bodyCommand("A0004", 9)), answer("* 1 FETCH (BODY[1] {4}\r\nnine)\r\nA0004 OK\r\n"),
               expect(bodyCommand("A0005", 7)), answer("* 2 FETCH (BODY[1] NIL)\r\nA0005 OK\r\n"),
               expect(bodyCommand("A0006", 5)), answer("* 3 FETCH (BODY[1] {4}\r\nfive)\r\nA0006 OK\r\n"),
               closeHere()});
  IMAPClient client = clientOf(server);
  client.connect();
  client.selectInbox(Access::readOnly);
  std::vector<IMAPMessage> messages = withPlainText({9, 8, 7, 5});
  messages[1].bodyInfo.preferredText.reset();
  std::vector<std::string> read;
  client.fetchBodyTexts({&messages[0], &messages[1], &messages[2], &messages[3]},
                        [&](const IMAPMessage& message, const IMAPClient::BodyText& body) {
                          read.push_back(std::to_string(message.uid) + " " + body.text);
                        });
  EXPECT_THAT(read, ElementsAre("8 ", "9 nine", "7 ", "5 five"));
  EXPECT_EQ(server.mismatch(), "");
}

TEST(IMAPClient, completionThatIsNoneIsUnexpected) {
  playExactly({{expect("A0004 LIST \"\" \"*\"\r\n"), answer("A0004 WHAT\r\n")}, [](IMAPClient& client) {
                 EXPECT_EQ(descriptionOf([&] { client.listFolders(); }),
                           "Unexpected IMAP response: A0004 WHAT");
               }});
}

TEST(IMAPClient, continuationLinesAreDroppedAndOtherTagsKeptAsUntagged) {
  playExactly({{expect("A0004 UID SEARCH ALL\r\n"),
                answer("+ later\r\nA0003 OK old\r\nA00041 OK\r\na0004 OK\r\n* SEARCH 2\r\nA0004 ok\r\n")},
               [](IMAPClient& client) { EXPECT_THAT(client.searchInbox({}, 5), ElementsAre(2u)); }});
}

// --- Small pure parts ------------------------------------------------------------------------------------

TEST(IMAPClient, summaryOfAServersTextIsSafe) {
  const struct {
    std::string text;
    std::string summary;
  } rows[] = {
      {"plain", "plain"},
      {" \t two\r\nlines \r\n", "two  lines"},
      {"bell\aescape\033[31m", "bell escape [31m"},
      {"\u202Eright to left\u2066\u200B\u00AD!", "right to left   !"},
      {"c1\u0085next", "c1 next"},
      {"bad \xFF byte", "bad \uFFFD byte"},
      {std::string(500, 'x'), std::string(200, 'x')},
      {"", ""},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(IMAPClient::safeSummary(row.text), row.summary) << row.text;
  }
}

TEST(IMAPClient, quotingEscapesBackslashesAndQuotes) {
  EXPECT_EQ(IMAPClient::quoted("a\\b\"c"), "\"a\\\\b\\\"c\"");
  EXPECT_EQ(IMAPClient::quoted(""), "\"\"");
  EXPECT_EQ(IMAPClient::quoted("日本\u202E"), "\"日本\u202E\"")
      << "format characters are no control characters";
  EXPECT_EQ(IMAPClient::quoted("{5}"), "\"{5}\"");
  for (const char* text : {"a\nb", "a\rb", "\t", "\x7f", "\u0080", "\u009f"}) {
    EXPECT_THROW(IMAPClient::quoted(text), IMAPError);
  }
  EXPECT_NO_THROW(IMAPClient::quoted("\u00a0"));
  EXPECT_THROW(IMAPClient::quoted("\xC2\r"), IMAPError) << "a sequence cut short does not hide what follows";
  EXPECT_EQ(IMAPClient::quoted("\xC2 x\x80"), "\"\xC2 x\x80\"") << "bytes that are no UTF-8 are none either";
}

}  // namespace
}  // namespace tarnwell::test
