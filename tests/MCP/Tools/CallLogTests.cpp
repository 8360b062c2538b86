/// The log line at the end of a call has counts and decisions. It has no words of a mail or a mailbox.

#include "MCP/Tools/FakeMail.h"
#include "MCP/Tools/ToolFixture.h"
#include "support/RowName.h"
#include "support/SessionScript.h"

namespace tarnwell::test {
namespace {

using ::testing::MatchesRegex;

const FakeMail plain{.uid = 7, .subject = "Private", .body = "Private text"};
const FakeMail secret{.uid = 9, .subject = "Your verification code"};
const FakeMail anotherSecret{.uid = 10, .subject = "Your one-time password"};
const FakeMail bare{.uid = 5, .structure = R"(("application" "pdf" NIL NIL NIL "base64" 9))"};

/// The session of a tool that lists the mails of a search. It does not fetch the body of a secret mail.
Dialogue list(const std::string& uids, const std::vector<FakeMail>& newestFirst) {
  SessionScript script;
  script.command("UID SEARCH ALL", "* SEARCH" + uids + "\r\n");
  std::string set;
  std::string summaries;
  for (const FakeMail& mail : newestFirst) {
    set += (set.empty() ? "" : ",") + std::to_string(mail.uid);
    summaries += mail.summary();
  }
  if (!set.empty()) {
    script.command("UID FETCH " + set + " (UID FLAGS INTERNALDATE ENVELOPE BODYSTRUCTURE)", summaries);
  }
  for (const FakeMail& mail : newestFirst) {
    if (mail.uid == plain.uid) {
      script.command(mail.fetchBody(), mail.bodyPart());
    }
  }
  return script.withLogout();
}

/// The session of a tool that looks at one mail and sends at most one more command.
Dialogue look(const FakeMail& mail, const std::string& command = "", const std::string& answer = "",
              const std::string& select = "EXAMINE INBOX") {
  SessionScript script(select);
  script.command(mail.fetchSummary(), mail.summary());
  if (!command.empty()) {
    script.command(command, answer);
  }
  return script.withLogout();
}

Dialogue folders(const std::string& answer) {
  return SessionScript().command("LIST \"\" \"*\"", answer).withLogout();
}

struct OutcomeRow {
  const char* name;
  const char* tool;
  Dialogue dialogue;
  const char* expected;
  const char* arguments = R"({"uid": 7})";
  bool isReadOnly = false;
  const char* email = testEmail;
};

using CallLogTest = ToolTest;
class CallLog : public ToolTest, public ::testing::WithParamInterface<OutcomeRow> {};

/// Also of a call that finds nothing, or that cannot be made.
TEST_F(CallLogTest, tellsAnErrorAsTheClientGetsIt) {
  serve(SessionScript().command(plain.fetchSummary(), "").withLogout());
  for (const char* tool : {"get_message_body", "get_message_summary", "move_message", "mark_as_read"}) {
    const char* const arguments = tool == std::string("get_message_body") ? R"({"uid": 7})" : "{}";
    const ToolCallResult result = call(tool, *JSONValue::decode(arguments));
    ASSERT_TRUE(result.isError);
    const LogEntry last = LogBuffer::shared().snapshot().back();
    EXPECT_EQ(last.level, LogLevel::error);
    EXPECT_EQ(last.message,
              "tool " + std::string(tool) + " failed: " + *result.structured["error"].stringValue());
  }
}

TEST_P(CallLog, tellsCountsAndDecisions) {
  const OutcomeRow& row = GetParam();
  config.safety.readOnly = row.isReadOnly;
  config.email = row.email;
  FakeIMAPServer& server = serve(row.dialogue);
  const ToolCallResult result = call(row.tool, *JSONValue::decode(row.arguments));
  EXPECT_EQ(server.mismatch(), "");
  EXPECT_FALSE(result.isError) << result.structured.prettyString();
  const LogEntry last = LogBuffer::shared().snapshot().back();
  EXPECT_EQ(last.level, LogLevel::info);
  EXPECT_EQ(last.category, "tool");
  EXPECT_THAT(last.message,
              MatchesRegex("tool " + std::string(row.tool) + ": " + row.expected + " \\([0-9]+ ms\\)"));
}

INSTANTIATE_TEST_SUITE_P(
    Table, CallLog,
    ::testing::Values(
        OutcomeRow{"statusOfAnAccount", "get_status", {}, "configured"},
        OutcomeRow{.name = "statusWithoutAnAccount",
                   .tool = "get_status",
                   .dialogue = {},
                   .expected = "not configured",
                   .email = ""},
        OutcomeRow{"noFolder", "list_folders", folders(""), "0 folders"},
        OutcomeRow{"oneFolder", "list_folders", folders("* LIST () \"/\" Private\r\n"), "1 folder"},
        OutcomeRow{"twoFolders", "list_folders",
                   folders("* LIST () \"/\" INBOX\r\n* LIST () \"/\" Private\r\n"), "2 folders"},
        OutcomeRow{"nothingFound", "search_inbox", list("", {}), "0 messages"},
        OutcomeRow{"oneFound", "search_inbox", list(" 7", {plain}), "1 message"},
        OutcomeRow{"oneFoundAndWithheld", "search_inbox", list(" 9", {secret}), "1 message, 1 withheld"},
        OutcomeRow{"someFoundAreWithheld", "search_inbox",
                   list(" 5 7 9 10", {anotherSecret, secret, plain, bare}), "4 messages, 2 withheld"},
        OutcomeRow{"nothingProposed", "propose_inbox_cleanup", list("", {}), "0 messages"},
        OutcomeRow{"someProposedAreWithheld", "propose_inbox_cleanup", list(" 5 7 9", {secret, plain, bare}),
                   "3 messages, 1 withheld"},
        OutcomeRow{"summary", "get_message_summary", look(plain, plain.fetchBody(), plain.bodyPart()),
                   "1 message"},
        OutcomeRow{"summaryWithheld", "get_message_summary", look(secret), "1 message, withheld",
                   R"({"uid": 9})"},
        OutcomeRow{"summaryWithheldThatIsNotAskedFor", "get_message_summary", look(secret),
                   "1 message, withheld", R"({"uid": 9, "includeBodySnippet": false})"},
        OutcomeRow{"summaryWithoutTheSnippet", "get_message_summary", look(plain), "1 message",
                   R"({"uid": 7, "includeBodySnippet": false})"},
        OutcomeRow{"body", "get_message_body", look(plain, plain.fetchBody(), plain.bodyPart()),
                   "a text of 12 characters"},
        OutcomeRow{"bodyThatIsCut", "get_message_body", look(plain, plain.fetchBody(), plain.bodyPart()),
                   "a text of 12 characters", R"({"uid": 7, "maxChars": 3})"},
        OutcomeRow{"bodyWithheld", "get_message_body", look(secret), "withheld", R"({"uid": 9})"},
        OutcomeRow{"noBody", "get_message_body", look(bare), "no text", R"({"uid": 5})"},
        OutcomeRow{"marked", "mark_as_read", look(plain, "UID STORE 7 +FLAGS (\\Seen)", "", "SELECT INBOX"),
                   "executed"},
        OutcomeRow{"markingPreviewed", "mark_as_read", look(plain), "previewed",
                   R"({"uid": 7, "dryRun": true})"},
        OutcomeRow{"markingBlocked", "mark_as_read", {}, "blocked", R"({"uid": 7})", true},
        OutcomeRow{"movePreviewed", "move_message", folders("* LIST () \"/\" Private\r\n"), "previewed",
                   R"({"uid": 7, "targetFolder": "Private", "dryRun": true})"},
        OutcomeRow{"trashDisabled", "trash_message", {}, "blocked"}),
    rowName);

}  // namespace
}  // namespace tarnwell::test
