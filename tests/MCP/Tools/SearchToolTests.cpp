#include "MCP/Tools/ToolArguments.h"
#include "MCP/Tools/ToolFixture.h"
#include "support/Repeated.h"
#include "support/RowName.h"

namespace tarnwell::test {
namespace {

using testing::HasSubstr;
using testing::Not;

constexpr const char* withheld = "[withheld: sensitive]";

/// One message of a fake mailbox.
struct Mail {
  std::string subject;
  std::string body;
};

std::string literal(const std::string& bytes) { return "{" + std::to_string(bytes.size()) + "}\r\n" + bytes; }

class SearchTool : public ToolTest {
 protected:
  /// Serves a search that finds one mail. Expects the fetch of its body only with `bodyIsFetched`.
  FakeIMAPServer& serveHit(const Mail& mail, bool bodyIsFetched = true) {
    Dialogue dialogue =
        loginDialogue() +
        Dialogue{
            expect("A0004 UID SEARCH ALL\r\n"),
            answer("* SEARCH 9\r\nA0004 OK\r\n"),
            expect("A0005 UID FETCH 9 (UID FLAGS INTERNALDATE ENVELOPE BODYSTRUCTURE)\r\n"),
            answer("* 1 FETCH (UID 9 FLAGS (\\Flagged) ENVELOPE (\"Mon, 3 Jun 2024 10:00:00 +0000\" " +
                   literal(mail.subject) +
                   " ((\"Al\" NIL \"al\" \"example.org\")) NIL NIL NIL NIL NIL NIL \"<9@example.org>\")"
                   " BODYSTRUCTURE (\"text\" \"plain\" (\"charset\" \"utf-8\") NIL NIL \"8bit\" 1 1))\r\n"
                   "A0005 OK\r\n"),
        };
    if (bodyIsFetched) {
      dialogue.push_back(expect("A0006 UID FETCH 9 (BODY.PEEK[1])\r\n"));
      dialogue.push_back(answer("* 1 FETCH (UID 9 BODY[1] " + literal(mail.body) + ")\r\nA0006 OK\r\n"));
    }
    dialogue.push_back(expect(std::string(bodyIsFetched ? "A0007" : "A0006") + " LOGOUT\r\n"));
    dialogue.push_back(closeHere());
    return serve(dialogue);
  }

  JSONValue hit(const Mail& mail, bool bodyIsFetched = true) {
    FakeIMAPServer& server = serveHit(mail, bodyIsFetched);
    const ToolCallResult result = call("search_inbox");
    EXPECT_EQ(server.mismatch(), "");
    const JSONArray* messages = result.structured["messages"].arrayValue();
    if (!messages || messages->size() != 1) {
      ADD_FAILURE() << result.structured.prettyString();
      return {};
    }
    return messages->front();
  }
};

TEST_F(SearchTool, hitCarriesItsHeaderAndASnippet) {
  EXPECT_EQ(hit({"Tea at four", "Hello,\r\n\r\n  see you.\r\n"}), *JSONValue::decode(R"({
    "uid": 9, "messageId": "<9@example.org>", "subject": "Tea at four", "from": "Al <al@example.org>",
    "date": "Mon, 3 Jun 2024 10:00:00 +0000", "flags": ["\\Flagged"], "unread": true, "hasAttachments": false,
    "snippet": "Hello, see you.", "detectedRiskSignals": []})"));
}

TEST_F(SearchTool, snippetIsCutAtTwoHundredCharacters) {
  const JSONValue message = hit({"Long", std::string(300, 'x')});
  EXPECT_EQ(message["snippet"], JSONValue(std::string(200, 'x') + "…"));
}

TEST_F(SearchTool, sensitiveSubjectIsWithheldWithoutFetchingTheBody) {
  const JSONValue message = hit({"Your verification code", "4711"}, false);
  EXPECT_EQ(message["snippet"], JSONValue(withheld));
  EXPECT_EQ(message["detectedRiskSignals"], *JSONValue::decode(R"([
    {"category": "verification_code", "term": "verification code", "location": "subject"}])"));
}

TEST_F(SearchTool, sensitiveMailIsShownWithItsSignalsWhenBlockingIsOff) {
  config.safety.blockAuthCodeBodies = false;
  const JSONValue message = hit({"Your verification code", "It is 4711"});
  EXPECT_EQ(message["snippet"], JSONValue("It is 4711"));
  EXPECT_EQ(message["detectedRiskSignals"].arrayValue()->size(), 1u);
}

struct ScanRow {
  const char* name;
  std::string body;
  bool isWithheld;
};

class ScannedSearch : public SearchTool, public testing::WithParamInterface<ScanRow> {};

TEST_P(ScannedSearch, whatLeavesWasScanned) {
  const ScanRow& row = GetParam();
  const JSONValue message = hit({"Hello", row.body});
  EXPECT_EQ(message["snippet"] == JSONValue(withheld), row.isWithheld) << message.prettyString();
  EXPECT_EQ(message["detectedRiskSignals"].arrayValue()->empty(), !row.isWithheld);
  if (row.isWithheld) {
    EXPECT_EQ((*message["detectedRiskSignals"].arrayValue())[0]["location"], JSONValue("body"));
    EXPECT_THAT(message.serialized(), Not(HasSubstr("4711")));
  }
}

INSTANTIATE_TEST_SUITE_P(
    Table, ScannedSearch,
    testing::Values(
        ScanRow{"harmless", "4711 is the number of a perfume", false},
        ScanRow{"keywordInPlainSight", "4711 is your security code", true},
        ScanRow{"keywordSplitByALineBreak", "4711 is your security\r\ncode", true},
        ScanRow{"keywordSplitByManyBlanks", "4711 is your security \t\n  code", true},
        ScanRow{"keywordSplitByANoBreakSpace", "4711 is your security\u00a0code", true},
        ScanRow{"keywordSplitByAnIdeographicSpace", "4711 is your security\u3000code", true},
        ScanRow{"keywordAfterAPageOfBlanks", std::string(5000, ' ') + "4711 is your security code", true},
        ScanRow{"keywordAfterTheCutOfTheSnippet", "4711 " + std::string(300, 'x') + " security code", true},
        ScanRow{"keywordUnderTheCutAfterBlanks",
                std::string(2000, '\n') + "4711 " + std::string(187, 'x') + " security code", true},
        ScanRow{"keywordFarAfterTheCutOfANewsletter",
                "4712 " + repeated("tea, cake,     ", 80) + "security code", false},
        ScanRow{"keywordFarAfterEverythingThatIsScanned", "4712 " + std::string(2000, 'x') + " security code",
                false}),
    rowName);

TEST_F(SearchTool, noMoreMessagesThanTheLimitAreFetchedWhateverIsFound) {
  std::string found = "* SEARCH";
  std::string newest;
  std::string responses;
  for (int uid = 1; uid <= 25; ++uid) {
    found += " " + std::to_string(uid);
  }
  for (int uid = 25; uid > 5; --uid) {
    newest += (newest.empty() ? "" : ",") + std::to_string(uid);
    responses += "* 1 FETCH (UID " + std::to_string(uid) + ")\r\n";
  }
  FakeIMAPServer& server = serve(
      loginDialogue() +
      Dialogue{expect("A0004 UID SEARCH ALL\r\n"), answer(found + "\r\nA0004 OK\r\n"),
               expect("A0005 UID FETCH " + newest + " (UID FLAGS INTERNALDATE ENVELOPE BODYSTRUCTURE)\r\n"),
               answer(responses + "A0005 OK\r\n"), expect("A0006 LOGOUT\r\n"), closeHere()});
  const JSONValue result = call("search_inbox", JSONObject{{"limit", 500}}).structured;
  EXPECT_EQ(server.mismatch(), "");
  EXPECT_EQ(result["count"], JSONValue(20));
  EXPECT_EQ(result["limit"], JSONValue(20));
  ASSERT_EQ(result["messages"].arrayValue()->size(), 20u);
  EXPECT_EQ(result["messages"].arrayValue()->front()["uid"], JSONValue(25));
}

TEST_F(SearchTool, nothingThatWasSoughtOrFoundEntersTheLog) {
  hit({"Quarterly figures", "The acquisition is on Friday"});
  serve(loginDialogue() + Dialogue{expect("A0004 UID SEARCH SUBJECT {7}\r\n"), answer("+\r\n"),
                                   expect("divorce\r\n"), answer("A0004 NO not today\r\n"), closeHere()});
  call("search_inbox", JSONObject{{"subject", "divorce"}});
  const std::vector<LogEntry> entries = LogBuffer::shared().snapshot();
  EXPECT_EQ(entries.back().message, "tool search_inbox failed: IMAP UID failed: not today");
  for (const LogEntry& entry : entries) {
    for (const char* text :
         {"Quarterly", "acquisition", "divorce", "example.org>", testEmail, testPassword}) {
      EXPECT_THAT(entry.message, Not(HasSubstr(text)));
    }
  }
}

TEST_F(SearchTool, messageWithoutTextHasAnEmptySnippet) {
  FakeIMAPServer& server =
      serve(loginDialogue() +
            Dialogue{expect("A0004 UID SEARCH ALL\r\n"), answer("* SEARCH 9\r\nA0004 OK\r\n"),
                     expect("A0005 UID FETCH 9 (UID FLAGS INTERNALDATE ENVELOPE BODYSTRUCTURE)\r\n"),
                     answer("* 1 FETCH (UID 9)\r\nA0005 OK\r\n"), expect("A0006 LOGOUT\r\n"), closeHere()});
  const ToolCallResult result = call("search_inbox");
  EXPECT_EQ(server.mismatch(), "");
  EXPECT_EQ(result.structured["messages"], *JSONValue::decode(R"([{
    "uid": 9, "messageId": null, "subject": null, "from": null, "date": null, "flags": [], "unread": true,
    "hasAttachments": false, "snippet": "", "detectedRiskSignals": []}])"));
}

struct SearchArgumentsRow {
  const char* name;
  const char* arguments;
  Dialogue command;
  std::int64_t limit;
};

class SearchArguments : public ToolTest, public testing::WithParamInterface<SearchArgumentsRow> {};

TEST_P(SearchArguments, becomeTheCommand) {
  const SearchArgumentsRow& row = GetParam();
  FakeIMAPServer& server =
      serve(loginDialogue() + row.command +
            Dialogue{answer("* SEARCH\r\nA0004 OK\r\n"), expect("A0005 LOGOUT\r\n"), closeHere()});
  const ToolCallResult result = call("search_inbox", *JSONValue::decode(row.arguments));
  EXPECT_EQ(server.mismatch(), "");
  EXPECT_EQ(result.structured,
            JSONValue(JSONObject{{"count", 0}, {"limit", row.limit}, {"messages", JSONArray{}}}));
}

const Dialogue searchAll{expect("A0004 UID SEARCH ALL\r\n")};
const Dialogue searchSince{expect("A0004 UID SEARCH SINCE 31-Jan-2024\r\n")};

INSTANTIATE_TEST_SUITE_P(
    Table, SearchArguments,
    testing::Values(
        SearchArgumentsRow{"none", "{}", searchAll, 20}, SearchArgumentsRow{"noObject", "[1]", searchAll, 20},
        SearchArgumentsRow{"limitAboveTheCap", R"({"limit": 500})", searchAll, 20},
        SearchArgumentsRow{"limitZero", R"({"limit": 0})", searchAll, 1},
        SearchArgumentsRow{"limitNegative", R"({"limit": -3})", searchAll, 1},
        SearchArgumentsRow{"limitAsText", R"({"limit": "5"})", searchAll, 5},
        SearchArgumentsRow{"limitAsDouble", R"({"limit": 5.9})", searchAll, 5},
        SearchArgumentsRow{"limitOfAnotherType", R"({"limit": [5]})", searchAll, 20},
        SearchArgumentsRow{
            "unreadOnly", R"({"unreadOnly": true})", {expect("A0004 UID SEARCH UNSEEN\r\n")}, 20},
        SearchArgumentsRow{"unreadOnlyAsText", R"({"unreadOnly": "true"})", searchAll, 20},
        SearchArgumentsRow{"sinceADay", R"({"since": "2024-01-31"})", searchSince, 20},
        SearchArgumentsRow{"sinceADateTime", R"({"since": "2024-01-31T00:00:00Z"})", searchSince, 20},
        SearchArgumentsRow{"sinceAnotherZone", R"({"since": "2024-02-01T08:00:00+09:00"})", searchSince, 20},
        SearchArgumentsRow{"sinceInAnotherForm", R"({"since": "31/01/2024"})", searchAll, 20},
        SearchArgumentsRow{
            "before", R"({"before": "2024-02-29"})", {expect("A0004 UID SEARCH BEFORE 29-Feb-2024\r\n")}, 20},
        SearchArgumentsRow{"emptyTexts",
                           R"({"query": "", "from": "", "subject": "", "since": "", "before": ""})",
                           searchAll, 20},
        SearchArgumentsRow{"textsOfAnotherType", R"({"query": 5, "from": ["x"], "subject": null})", searchAll,
                           20},
        SearchArgumentsRow{
            "query",
            R"({"query": "領収書"})",
            {expect("A0004 UID SEARCH CHARSET UTF-8 TEXT {9}\r\n"), answer("+\r\n"), expect("領収書\r\n")},
            20}),
    rowName);

TEST(ToolArguments, uidIsAPositiveNumberOf32Bits) {
  const std::pair<JSONValue, std::optional<std::uint32_t>> rows[] = {
      {1, 1u},
      {4294967295LL, 4294967295u},
      {4294967296LL, std::nullopt},
      {0, std::nullopt},
      {-1, std::nullopt},
      {"17", 17u},
      {"x", std::nullopt},
      {17.9, 17u},
      {true, std::nullopt},
      {nullptr, std::nullopt},
  };
  for (const auto& [value, expected] : rows) {
    EXPECT_EQ(uidArg(JSONObject{{"uid", value}}), expected) << value.serialized();
  }
  EXPECT_EQ(uidArg(JSONObject{}), std::nullopt);
  EXPECT_EQ(uidArg(nullptr), std::nullopt);
}

}  // namespace
}  // namespace tarnwell::test
