#include "IMAP/Connection/IMAPError.h"
#include "IMAP/MoveOutcome.h"
#include "MCP/Tools/FakeMail.h"
#include "MCP/Tools/ToolArguments.h"
#include "MCP/Tools/ToolFixture.h"
#include "support/RowName.h"
#include "support/SessionScript.h"

namespace tarnwell::test {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::MatchesRegex;
using ::testing::Not;

constexpr const char* listCommand = "LIST \"\" \"*\"";
constexpr const char* folders =
    "* LIST () \"/\" INBOX\r\n* LIST () \"/\" Archive\r\n* LIST () \"/\" \"Archive/2024\"\r\n"
    "* LIST (\\Trash) \"/\" \"Deleted Messages\"\r\n";

/// The level and message of each log entry of the tools.
std::vector<std::string> toolLog() {
  std::vector<std::string> lines;
  for (const LogEntry& entry : LogBuffer::shared().snapshot()) {
    if (entry.category == "tool") {
      lines.push_back(std::string(rawValue(entry.level)) + ": " + entry.message);
    }
  }
  return lines;
}

class WriteTool : public ToolTest {
 protected:
  WriteTool() {
    config.safety.readOnly = false;
    config.safety.allowMove = true;
    config.safety.allowMarkRead = true;
    config.safety.allowTrash = true;
  }
};

// --- The decision table ----------------------------------------------------------------------------------

/// One tool: its switch, its texts, and its commands on the server.
struct ToolRow {
  const char* name;
  bool SafetySettings::* isAllowed;
  const char* readOnlyText;
  const char* disabledText;
  /// The command before the change, its answer, and the change.
  std::string lookUp;
  std::string found;
  std::string change;
  const char* detail;
  const char* executedDetail;
};

struct SettingsRow {
  const char* name;
  bool isReadOnly;
  bool isAllowed;
  /// The label of the refusal in the log. Null when the call decides.
  const char* refusal;
};

struct DryRunRow {
  const char* name;
  const char* value;  // JSON; a null pointer means that the key is absent
  bool isDryRun;
};

const ToolRow writeTools[] = {
    {"move_message", &SafetySettings::allowMove, "Read-only mode is on; no message was moved.",
     "Folder moves are disabled in Safety settings.", listCommand, folders, "UID MOVE 9 \"Archive\"",
     R"({"uid": 9, "from": "INBOX", "to": "Archive"})",
     R"({"uid": 9, "from": "INBOX", "to": "Archive", "method": "UID MOVE"})"},
    {"mark_as_read", &SafetySettings::allowMarkRead,
     "Read-only mode is on; the message was not marked as read.",
     "Mark-as-read is disabled in Safety settings.", FakeMail().fetchSummary(), FakeMail().summary(),
     "UID STORE 9 +FLAGS (\\Seen)", R"({"uid": 9, "subject": "Tea at four"})",
     R"({"uid": 9, "subject": "Tea at four"})"},
    {"trash_message", &SafetySettings::allowTrash,
     "Read-only mode is on; the message was not moved to Trash.", "Trash is disabled in Safety settings.",
     listCommand, folders, "UID MOVE 9 \"Deleted Messages\"",
     R"({"uid": 9, "from": "INBOX", "to": "Deleted Messages"})",
     R"({"uid": 9, "from": "INBOX", "to": "Deleted Messages", "method": "UID MOVE"})"},
};

const SettingsRow settingsRows[] = {
    {"readOnlyAndAllowed", true, true, "blocked(read-only)"},
    {"readOnlyAndDisabled", true, false, "blocked(read-only)"},
    {"writableAndDisabled", false, false, "blocked(disabled)"},
    {"writableAndAllowed", false, true, nullptr},
};

const DryRunRow dryRunRows[] = {
    {"absent", nullptr, false},  {"null", "null", false},      {"true_", "true", true},
    {"false_", "false", false},  {"zero", "0", false},         {"one", "1", true},
    {"minusOne", "-1", true},    {"yesText", "\"yes\"", true}, {"falseText", "\"false\"", true},
    {"emptyText", "\"\"", true}, {"oneAsDouble", "1.0", true}, {"zeroAsDouble", "0.0", true},
    {"emptyArray", "[]", true},  {"emptyObject", "{}", true},  {"hugeNumber", "1e300", true},
};

class Decision : public WriteTool,
                 public ::testing::WithParamInterface<std::tuple<ToolRow, SettingsRow, DryRunRow>> {};

/// Settings, tool and "dryRun" make one decision. The server sees exactly that decision: no connection for a
/// refusal, a session that cannot write for a preview, and otherwise exactly the change.
TEST_P(Decision, isWhatTheServerSees) {
  const auto& [tool, settings, dryRun] = GetParam();
  config.safety.readOnly = settings.isReadOnly;
  for (const ToolRow& each : writeTools) {
    config.safety.*each.isAllowed = !settings.isAllowed;
  }
  config.safety.*tool.isAllowed = settings.isAllowed;
  JSONObject arguments{{"uid", 9}, {"targetFolder", "archive"}};
  if (dryRun.value) {
    arguments.emplace("dryRun", *JSONValue::decode(dryRun.value));
  }

  const std::string decision = settings.refusal ? settings.refusal : dryRun.isDryRun ? "dry-run" : "execute";
  const bool isExecuted = decision == "execute";
  SessionScript script(isExecuted ? "SELECT INBOX" : "EXAMINE INBOX");
  script.command(tool.lookUp, tool.found);
  if (isExecuted) {
    script.command(tool.change);
  }
  FakeIMAPServer& server = serve(settings.refusal ? Dialogue{} : script.withLogout());
  const ToolCallResult result = call(tool.name, arguments);

  EXPECT_EQ(server.mismatch(), "");
  EXPECT_EQ(server.acceptCount(), settings.refusal ? 0 : 1);
  EXPECT_FALSE(result.isError);
  const std::string refusalText = settings.isReadOnly ? tool.readOnlyText : tool.disabledText;
  EXPECT_EQ(
      result.structured,
      JSONValue(JSONObject{
          {"operation", tool.name},
          {"executed", isExecuted},
          {"dryRun", decision == "dry-run"},
          {"blocked", settings.refusal != nullptr},
          {"mode", settings.isReadOnly ? "read-only" : "write-enabled"},
          {"reason", settings.refusal ? refusalText
                     : isExecuted     ? "Executed."
                                      : "Dry-run: no change was made to the mailbox."},
          {"detail", settings.refusal ? JSONValue(JSONObject{})
                                      : *JSONValue::decode(isExecuted ? tool.executedDetail : tool.detail)},
      }))
      << result.structured.prettyString();
  const std::string name = tool.name;
  const std::string fate = settings.refusal ? "blocked" : isExecuted ? "executed" : "previewed";
  EXPECT_THAT(toolLog(), ElementsAre("info: tool call: " + name, "notice: write " + name + ": " + decision,
                                     MatchesRegex("info: tool " + name + ": " + fate + " .[0-9]+ ms.")));
}

INSTANTIATE_TEST_SUITE_P(Table, Decision,
                         ::testing::Combine(::testing::ValuesIn(writeTools),
                                            ::testing::ValuesIn(settingsRows),
                                            ::testing::ValuesIn(dryRunRows)),
                         [](const auto& instance) {
                           return std::string(std::get<0>(instance.param).name) + "_" +
                                  std::get<1>(instance.param).name + "_" + std::get<2>(instance.param).name;
                         });

TEST(ToolArguments, wishForAPreviewIsAbsentInWhatIsNoObject) {
  for (const char* arguments :
       {"null", "true", "1", "\"dryRun\"", "[{\"dryRun\": true}]", "{\"dryrun\": true}"}) {
    EXPECT_EQ(requestedDryRun(*JSONValue::decode(arguments)), std::nullopt) << arguments;
  }
  EXPECT_EQ(requestedDryRun(*JSONValue::decode("{\"dryRun\": false}")), false);
  EXPECT_EQ(requestedDryRun(*JSONValue::decode("{\"dryRun\": [false]}")), true);
}

// --- Arguments -------------------------------------------------------------------------------------------

TEST_F(WriteTool, invalidUIDsAreErrorsWithoutADecisionOrAConnection) {
  FakeIMAPServer& server = serve({});
  for (const bool isReadOnly : {false, true}) {
    config.safety.readOnly = isReadOnly;
    for (const ToolRow& tool : writeTools) {
      for (const char* arguments :
           {R"({})", R"(null)", R"([9])", R"({"uid": null, "targetFolder": "Archive"})",
            R"({"uid": -1, "targetFolder": "Archive"})", R"({"uid": 4294967296, "targetFolder": "Archive"})",
            R"({"uid": "nine", "targetFolder": 5})", R"({"uid": [9], "dryRun": true})"}) {
        LogBuffer::shared().clear();
        EXPECT_EQ(errorOf(call(tool.name, *JSONValue::decode(arguments))), "Missing or invalid 'uid'.")
            << tool.name << arguments;
        EXPECT_THAT(toolLog(), ElementsAre("info: tool call: " + std::string(tool.name),
                                           "error: tool " + std::string(tool.name) +
                                               " failed: Missing or invalid 'uid'."));
      }
    }
  }
  EXPECT_EQ(server.acceptCount(), 0);
}

TEST_F(WriteTool, missingTargetIsAnErrorWithoutADecisionOrAConnection) {
  FakeIMAPServer& server = serve({});
  for (const bool isReadOnly : {false, true}) {
    config.safety.readOnly = isReadOnly;
    for (const char* arguments :
         {R"({"uid": 9})", R"({"uid": 9, "targetFolder": ""})", R"({"uid": 9, "targetFolder": 5})",
          R"({"uid": 9, "targetFolder": null})", R"({"uid": 9, "targetFolder": ["Archive"]})",
          R"({"uid": 9, "targetFolder": true})", R"({"uid": 9, "TargetFolder": "Archive"})"}) {
      LogBuffer::shared().clear();
      EXPECT_EQ(errorOf(call("move_message", *JSONValue::decode(arguments))), "Missing 'targetFolder'.")
          << arguments;
      EXPECT_THAT(toolLog(), ElementsAre("info: tool call: move_message",
                                         "error: tool move_message failed: Missing 'targetFolder'."));
    }
  }
  EXPECT_EQ(server.acceptCount(), 0);
}

TEST_F(WriteTool, greatestUIDIsAnOrdinaryOne) {
  FakeIMAPServer& server = serve(SessionScript("SELECT INBOX")
                                     .command(listCommand, folders)
                                     .command("UID MOVE 4294967295 \"Archive\"")
                                     .withLogout());
  const ToolCallResult result =
      call("move_message", JSONObject{{"uid", "4294967295"}, {"targetFolder", "Archive"}});
  EXPECT_EQ(server.mismatch(), "");
  EXPECT_EQ(result.structured["detail"]["uid"], JSONValue(4294967295LL));
}

// --- The inbox as a target -------------------------------------------------------------------------------

JSONValue moveTo(std::string_view folder) { return JSONObject{{"uid", 9}, {"targetFolder", folder}}; }

TEST_F(WriteTool, moveToTheInboxIsRefusedWithoutAConnection) {
  FakeIMAPServer& server = serve({});
  for (const char* name : {"INBOX", "inbox", "InBoX"}) {
    for (const bool isDryRun : {false, true}) {
      LogBuffer::shared().clear();
      EXPECT_EQ(
          errorOf(call("move_message", JSONObject{{"uid", 9}, {"targetFolder", name}, {"dryRun", isDryRun}})),
          "Refusing to move a message to INBOX (it is already there).");
      EXPECT_THAT(toolLog(), ElementsAre("info: tool call: move_message",
                                         isDryRun ? "notice: write move_message: dry-run"
                                                  : "notice: write move_message: execute",
                                         HasSubstr("failed: Refusing to move a message to INBOX")));
    }
  }
  EXPECT_EQ(server.acceptCount(), 0);
}

TEST_F(WriteTool, blockIsReportedBeforeTheInboxAsATarget) {
  FakeIMAPServer& server = serve({});
  config.safety.allowMove = false;
  EXPECT_EQ(call("move_message", moveTo("inbox")).structured["reason"],
            JSONValue("Folder moves are disabled in Safety settings."));
  config.safety.readOnly = true;
  EXPECT_EQ(call("move_message", moveTo("inbox")).structured["reason"],
            JSONValue("Read-only mode is on; no message was moved."));
  EXPECT_EQ(server.acceptCount(), 0);
}

/// A display name can resolve to the inbox.
TEST_F(WriteTool, nameThatResolvesToTheInboxIsRefusedInTheSession) {
  // The delimiter of the path is "n". The display name is the text after the last delimiter.
  const std::string list = "* LIST () \"n\" Inbox\r\n* LIST () \"/\" Archive\r\n";
  for (const bool isDryRun : {false, true}) {
    FakeIMAPServer& server = serve(
        SessionScript(isDryRun ? "EXAMINE INBOX" : "SELECT INBOX").command(listCommand, list).withLogout());
    const ToolCallResult result =
        call("move_message", JSONObject{{"uid", 9}, {"targetFolder", "box"}, {"dryRun", isDryRun}});
    EXPECT_EQ(server.mismatch(), "");
    EXPECT_EQ(errorOf(result), "Refusing to move a message to INBOX.");
  }
}

// --- Folders ---------------------------------------------------------------------------------------------

struct FolderRow {
  const char* name;
  const char* target;
  std::string list;
  /// The path in the result, and its form in the command.
  const char* path;
  const char* quotedPath;
};

class Target : public WriteTool, public ::testing::WithParamInterface<FolderRow> {};

TEST_P(Target, isNamedAsTheServerSpellsIt) {
  const FolderRow& row = GetParam();
  FakeIMAPServer& server = serve(SessionScript("SELECT INBOX")
                                     .command(listCommand, row.list)
                                     .command("UID MOVE 9 " + std::string(row.quotedPath))
                                     .withLogout());
  const ToolCallResult result = call("move_message", moveTo(row.target));
  EXPECT_EQ(server.mismatch(), "");
  EXPECT_EQ(result.structured["detail"]["to"], JSONValue(row.path));
}

INSTANTIATE_TEST_SUITE_P(
    Table, Target,
    ::testing::Values(FolderRow{"otherCase", "ARCHIVE", folders, "Archive", "\"Archive\""},
                      FolderRow{"displayName", "2024", folders, "Archive/2024", "\"Archive/2024\""},
                      FolderRow{"pathBeatsDisplayName", "Tea",
                                "* LIST () \"/\" \"x/Tea\"\r\n* LIST () \"/\" Tea\r\n", "Tea", "\"Tea\""},
                      FolderRow{"quotesAndBackslashes", "say \"a\\b\"",
                                "* LIST () \"/\" \"Say \\\"A\\\\B\\\"\"\r\n", "Say \"A\\B\"",
                                "\"Say \\\"A\\\\B\\\"\""},
                      FolderRow{"literal", "two words", "* LIST () \"/\" {9}\r\nTwo Words\r\n", "Two Words",
                                "\"Two Words\""},
                      FolderRow{"nonASCII", "書類", "* LIST () \"/\" \"x/書類\"\r\n", "x/書類", "\"x/書類\""},
                      FolderRow{"modifiedUTF7", "プロジェクト", "* LIST () \"/\" x/&MNcw7TC4MKcwrzDI-\r\n",
                                "x/&MNcw7TC4MKcwrzDI-", "\"x/&MNcw7TC4MKcwrzDI-\""},
                      FolderRow{"belowTheInbox", "INBOX/Tea",
                                "* LIST () \"/\" INBOX\r\n* LIST () \"/\" INBOX/Tea\r\n", "INBOX/Tea",
                                "\"INBOX/Tea\""}),
    rowName);

TEST_F(WriteTool, unknownFolderIsAnErrorAndTheSessionEnds) {
  for (const bool isDryRun : {false, true}) {
    FakeIMAPServer& server = serve(SessionScript(isDryRun ? "EXAMINE INBOX" : "SELECT INBOX")
                                       .command(listCommand, folders)
                                       .withLogout());
    const ToolCallResult result =
        call("move_message", JSONObject{{"uid", 9}, {"targetFolder", "Arch\u2603"}, {"dryRun", isDryRun}});
    EXPECT_EQ(server.mismatch(), "");
    EXPECT_EQ(errorOf(result), "Folder not found: Arch\u2603") << "the name as it was asked for";
    EXPECT_EQ(toolLog().back(), "error: tool move_message failed: Folder not found: Arch\u2603");
  }
}

TEST_F(WriteTool, longNameOfAFolderIsCutInTheLogAlone) {
  serve(SessionScript("SELECT INBOX").command(listCommand, folders).withLogout());
  const std::string name(10'000, 'x');
  EXPECT_EQ(errorOf(call("move_message", moveTo(name))), "Folder not found: " + name);
  EXPECT_EQ(toolLog().back(),
            "error: tool move_message failed: Folder not found: " + std::string(300 - 18, 'x'));
}

TEST_F(WriteTool, rejectedMoveIsLoggedWithTheSettingThatHelps) {
  const std::string words(200, 'w');
  serve(SessionScript("SELECT INBOX")
            .command(listCommand, folders)
            .command("UID MOVE 9 \"Archive\"", "", "NO " + words + words)
            .withLogout());
  const std::string text = IMAPError::moveRejected(words).description();
  EXPECT_EQ(errorOf(call("move_message", moveTo("Archive"))), text);
  EXPECT_EQ(toolLog().back(), "error: tool move_message failed: " + text);
}

TEST_F(WriteTool, emptyFolderListHasNoFolder) {
  FakeIMAPServer& server = serve(SessionScript("SELECT INBOX").command(listCommand).withLogout());
  EXPECT_EQ(errorOf(call("move_message", moveTo("Archive"))), "Folder not found: Archive");
  EXPECT_EQ(server.mismatch(), "");
}

TEST_F(WriteTool, mailboxWithoutATrashFolderIsToldSo) {
  for (const bool isDryRun : {false, true}) {
    FakeIMAPServer& server =
        serve(SessionScript(isDryRun ? "EXAMINE INBOX" : "SELECT INBOX")
                  .command(listCommand, "* LIST () \"/\" INBOX\r\n* LIST () \"/\" Bin\r\n")
                  .withLogout());
    EXPECT_EQ(errorOf(call("trash_message", JSONObject{{"uid", 9}, {"dryRun", isDryRun}})),
              "Folder not found: Trash");
    EXPECT_EQ(server.mismatch(), "");
  }
}

TEST_F(WriteTool, trashIsFoundByItsJapaneseName) {
  for (const std::string path : {"ゴミ箱", "&MLQw33ux-"}) {
    FakeIMAPServer& server = serve(SessionScript("SELECT INBOX")
                                       .command(listCommand, "* LIST () \"/\" \"" + path + "\"\r\n")
                                       .command("UID MOVE 9 \"" + path + "\"")
                                       .withLogout());
    EXPECT_EQ(call("trash_message", JSONObject{{"uid", 9}}).structured["detail"]["to"], JSONValue(path));
    EXPECT_EQ(server.mismatch(), "");
  }
}

TEST_F(WriteTool, trashDoesNotLookAtATarget) {
  FakeIMAPServer& server = serve(SessionScript("SELECT INBOX")
                                     .command(listCommand, folders)
                                     .command("UID MOVE 9 \"Deleted Messages\"")
                                     .withLogout());
  EXPECT_EQ(call("trash_message", moveTo("Archive")).structured["detail"]["to"],
            JSONValue("Deleted Messages"));
  EXPECT_EQ(server.mismatch(), "");
}

TEST_F(WriteTool, folderWithALineBreakInItsNameIsNeverNamedInACommand) {
  const std::string list = "* LIST () \"/\" {15}\r\nTea\r\nA9 EXPUNGE\r\n";
  FakeIMAPServer& server = serve(SessionScript("SELECT INBOX").command(listCommand, list).withLogout());
  EXPECT_EQ(errorOf(call("move_message", moveTo("tea\r\na9 expunge"))),
            "Invalid argument: control character in IMAP argument");
  EXPECT_EQ(server.mismatch(), "");
}

// --- The server's answer to a change ---------------------------------------------------------------------

/// Both tools that move a message act alike.
struct MovingTool {
  const char* name;
  const char* path;
  const char* quotedPath;
};

class Moving : public WriteTool, public ::testing::WithParamInterface<MovingTool> {
 protected:
  SessionScript afterRefusedMove(const char* completion) {
    SessionScript script("SELECT INBOX");
    script.command(listCommand, folders)
        .command("UID MOVE 9 " + std::string(GetParam().quotedPath), "", completion);
    return script;
  }
  std::string copyCommand() { return "UID COPY 9 " + std::string(GetParam().quotedPath); }
  ToolCallResult move() { return call(GetParam().name, moveTo("Archive")); }
};

TEST_P(Moving, rejectedMoveChangesNothingAndNamesTheSetting) {
  for (const char* completion : {"NO [CANNOT] no", "BAD [CANNOT] no"}) {
    FakeIMAPServer& server = serve(afterRefusedMove(completion).withLogout());
    EXPECT_EQ(
        errorOf(move()),
        "The mail server rejected the move ([CANNOT] no). This is a server-side limitation \u2014 it is "
        "NOT fixed by changing read-only, dry-run, or the allow toggles. To move anyway without "
        "permanent deletion, enable \"Move on servers without MOVE (COPY + mark deleted)\" in Safety "
        "settings. (The bridge never performs a physical delete / EXPUNGE.)");
    EXPECT_EQ(server.mismatch(), "");
  }
}

TEST_P(Moving, fallbackCopiesAndFlagsAndSaysSo) {
  config.safety.allowCopyMoveFallback = true;
  for (const char* completion : {"NO no", "BAD no"}) {
    FakeIMAPServer& server = serve(afterRefusedMove(completion)
                                       .command(copyCommand())
                                       .command("UID STORE 9 +FLAGS (\\Deleted)")
                                       .withLogout());
    const ToolCallResult result = move();
    EXPECT_EQ(server.mismatch(), "");
    EXPECT_FALSE(result.isError);
    EXPECT_EQ(
        result.structured,
        JSONValue(JSONObject{
            {"operation", GetParam().name},
            {"executed", true},
            {"dryRun", false},
            {"blocked", false},
            {"mode", "write-enabled"},
            {"reason", "Executed via the COPY + mark-deleted fallback."},
            {"detail",
             JSONObject{{"uid", 9},
                        {"from", "INBOX"},
                        {"to", GetParam().path},
                        {"method", "COPY + flag \\Deleted (no EXPUNGE)"},
                        {"note",
                         "The server does not support MOVE, so the message was copied to the target and the "
                         "original was flagged for deletion (not erased). The original stays in INBOX, "
                         "marked for deletion, until a mail client finalizes it."}}}}));
  }
}

TEST_P(Moving, fallbackIsNotUsedWhenTheServerMoves) {
  config.safety.allowCopyMoveFallback = true;
  FakeIMAPServer& server = serve(afterRefusedMove("OK moved").withLogout());
  const ToolCallResult result = move();
  EXPECT_EQ(server.mismatch(), "");
  EXPECT_EQ(result.structured["reason"], JSONValue("Executed."));
  EXPECT_EQ(result.structured["detail"]["method"], JSONValue("UID MOVE"));
  EXPECT_EQ(result.structured["detail"].member("note"), nullptr);
}

TEST_P(Moving, refusedCopyAndRefusedFlagAreErrorsAndTheSessionEnds) {
  config.safety.allowCopyMoveFallback = true;
  FakeIMAPServer* server =
      &serve(afterRefusedMove("NO no").command(copyCommand(), "", "NO [OVERQUOTA] full").withLogout());
  EXPECT_EQ(errorOf(move()), "IMAP UID failed: [OVERQUOTA] full");
  EXPECT_EQ(server->mismatch(), "");

  server = &serve(afterRefusedMove("NO no")
                      .command(copyCommand())
                      .command("UID STORE 9 +FLAGS (\\Deleted)", "", "NO locked")
                      .withLogout());
  EXPECT_EQ(errorOf(move()), "IMAP UID failed: locked");
  EXPECT_EQ(server->mismatch(), "");
  EXPECT_EQ(toolLog().back(),
            "error: tool " + std::string(GetParam().name) + " failed: IMAP UID failed: locked");
}

TEST_P(Moving, connectionLostDuringTheMoveIsAnErrorAndNothingIsTriedAgain) {
  config.safety.allowCopyMoveFallback = true;
  Dialogue dialogue = afterRefusedMove("").dialogue();
  dialogue.back() = closeHere();
  FakeIMAPServer& server = serve(dialogue);
  EXPECT_EQ(errorOf(move()), "The IMAP connection was closed unexpectedly.");
  EXPECT_EQ(server.mismatch(), "");
  EXPECT_EQ(server.acceptCount(), 1);
}

INSTANTIATE_TEST_SUITE_P(Tools, Moving,
                         ::testing::Values(MovingTool{"move_message", "Archive", "\"Archive\""},
                                           MovingTool{"trash_message", "Deleted Messages",
                                                      "\"Deleted Messages\""}),
                         rowName);

TEST_F(WriteTool, refusedSelectionOrListIsAnErrorAndNothingIsWritten) {
  Dialogue locked = loginDialogue("SELECT INBOX");
  locked.back() = answer("A0003 NO locked\r\n");
  FakeIMAPServer* server =
      &serve(locked + Dialogue{expect("A0004 LOGOUT\r\n"), answer("A0004 OK\r\n"), closeHere()});
  EXPECT_EQ(errorOf(call("move_message", moveTo("Archive"))), "IMAP SELECT failed: locked");
  EXPECT_EQ(server->mismatch(), "");

  server = &serve(SessionScript("SELECT INBOX").command(listCommand, folders, "NO later").withLogout());
  EXPECT_EQ(errorOf(call("trash_message", JSONObject{{"uid", 9}})), "IMAP LIST failed: later");
  EXPECT_EQ(server->mismatch(), "");
}

// --- mark_as_read ----------------------------------------------------------------------------------------

TEST_F(WriteTool, markingAMessageThatIsNotThereIsAnErrorAndSetsNoFlag) {
  FakeMail mail;
  mail.uid = 99999;
  for (const bool isDryRun : {false, true}) {
    for (const std::string& answer : {std::string(), FakeMail().summary()}) {
      FakeIMAPServer& server = serve(SessionScript(isDryRun ? "EXAMINE INBOX" : "SELECT INBOX")
                                         .command(mail.fetchSummary(), answer)
                                         .withLogout());
      EXPECT_EQ(errorOf(call("mark_as_read", JSONObject{{"uid", 99999}, {"dryRun", isDryRun}})),
                "No message with UID 99999 in INBOX.");
      EXPECT_EQ(server.mismatch(), "");
    }
  }
}

TEST_F(WriteTool, markedMessageWithoutASubjectHasNull) {
  const FakeMail mail{.subject = std::nullopt};
  FakeIMAPServer& server = serve(SessionScript("SELECT INBOX")
                                     .command(mail.fetchSummary(), mail.summary())
                                     .command("UID STORE 9 +FLAGS (\\Seen)")
                                     .withLogout());
  EXPECT_EQ(call("mark_as_read", JSONObject{{"uid", 9}}).structured["detail"],
            JSONValue(JSONObject{{"uid", 9}, {"subject", nullptr}}));
  EXPECT_EQ(server.mismatch(), "");
}

TEST_F(WriteTool, refusedFlagIsAnErrorAndTheSessionEnds) {
  const FakeMail mail;
  for (const char* completion : {"NO locked", "BAD locked"}) {
    FakeIMAPServer& server = serve(SessionScript("SELECT INBOX")
                                       .command(mail.fetchSummary(), mail.summary())
                                       .command("UID STORE 9 +FLAGS (\\Seen)", "", completion)
                                       .withLogout());
    EXPECT_EQ(errorOf(call("mark_as_read", JSONObject{{"uid", 9}})), "IMAP UID failed: locked");
    EXPECT_EQ(server.mismatch(), "");
  }
}

TEST_F(WriteTool, markingTellsTheSubjectAndNothingElseOfAMail) {
  const FakeMail mail{.subject = "Private", .body = "x"};
  serve(SessionScript().command(mail.fetchSummary(), mail.summary()).withLogout());
  const JSONValue detail =
      call("mark_as_read", JSONObject{{"uid", 9}, {"dryRun", true}}).structured["detail"];
  EXPECT_EQ(detail.objectValue()->size(), 2u);
  for (const std::string& line : toolLog()) {
    EXPECT_THAT(line, Not(HasSubstr("Private"))) << "a subject enters no log";
  }
}

// --- Current settings ------------------------------------------------------------------------------------

TEST_F(WriteTool, settingsAreReadAfreshByEachCallOfTheSameTools) {
  FakeIMAPServer& server = serve(SessionScript("SELECT INBOX")
                                     .command(listCommand, folders)
                                     .command("UID MOVE 9 \"Archive\"")
                                     .withLogout());
  const MCPTools sameTools = tools();
  config.safety.readOnly = true;
  save();
  EXPECT_EQ(sameTools.handle("move_message", moveTo("Archive")).structured["mode"], JSONValue("read-only"));
  EXPECT_EQ(server.acceptCount(), 0);

  config.safety.readOnly = false;
  config.safety.allowMove = false;
  save();
  EXPECT_EQ(sameTools.handle("move_message", moveTo("Archive")).structured["reason"],
            JSONValue("Folder moves are disabled in Safety settings."));
  EXPECT_EQ(server.acceptCount(), 0);

  config.safety.allowMove = true;
  save();
  EXPECT_EQ(sameTools.handle("move_message", moveTo("Archive")).structured["executed"], JSONValue(true));
  EXPECT_EQ(server.mismatch(), "");
  EXPECT_EQ(server.acceptCount(), 1);
}

TEST_F(WriteTool, unconfiguredAccountIsToldAfterTheDecision) {
  FakeIMAPServer& server = serve({});
  config.email = "";
  const char* expected = "No iCloud account is configured. Open the app and save your email + app password.";
  EXPECT_EQ(errorOf(call("trash_message", JSONObject{{"uid", 9}})), expected);
  EXPECT_THAT(toolLog(), ElementsAre("info: tool call: trash_message", "notice: write trash_message: execute",
                                     "error: tool trash_message failed: " + std::string(expected)));
  config.safety.readOnly = true;
  EXPECT_EQ(call("trash_message", JSONObject{{"uid", 9}}).structured["blocked"], JSONValue(true));
  EXPECT_EQ(server.acceptCount(), 0);
}

}  // namespace
}  // namespace tarnwell::test
