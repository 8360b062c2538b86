#include "Core/ISO8601.h"
#include "MCP/Tools/ToolFixture.h"

namespace tarnwell::test {
namespace {

using testing::HasSubstr;

class StatusTool : public ToolTest {};

TEST_F(StatusTool, tellsEverythingAboutAConfiguredAccount) {
  config.imapPort = 993;
  const ToolCallResult result = call("get_status");
  EXPECT_FALSE(result.isError);
  EXPECT_EQ(result.structured, *JSONValue::decode(R"({
    "configured": true, "email": "user@example.org", "imapHost": "localhost", "imapPort": 993,
    "mode": "read-only",
    "safety": {"readOnly": true, "allowMove": true, "allowMarkRead": true, "allowTrash": false, "maxFetch": 50,
               "maxBodyChars": 4000, "maxMessagesPerCall": 20, "blockAuthCodeBodies": true,
               "allowCopyMoveFallback": false},
    "availableTools": ["get_status", "list_folders", "search_inbox", "get_message_summary", "get_message_body",
                       "propose_inbox_cleanup", "move_message", "mark_as_read", "trash_message"]})"));
}

TEST_F(StatusTool, withoutAnAddressNothingIsConfigured) {
  config.email = "";
  const JSONValue status = call("get_status").structured;
  EXPECT_EQ(status["configured"], JSONValue(false));
  EXPECT_TRUE(status["email"].isNull());
}

TEST_F(StatusTool, missingEmptyAndUnreadablePasswordsCountAsNone) {
  items.password = std::nullopt;
  EXPECT_EQ(call("get_status").structured["configured"], JSONValue(false));
  items.password = "";
  EXPECT_EQ(call("get_status").structured["configured"], JSONValue(false));
  items.password = "\xff";
  EXPECT_EQ(call("get_status").structured["configured"], JSONValue(false));
  items.status = SecretStatus::interactionNotAllowed;
  const ToolCallResult result = call("get_status");
  EXPECT_EQ(result.structured["configured"], JSONValue(false));
  EXPECT_EQ(result.structured["availableTools"].arrayValue()->size(), 9u);
  EXPECT_FALSE(result.isError);
}

TEST_F(StatusTool, modeFollowsTheSettingsOfThisMoment) {
  config.safety.readOnly = false;
  EXPECT_EQ(call("get_status").structured["mode"], JSONValue("write-enabled"));
  config.safety.readOnly = true;
  EXPECT_EQ(call("get_status").structured["mode"], JSONValue("read-only"));
}

TEST_F(StatusTool, lastConnectionTestIsToldWhenThereWasOne) {
  config.lastConnectionTestDate = parseISO8601("2024-05-01T09:30:00Z");
  EXPECT_EQ(call("get_status").structured["lastConnectionTest"],
            JSONValue(JSONObject{{"date", "2024-05-01T09:30:00Z"}, {"success", false}}));
  config.lastConnectionTestSuccess = true;
  EXPECT_EQ(call("get_status").structured["lastConnectionTest"]["success"], JSONValue(true));
}

TEST_F(StatusTool, ignoresItsArguments) {
  for (const JSONValue& arguments : {JSONValue(nullptr), JSONValue("x"), JSONValue(JSONArray{1})}) {
    EXPECT_FALSE(call("get_status", arguments).isError);
  }
}

// --- The runtime, seen through tools that need a session -------------------------------------------------

class ToolRuntime : public ToolTest {};

TEST_F(ToolRuntime, unknownNamesAreErrorsOfTheTool) {
  for (const char* name : {"no_such_tool", "", "GET_STATUS", "get_status "}) {
    EXPECT_EQ(errorOf(call(name)), "Unknown tool: " + std::string(name));
  }
}

TEST_F(ToolRuntime, eachCallIsLoggedWithItsName) {
  call("get_status");
  const std::vector<LogEntry> entries = LogBuffer::shared().snapshot();
  ASSERT_FALSE(entries.empty());
  EXPECT_EQ(entries[0].category, "tool");
  EXPECT_EQ(entries[0].level, LogLevel::info);
  EXPECT_THAT(entries[0].message, HasSubstr("get_status"));
}

TEST_F(ToolRuntime, longNamesFromTheClientAreCutInTheLog) {
  std::string oneCharacter = "x";
  for (int mark = 0; mark < 100'000; ++mark) {
    oneCharacter += "\u0301";
  }
  for (const std::string& name : {std::string(1 << 20, 'x'), oneCharacter}) {
    LogBuffer::shared().clear();
    call(name);
    EXPECT_LT(LogBuffer::shared().snapshot()[0].message.size(), 3000u);
  }
}

TEST_F(ToolRuntime, namesFromTheClientHaveTheirAddressesMaskedInTheLogAlone) {
  const std::string name = "mail to " + std::string(290, 'x') + "john.doe@example.org";
  EXPECT_EQ(errorOf(call(name)), "Unknown tool: " + name);
  EXPECT_EQ(LogBuffer::shared().snapshot()[0].message, "tool call: mail to xx***@example.org");
}

TEST_F(ToolRuntime, serversWordsLoseThePasswordEverywhereAndAddressesInTheLog) {
  FakeIMAPServer& server =
      serve(loginDialogue() + Dialogue{expect("A0004 LIST \"\" \"*\"\r\n"),
                                       answer("A0004 NO for you@example.org app-pass-word\r\n"),
                                       expect("A0005 LOGOUT\r\n"), answer("A0005 OK\r\n")});
  EXPECT_EQ(errorOf(call("list_folders")), "IMAP LIST failed: for you@example.org ***");
  EXPECT_EQ(LogBuffer::shared().snapshot().back().message,
            "tool list_folders failed: IMAP LIST failed: for yo***@example.org ***");
  EXPECT_EQ(server.mismatch(), "");
}

TEST_F(ToolRuntime, unconfiguredAccountsAndMissingPasswordsOpenNoConnection) {
  const char* expected = "No iCloud account is configured. Open the app and save your email + app password.";
  FakeIMAPServer& server = serve({});
  items.password = std::nullopt;
  EXPECT_EQ(errorOf(call("list_folders")), expected);
  items.password = "";
  EXPECT_EQ(errorOf(call("list_folders")), expected);
  config.email = "";
  EXPECT_EQ(errorOf(call("list_folders")), expected);
  EXPECT_EQ(server.acceptCount(), 0);
}

TEST_F(ToolRuntime, secretStoreThatRefusesIsToldAndLogged) {
  items.status = SecretStatus::interactionNotAllowed;
  EXPECT_EQ(errorOf(call("list_folders")), "Keychain error -25308: told by the store");
  EXPECT_EQ(LogBuffer::shared().snapshot().back().message,
            "tool list_folders keychain error Keychain error -25308: told by the store");
}

TEST_F(ToolRuntime, portOutOfRangeIsToldBeforeAConnectionIsMade) {
  config.imapPort = 70000;
  EXPECT_EQ(errorOf(call("search_inbox")), "Invalid argument: IMAP port 70000 is out of range");
  config.imapPort = -1;
  EXPECT_EQ(errorOf(call("search_inbox")), "Invalid argument: IMAP port -1 is out of range");
}

TEST_F(ToolRuntime, unforeseenFailureIsAnInternalErrorWithoutItsText) {
  store().save(config);
  const MCPTools failing(store(), KeychainStore("service", "group", items), EmailRiskDetector::shared(),
                         [](auto...) -> std::unique_ptr<IMAPClient> { throw std::runtime_error("no room"); });
  const ToolCallResult result = failing.handle("list_folders", JSONObject{});
  EXPECT_EQ(errorOf(result), "Internal error while running list_folders.");
  EXPECT_EQ(LogBuffer::shared().snapshot().back().message, "tool list_folders error: no room");
  EXPECT_EQ(LogBuffer::shared().snapshot().back().level, LogLevel::error);
}

TEST_F(ToolRuntime, refusedLoginEndsTheSessionAndIsLogged) {
  FakeIMAPServer& server =
      serve({answer("* OK\r\n"), expect("A0001 LOGIN \"user@example.org\" \"app-pass-word\"\r\n"),
             answer("A0001 NO [AUTHENTICATIONFAILED] no\r\n"), expect("A0002 LOGOUT\r\n"),
             answer("A0002 OK\r\n"), closeHere()});
  const std::string text = "Authentication failed. Check the email address and Apple app-specific password.";
  EXPECT_EQ(errorOf(call("list_folders")), text);
  EXPECT_EQ(server.mismatch(), "");
  EXPECT_EQ(LogBuffer::shared().snapshot().back().message, "tool list_folders failed: " + text);
  EXPECT_EQ(LogBuffer::shared().snapshot().back().level, LogLevel::error);
}

TEST_F(ToolRuntime, sessionEndsAlsoWhenTheToolFails) {
  FakeIMAPServer& server =
      serve(loginDialogue() + Dialogue{expect("A0004 LIST \"\" \"*\"\r\n"), answer("A0004 NO not now\r\n"),
                                       expect("A0005 LOGOUT\r\n"), answer("A0005 OK\r\n"), closeHere()});
  EXPECT_EQ(errorOf(call("list_folders")), "IMAP LIST failed: not now");
  EXPECT_EQ(server.mismatch(), "");
}

TEST_F(ToolRuntime, passwordAppearsInNoLogEntryAndNoResult) {
  serve({answer("* OK\r\n"), expect("A0001 LOGIN \"user@example.org\" \"app-pass-word\"\r\n"),
         answer("A0001 BAD you sent app-pass-word\r\n"), closeHere()});
  const ToolCallResult result = call("list_folders");
  EXPECT_THAT(result.structured.serialized(), testing::Not(HasSubstr(testPassword)));
  for (const LogEntry& entry : LogBuffer::shared().snapshot()) {
    EXPECT_THAT(entry.message, testing::Not(HasSubstr(testPassword)));
    EXPECT_THAT(entry.message, testing::Not(HasSubstr(testEmail)));
  }
}

// --- list_folders ----------------------------------------------------------------------------------------

class FoldersTool : public ToolTest {
 protected:
  FakeIMAPServer& serveFolders() {
    return serve(loginDialogue() + Dialogue{expect("A0004 LIST \"\" \"*\"\r\n"),
                                            answer("* LIST (\\HasNoChildren) \"/\" INBOX\r\n"
                                                   "* LIST (\\Trash) \"/\" \"Deleted \\\"old\\\" mail\"\r\n"
                                                   "* LIST (\\Noselect) \"/\" Lists/&ZeVnLIqe-\r\n"
                                                   "* LIST () \"/\" Lists/&ZeVnLIqe\r\nA0004 OK\r\n"),
                                            expect("A0005 LOGOUT\r\n"), answer("* BYE\r\nA0005 OK\r\n"),
                                            closeHere()});
  }
};

TEST_F(FoldersTool, listsFoldersInTheServersOrder) {
  FakeIMAPServer& server = serveFolders();
  const ToolCallResult result = call("list_folders");
  EXPECT_EQ(server.mismatch(), "");
  EXPECT_EQ(result.structured, *JSONValue::decode(R"({"count": 4, "folders": [
    {"name": "INBOX", "path": "INBOX", "delimiter": "/", "selectable": true, "specialUse": null},
    {"name": "Deleted \"old\" mail", "path": "Deleted \"old\" mail", "delimiter": "/", "selectable": true,
     "specialUse": "\\Trash"},
    {"name": "日本語", "path": "Lists/&ZeVnLIqe-", "delimiter": "/", "selectable": false,
     "specialUse": null},
    {"name": "&ZeVnLIqe", "path": "Lists/&ZeVnLIqe", "delimiter": "/", "selectable": true,
     "specialUse": null}]})"));
}

TEST_F(FoldersTool, leavesTheSpecialUseOutOnRequest) {
  const std::pair<JSONValue, bool> rows[] = {
      {JSONObject{{"includeSpecialUse", false}}, false},  {JSONObject{{"includeSpecialUse", 0}}, false},
      {JSONObject{{"includeSpecialUse", true}}, true},    {JSONObject{{"includeSpecialUse", "false"}}, true},
      {JSONObject{{"includeSpecialUse", nullptr}}, true}, {nullptr, true},
  };
  for (const auto& [arguments, included] : rows) {
    serveFolders();
    const JSONValue folders = call("list_folders", arguments).structured["folders"];
    for (const JSONValue& folder : *folders.arrayValue()) {
      EXPECT_EQ(folder.member("specialUse") != nullptr, included) << arguments.serialized();
    }
  }
}

}  // namespace
}  // namespace tarnwell::test
