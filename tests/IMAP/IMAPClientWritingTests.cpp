#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <limits>

#include "IMAP/ClientOf.h"
#include "IMAP/Connection/IMAPError.h"
#include "IMAP/IMAPClient.h"
#include "support/BrokenSession.h"
#include "support/FakeIMAPServer.h"
#include "support/RowName.h"
#include "support/SessionScript.h"

namespace tarnwell::test {
namespace {

using namespace std::chrono_literals;

using Access = IMAPClient::Access;
using Kind = IMAPError::Kind;

constexpr auto allowed = IMAPClient::CopyFallback::allowed;
constexpr auto forbidden = IMAPClient::CopyFallback::forbidden;

constexpr const char* controlCharacterText = "Invalid argument: control character in IMAP argument";

/// What an operation came to: its outcome, or the description of its error.
using Operation = std::function<std::string(IMAPClient&)>;

Operation moving(std::string path, IMAPClient::CopyFallback fallback, std::uint32_t uid = 7) {
  return [=](IMAPClient& client) -> std::string {
    return client.move(uid, path, fallback) == MoveOutcome::moved ? "moved" : "copied and flagged";
  };
}

Operation markingRead(std::uint32_t uid = 7) {
  return [=](IMAPClient& client) -> std::string {
    client.markRead(uid);
    return "marked";
  };
}

std::string resultOf(const Operation& operation, IMAPClient& client) {
  try {
    return operation(client);
  } catch (const IMAPError& error) {
    return error.description();
  }
}

std::string rejected(const std::string& detail) {
  return "The mail server rejected the move (" + detail +
         "). This is a server-side limitation \u2014 it is NOT fixed by changing read-only, dry-run, or the "
         "allow toggles. To move anyway without permanent deletion, enable \"Move on servers without MOVE "
         "(COPY + mark deleted)\" in Safety settings. (The bridge never performs a physical delete / "
         "EXPUNGE.)";
}

// --- The exact bytes -------------------------------------------------------------------------------------

SessionScript writing() { return SessionScript("SELECT INBOX"); }

struct WriteRow {
  const char* name;
  SessionScript script;
  Operation operation;
  std::string result;
};

class Write : public testing::TestWithParam<WriteRow> {};

TEST_P(Write, sendsExactlyTheseCommands) {
  SessionScript script = GetParam().script;
  FakeIMAPServer server(script.withLogout());
  IMAPClient client = clientOf(server);
  client.connect();
  client.selectInbox(Access::readWrite);
  EXPECT_EQ(resultOf(GetParam().operation, client), GetParam().result);
  client.disconnect();
  EXPECT_EQ(server.mismatch(), "");
}

constexpr const char* moveTea = "UID MOVE 7 \"Tea\"";
constexpr const char* copyTea = "UID COPY 7 \"Tea\"";
constexpr const char* flagDeleted = "UID STORE 7 +FLAGS (\\Deleted)";
constexpr const char* flagSeen = "UID STORE 7 +FLAGS (\\Seen)";

INSTANTIATE_TEST_SUITE_P(
    Move, Write,
    testing::Values(
        WriteRow{"okWithoutFallback", writing().command(moveTea), moving("Tea", forbidden), "moved"},
        WriteRow{"okWithFallback", writing().command(moveTea), moving("Tea", allowed), "moved"},
        WriteRow{"okWithAnswersInBetween",
                 writing().command(moveTea, "* OK [COPYUID 1 7 9] moved\r\n+ what\r\n* 1 EXPUNGE\r\n"),
                 moving("Tea", allowed), "moved"},
        WriteRow{"okOfAnUnknownUID", writing().command(moveTea, "", "OK nothing to move"),
                 moving("Tea", forbidden), "moved"},
        WriteRow{"noWithoutFallback", writing().command(moveTea, "", "NO [CANNOT] not here"),
                 moving("Tea", forbidden), rejected("[CANNOT] not here")},
        WriteRow{"badWithoutFallback", writing().command(moveTea, "", "BAD Unknown command"),
                 moving("Tea", forbidden), rejected("Unknown command")},
        WriteRow{"emptyTextOfTheRefusal", writing().command(moveTea, "", "NO"), moving("Tea", forbidden),
                 rejected("")},
        WriteRow{"hostileTextOfTheRefusal",
                 writing().command(moveTea, "", "NO \033[2J\tx\u202E " + std::string(500, 'y')),
                 moving("Tea", forbidden), rejected("[2J x  " + std::string(193, 'y'))},
        WriteRow{"noWithFallback",
                 writing().command(moveTea, "", "NO not here").command(copyTea).command(flagDeleted),
                 moving("Tea", allowed), "copied and flagged"},
        WriteRow{"badWithFallback",
                 writing()
                     .command(moveTea, "", "BAD Unknown command")
                     .command(copyTea, "", "OK [COPYUID 1 7 9] copied")
                     .command(flagDeleted, "* 1 FETCH (UID 7 FLAGS (\\Deleted))\r\n"),
                 moving("Tea", allowed), "copied and flagged"},
        WriteRow{
            "copyRefused",
            writing().command(moveTea, "", "BAD x").command(copyTea, "", "NO [TRYCREATE] no such folder"),
            moving("Tea", allowed), "IMAP UID failed: [TRYCREATE] no such folder"},
        WriteRow{"copyNotUnderstood",
                 writing().command(moveTea, "", "NO x").command(copyTea, "", "BAD \a what"),
                 moving("Tea", allowed), "IMAP UID failed: what"},
        WriteRow{"flagRefusedLeavesTheCopyAndUndoesNothing",
                 writing()
                     .command(moveTea, "", "BAD x")
                     .command(copyTea)
                     .command(flagDeleted, "", "NO [READ-ONLY] no"),
                 moving("Tea", allowed), "IMAP UID failed: [READ-ONLY] no"},
        WriteRow{"flagNotUnderstood",
                 writing().command(moveTea, "", "NO x").command(copyTea).command(flagDeleted, "", "BAD no"),
                 moving("Tea", allowed), "IMAP UID failed: no"},
        WriteRow{"completionThatIsNoneStartsNoFallback", writing().command(moveTea, "", "PERHAPS"),
                 moving("Tea", allowed), "Unexpected IMAP response: A0004 PERHAPS"}),
    rowName);

INSTANTIATE_TEST_SUITE_P(MarkRead, Write,
                         testing::Values(WriteRow{"ok", writing().command(flagSeen), markingRead(), "marked"},
                                         WriteRow{"okWithTheNewFlags",
                                                  writing().command(flagSeen,
                                                                    "* 1 FETCH (UID 7 FLAGS (\\Seen))\r\n"),
                                                  markingRead(), "marked"},
                                         WriteRow{"no", writing().command(flagSeen, "", "NO not today"),
                                                  markingRead(), "IMAP UID failed: not today"},
                                         WriteRow{"bad", writing().command(flagSeen, "", "BAD [X] what"),
                                                  markingRead(), "IMAP UID failed: [X] what"}),
                         rowName);

constexpr std::uint32_t greatestUID = std::numeric_limits<std::uint32_t>::max();

INSTANTIATE_TEST_SUITE_P(UIDs, Write,
                         testing::Values(WriteRow{"smallestMoved", writing().command("UID MOVE 1 \"Tea\""),
                                                  moving("Tea", forbidden, 1), "moved"},
                                         WriteRow{"greatestCopiedAndFlagged",
                                                  writing()
                                                      .command("UID MOVE 4294967295 \"Tea\"", "", "NO")
                                                      .command("UID COPY 4294967295 \"Tea\"")
                                                      .command("UID STORE 4294967295 +FLAGS (\\Deleted)"),
                                                  moving("Tea", allowed, greatestUID), "copied and flagged"},
                                         WriteRow{"greatestMarked",
                                                  writing().command("UID STORE 4294967295 +FLAGS (\\Seen)"),
                                                  markingRead(greatestUID), "marked"}),
                         rowName);

/// Both commands that name the folder must spell it alike.
SessionScript namingTheFolder(const std::string& quotedPath) {
  return writing()
      .command("UID MOVE 7 " + quotedPath, "", "NO x")
      .command("UID COPY 7 " + quotedPath)
      .command(flagDeleted);
}

WriteRow pathRow(const char* name, const char* path, const char* quotedPath) {
  return {name, namingTheFolder(quotedPath), moving(path, allowed), "copied and flagged"};
}

INSTANTIATE_TEST_SUITE_P(
    Paths, Write,
    testing::Values(pathRow("quote", "say \"x\"", "\"say \\\"x\\\"\""),
                    pathRow("backslash", "a\\b", "\"a\\\\b\""),
                    pathRow("backslashAtTheEnd", "a\\", "\"a\\\\\""),
                    pathRow("backslashAndQuote", "\\\"", "\"\\\\\\\"\""),
                    pathRow("blanks", " Sent  Messages ", "\" Sent  Messages \""),
                    pathRow("empty", "", "\"\""), pathRow("nonASCII", "書類/Café", "\"書類/Café\""),
                    pathRow("modifiedUTF7", "&MLQw33ux-", "\"&MLQw33ux-\""),
                    pathRow("wildcardsAndBraces", "*%{5}(", "\"*%{5}(\""),
                    pathRow("soundsLikeACommand", "x A0005 EXPUNGE", "\"x A0005 EXPUNGE\"")),
    rowName);

// --- What is refused before anything is sent ---------------------------------------------------------------

TEST(IMAPClientWriting, controlCharacterInAPathIsRefusedBeforeAnyByte) {
  for (const std::string& path :
       {std::string("a\nb"), std::string("Tea\r\nA0005 EXPUNGE"), std::string("a\0b", 3), std::string("\t"),
        std::string("\x7f"), std::string("a\u0085")}) {
    for (const auto fallback : {allowed, forbidden}) {
      FakeIMAPServer server(writing().withLogout());
      IMAPClient client = clientOf(server);
      client.connect();
      client.selectInbox(Access::readWrite);
      EXPECT_EQ(resultOf(moving(path, fallback), client), controlCharacterText);
      client.disconnect();
      EXPECT_EQ(server.mismatch(), "") << path;
    }
  }
}

TEST(IMAPClientWriting, everyWriteNeedsTheInbox) {
  for (const Operation& operation : {moving("Tea", allowed), moving("a\nb", forbidden), markingRead()}) {
    Dialogue unselected = loginDialogue();
    unselected.resize(5);
    FakeIMAPServer server(unselected +
                          Dialogue{expect("A0003 LOGOUT\r\n"), answer("A0003 OK\r\n"), closeHere()});
    IMAPClient client = clientOf(server);
    client.connect();
    EXPECT_EQ(resultOf(operation, client), "No mailbox is selected.");
    client.disconnect();
    EXPECT_EQ(server.mismatch(), "");
    EXPECT_EQ(resultOf(operation, client), "No mailbox is selected.") << "nor after the session";
  }
}

TEST(IMAPClientWriting, refusedSelectionAllowsNoWrite) {
  Dialogue dialogue = loginDialogue("SELECT INBOX");
  dialogue.back() = answer("A0003 NO locked\r\n");
  FakeIMAPServer server(dialogue + Dialogue{expect("A0004 LOGOUT\r\n"), answer("A0004 OK\r\n"), closeHere()});
  IMAPClient client = clientOf(server);
  client.connect();
  EXPECT_THROW(client.selectInbox(Access::readWrite), IMAPError);
  EXPECT_EQ(resultOf(moving("Tea", allowed), client), "No mailbox is selected.");
  client.disconnect();
  EXPECT_EQ(server.mismatch(), "");
}

/// Deliberate, hence a test of its own: the server's answer decides, not what it says about itself.
TEST(IMAPClientWriting, moveIsSentWhateverTheCapabilitiesSay) {
  SessionScript script = writing().command(moveTea);
  Dialogue dialogue = script.withLogout();
  dialogue[4] = answer("* CAPABILITY IMAP4rev1\r\nA0002 OK done\r\n");
  FakeIMAPServer server(dialogue);
  IMAPClient client = clientOf(server);
  client.connect();
  client.selectInbox(Access::readWrite);
  EXPECT_FALSE(client.supportsMove());
  EXPECT_EQ(resultOf(moving("Tea", allowed), client), "moved");
  client.disconnect();
  EXPECT_EQ(server.mismatch(), "");
}

// --- Failing at every step -------------------------------------------------------------------------------

struct BreakRow {
  const char* name;
  SessionScript script;
  Operation operation;
};

class BrokenWrite : public testing::TestWithParam<BreakRow> {
 protected:
  /// Breaks the session instead of each answer after the login in turn: the commands up to there were sent,
  /// and nothing follows, neither a second attempt nor a LOGOUT.
  void breakAtEveryAnswer(const Step& end, Timeout timeout, const std::vector<Kind>& kinds) {
    const auto writing = [](const FakeIMAPServer& server, Timeout bound) {
      IMAPClient client = clientOf(server, bound);
      client.connect();
      client.selectInbox(Access::readWrite);
      try {
        GetParam().operation(client);
      } catch (...) {
        client.disconnect();
        throw;
      }
      client.disconnect();
    };
    for (const Dialogue& broken :
         brokenAtEveryAnswer(GetParam().script.dialogue(), end, loginDialogue().size())) {
      const BrokenSession outcome = playBroken(broken, timeout, writing);
      ASSERT_TRUE(outcome.error) << "after " << broken.size() - 1 << " steps";
      EXPECT_THAT(kinds, testing::Contains(outcome.error->kind()))
          << "after " << broken.size() - 1 << " steps: " << outcome.error->description();
      EXPECT_EQ(outcome.mismatch, "");
      EXPECT_EQ(outcome.received, expectedBytes(broken));
    }
  }
};

TEST_P(BrokenWrite, closeAtEveryStepIsReportedAndNothingFollows) {
  breakAtEveryAnswer(closeHere(), 10s, {Kind::connectionClosed});
}

TEST_P(BrokenWrite, resetAtEveryStepIsReportedAtOnceAndNothingFollows) {
  breakAtEveryAnswer(resetHere(), 600s, {Kind::connectionClosed, Kind::connectionFailed});
}

TEST_P(BrokenWrite, silenceAtEveryStepEndsInATimeoutAndNothingFollows) {
  breakAtEveryAnswer(stallHere(), 200ms, {Kind::timeout});
}

INSTANTIATE_TEST_SUITE_P(
    Table, BrokenWrite,
    testing::Values(BreakRow{"move", writing().command(moveTea), moving("Tea", forbidden)},
                    BreakRow{"fallback",
                             writing().command(moveTea, "", "NO x").command(copyTea).command(flagDeleted),
                             moving("Tea", allowed)},
                    BreakRow{"markRead", writing().command(flagSeen), markingRead()}),
    rowName);

}  // namespace
}  // namespace tarnwell::test
