#include "MCP/Tools/CleanupHeuristics.h"
#include "MCP/Tools/FakeMail.h"
#include "MCP/Tools/ToolFixture.h"
#include "support/Repeated.h"
#include "support/RowName.h"
#include "support/SessionScript.h"

namespace tarnwell::test {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;

enum class BodyIs { fetched, notFetched };

constexpr const char* withheld = "[withheld: sensitive]";

class CleanupTool : public ToolTest {
 protected:
  /// The item of a single mail, in a session with exactly these commands.
  JSONValue item(const FakeMail& mail, BodyIs bodyIs, const JSONValue& arguments = JSONObject{}) {
    SessionScript script;
    script.command("UID SEARCH ALL", "* SEARCH 9\r\n").command(mail.fetchSummary(), mail.summary());
    if (bodyIs == BodyIs::fetched) {
      script.command(mail.fetchBody(), mail.bodyPart());
    }
    FakeIMAPServer& server = serve(script.withLogout());
    const ToolCallResult result = call("propose_inbox_cleanup", arguments);
    EXPECT_EQ(server.mismatch(), "");
    const JSONArray* proposals = result.structured["items"].arrayValue();
    if (!proposals || proposals->size() != 1) {
      ADD_FAILURE() << result.structured.prettyString();
      return {};
    }
    return proposals->front();
  }

  /// The result for an inbox without mail.
  JSONValue emptyResult(const JSONValue& arguments) {
    FakeIMAPServer& server = serve(SessionScript().command("UID SEARCH ALL", "* SEARCH\r\n").withLogout());
    const ToolCallResult result = call("propose_inbox_cleanup", arguments);
    EXPECT_EQ(server.mismatch(), "");
    EXPECT_FALSE(result.isError);
    return result.structured;
  }
};

TEST_F(CleanupTool, proposesForEachMessageNewestFirst) {
  FakeMail invoice{.uid = 12, .subject = "Your invoice for May", .body = "Dear\r\ncustomer"};
  FakeMail code{.uid = 9, .subject = "Your verification code", .body = "4711"};
  FakeMail bare{.uid = 5, .subject = std::nullopt, .body = std::nullopt, .from = "NIL"};
  bare.structure = R"(("application" "pdf" NIL NIL NIL "base64" 9))";
  FakeIMAPServer& server =
      serve(SessionScript()
                .command("UID SEARCH ALL", "* SEARCH 5 12 9\r\n")
                .command("UID FETCH 12,9,5 (UID FLAGS INTERNALDATE ENVELOPE BODYSTRUCTURE)",
                         code.summary() + bare.summary() + invoice.summary())
                .command(invoice.fetchBody(), invoice.bodyPart())
                .withLogout());
  const ToolCallResult result = call("propose_inbox_cleanup");
  EXPECT_EQ(server.mismatch(), "");
  EXPECT_FALSE(result.isError);
  EXPECT_EQ(result.structured, *JSONValue::decode(R"({
    "count": 3,
    "categories": ["action_needed", "receipt", "newsletter", "notification", "personal", "work",
                   "archive_candidate", "unsure"],
    "note": "Heuristic hints only — the bridge does not classify with an LLM. Use these as input and decide categories/moves yourself.",
    "items": [
      {"uid": 12, "subject": "Your invoice for May", "from": "Al <al@example.org>",
       "date": "Mon, 3 Jun 2024 10:00:00 +0000", "snippet": "Dear customer", "suggestedCategory": "receipt",
       "suggestedFolder": "Receipts", "confidence": 0.5,
       "reason": "Subject looks transactional (receipt/invoice/order)."},
      {"uid": 9, "subject": "Your verification code", "from": "Al <al@example.org>",
       "date": "Mon, 3 Jun 2024 10:00:00 +0000", "snippet": "[withheld: sensitive]",
       "suggestedCategory": "unsure", "suggestedFolder": null, "confidence": 0.2,
       "reason": "No strong heuristic signal; let the client AI decide."},
      {"uid": 5, "subject": null, "from": null, "date": "Mon, 3 Jun 2024 10:00:00 +0000", "snippet": null,
       "suggestedCategory": "unsure", "suggestedFolder": null, "confidence": 0.2,
       "reason": "No strong heuristic signal; let the client AI decide."}]})"));
}

TEST_F(CleanupTool, messagesThatVanishedBetweenSearchAndFetchAreLeftOut) {
  FakeIMAPServer& server = serve(SessionScript()
                                     .command("UID SEARCH ALL", "* SEARCH 9\r\n")
                                     .command("UID FETCH 9 (UID FLAGS INTERNALDATE ENVELOPE BODYSTRUCTURE)")
                                     .withLogout());
  const JSONValue result = call("propose_inbox_cleanup").structured;
  EXPECT_EQ(server.mismatch(), "");
  EXPECT_EQ(result["count"], JSONValue(0));
  EXPECT_EQ(result["items"], JSONValue(JSONArray{}));
}

TEST_F(CleanupTool, withheldMailStillReceivesAHint) {
  const JSONValue proposal =
      item({.subject = "Urgent: your verification code", .body = "4711"}, BodyIs::notFetched);
  EXPECT_EQ(proposal["snippet"], JSONValue(withheld));
  EXPECT_EQ(proposal["suggestedCategory"], JSONValue("action_needed"));
  EXPECT_EQ(proposal["confidence"], JSONValue(0.45));
}

TEST_F(CleanupTool, onlyTheFirstSenderIsLookedAt) {
  FakeMail mail;
  mail.from = R"(((NIL NIL "al" "example.org")("Bot" NIL "noreply" "example.org")))";
  const JSONValue proposal = item(mail, BodyIs::fetched);
  EXPECT_EQ(proposal["from"], JSONValue("al@example.org"));
  EXPECT_EQ(proposal["suggestedCategory"], JSONValue("unsure"));
}

TEST_F(CleanupTool, serversFailureIsToldAndTheSessionEnds) {
  FakeIMAPServer& server = serve(SessionScript().command("UID SEARCH ALL", "", "NO busy").withLogout());
  EXPECT_EQ(errorOf(call("propose_inbox_cleanup")), "IMAP UID failed: busy");
  EXPECT_EQ(server.mismatch(), "");
}

// --- Previews --------------------------------------------------------------------------------------------

struct PreviewRow {
  const char* name;
  FakeMail mail;
  BodyIs bodyIs;
  JSONValue snippet;
};

class Preview : public CleanupTool, public ::testing::WithParamInterface<PreviewRow> {};

TEST_P(Preview, isAsExpected) {
  const PreviewRow& row = GetParam();
  const JSONValue proposal = item(row.mail, row.bodyIs);
  EXPECT_EQ(proposal["snippet"], row.snippet);
  if (row.snippet == JSONValue(withheld)) {
    EXPECT_THAT(proposal.serialized(), Not(HasSubstr("4711")));
  }
}

FakeMail withBody(std::optional<std::string> body) { return {.body = std::move(body)}; }

FakeMail withoutTextPart() {
  FakeMail mail;
  mail.structure = R"(("application" "pdf" NIL NIL NIL "base64" 9))";
  return mail;
}

FakeMail html(const std::string& body) {
  FakeMail mail{.body = body};
  mail.structure = R"(("text" "html" ("charset" "utf-8") NIL NIL "8bit" 1 1))";
  return mail;
}

FakeMail fromSecurityTeam() {
  FakeMail mail{.body = "4711"};
  mail.from = R"((("Security Alert" NIL "al" "example.org")))";
  return mail;
}

INSTANTIATE_TEST_SUITE_P(
    Table, Preview,
    ::testing::Values(
        PreviewRow{"short", withBody("Hello,\r\n  you"), BodyIs::fetched, "Hello, you"},
        PreviewRow{"exactlyTwoHundred", withBody(repeated("x", 200)), BodyIs::fetched, repeated("x", 200)},
        PreviewRow{"oneMore", withBody(repeated("x", 201)), BodyIs::fetched, repeated("x", 200) + "…"},
        PreviewRow{"twoHundredEmoji", withBody(repeated("👨‍👩‍👧", 201)), BodyIs::fetched,
                   repeated("👨‍👩‍👧", 200) + "…"},
        PreviewRow{"html", html("<p>Tea &amp; cake</p>"), BodyIs::fetched, "Tea & cake"},
        PreviewRow{"noTextPart", withoutTextPart(), BodyIs::notFetched, nullptr},
        PreviewRow{"noBody", withBody(std::nullopt), BodyIs::fetched, nullptr},
        PreviewRow{"emptyBody", withBody(""), BodyIs::fetched, nullptr},
        PreviewRow{"onlyBlanks", withBody(" \r\n\t\r\n"), BodyIs::fetched, nullptr},
        PreviewRow{"htmlWithoutText", html("<img src=\"x\"><br>"), BodyIs::fetched, nullptr},
        PreviewRow{
            "withheldBySubject", {.subject = "Your OTP: 4712", .body = "4711"}, BodyIs::notFetched, withheld},
        PreviewRow{"withheldBySender", fromSecurityTeam(), BodyIs::notFetched, withheld},
        PreviewRow{"withheldByBody", withBody("4711 is your security code"), BodyIs::fetched, withheld},
        PreviewRow{"splitByALineBreak", withBody("4711 is your security\r\ncode"), BodyIs::fetched, withheld},
        PreviewRow{"afterAPageOfBlanks", withBody("4711" + repeated(" ", 5000) + "security code"),
                   BodyIs::fetched, withheld},
        PreviewRow{"cutInTwo", withBody("4711 " + repeated("x", 187) + " security code"), BodyIs::fetched,
                   withheld},
        PreviewRow{"cutInTwoAfterBlanks",
                   withBody(repeated("\n", 2000) + "4711 " + repeated("x", 187) + " security code"),
                   BodyIs::fetched, withheld},
        PreviewRow{"cutInTwoWithBlanksAtTheCut",
                   withBody("4711 " + repeated("x", 187) + " security" + repeated(" ", 5000) + "code"),
                   BodyIs::fetched, withheld},
        PreviewRow{"circledDigitBeforeAWord", withBody("①OTP 4711"), BodyIs::fetched, withheld},
        PreviewRow{"afterThePreview", withBody("4712 " + repeated("x", 700) + " security code"),
                   BodyIs::fetched, "4712 " + repeated("x", 195) + "…"},
        PreviewRow{"beginsAfterThePreview", withBody(repeated("x", 200) + "security code"), BodyIs::fetched,
                   repeated("x", 200) + "…"},
        PreviewRow{"beginsWithTheLastCharacter", withBody("4711" + repeated("x", 195) + "security code"),
                   BodyIs::fetched, withheld},
        PreviewRow{"inlineTagsInTheKeyword", html("4711 is your <b>s</b>ecurity co<i>de</i>"),
                   BodyIs::fetched, withheld},
        PreviewRow{"farAfterThePreview", withBody("x " + repeated("x", 2000) + " security code"),
                   BodyIs::fetched, "x " + repeated("x", 198) + "…"}),
    rowName);

TEST_F(CleanupTool, nothingIsWithheldWhenBlockingIsOff) {
  config.safety.blockAuthCodeBodies = false;
  EXPECT_EQ(item({.subject = "Your verification code", .body = "OTP 4711"}, BodyIs::fetched)["snippet"],
            JSONValue("OTP 4711"));
}

// --- Arguments -------------------------------------------------------------------------------------------

TEST_F(CleanupTool, categoriesAreTheTextsOfTheArray) {
  const JSONValue standard = JSONValue::strings(CleanupHeuristics::defaultCategories());
  const std::pair<const char*, JSONValue> rows[] = {
      {"{}", standard},
      {"null", standard},
      {R"({"categories": null})", standard},
      {R"({"categories": "receipt"})", standard},
      {R"({"categories": {"receipt": true}})", standard},
      {R"({"categories": 1})", standard},
      {R"({"categories": []})", JSONArray{}},
      {R"({"categories": [1, true, null, ["receipt"]]})", JSONArray{}},
      {R"({"categories": ["work", 1, "receipt", null, "work", ""]})",
       JSONArray{"work", "receipt", "work", ""}},
  };
  for (const auto& [arguments, categories] : rows) {
    EXPECT_EQ(emptyResult(*JSONValue::decode(arguments)),
              JSONValue(JSONObject{
                  {"count", 0},
                  {"categories", categories},
                  {"note",
                   "Heuristic hints only \u2014 the bridge does not classify with an LLM. Use these as input "
                   "and decide categories/moves yourself."},
                  {"items", JSONArray{}}}))
        << arguments;
  }
}

TEST_F(CleanupTool, unwantedCategoryBecomesUnsure) {
  for (const JSONValue& categories : {JSONValue(JSONArray{}), JSONValue(JSONArray{"newsletter", 5})}) {
    const JSONValue proposal =
        item({.subject = "Your invoice"}, BodyIs::fetched, JSONObject{{"categories", categories}});
    EXPECT_EQ(proposal["suggestedCategory"], JSONValue("unsure"));
    EXPECT_TRUE(proposal["suggestedFolder"].isNull());
    EXPECT_EQ(proposal["confidence"], JSONValue(0.2));
    EXPECT_EQ(proposal["reason"], JSONValue("Heuristic suggested \u2018receipt\u2019 but it isn't in the "
                                            "requested category list."));
  }
}

TEST_F(CleanupTool, limitIsClamped) {
  const struct {
    const char* arguments;
    std::int64_t maxFetch;
    std::int64_t maxMessagesPerCall;
    std::size_t count;
  } rows[] = {
      {"{}", 50, 20, 20},
      {R"({"limit": 500})", 50, 20, 20},
      {R"({"limit": 3})", 50, 20, 3},
      {R"({"limit": 0})", 50, 20, 1},
      {R"({"limit": -9})", 50, 20, 1},
      {R"({"limit": "2"})", 50, 20, 2},
      {R"({"limit": [2]})", 50, 20, 20},
      {R"({"limit": 500})", 200, 150, 100},
      {R"({"limit": 500})", 7, 150, 7},
      {"{}", 200, 150, 20},
      {"{}", 0, 20, 1},
  };
  std::string found = "* SEARCH";
  for (int uid = 1; uid <= 120; ++uid) {
    found += " " + std::to_string(uid);
  }
  for (const auto& row : rows) {
    SCOPED_TRACE(std::string(row.arguments) + " with " + std::to_string(row.maxFetch));
    config.safety.maxFetch = row.maxFetch;
    config.safety.maxMessagesPerCall = row.maxMessagesPerCall;
    std::string uids;
    std::string summaries;
    for (std::size_t number = 0; number < row.count; ++number) {
      const std::string uid = std::to_string(120 - number);
      uids += (uids.empty() ? "" : ",") + uid;
      summaries += "* 1 FETCH (UID " + uid + ")\r\n";
    }
    FakeIMAPServer& server = serve(
        SessionScript()
            .command("UID SEARCH ALL", found + "\r\n")
            .command("UID FETCH " + uids + " (UID FLAGS INTERNALDATE ENVELOPE BODYSTRUCTURE)", summaries)
            .withLogout());
    const JSONValue result = call("propose_inbox_cleanup", *JSONValue::decode(row.arguments)).structured;
    EXPECT_EQ(server.mismatch(), "");
    EXPECT_EQ(result["count"], JSONValue(static_cast<std::int64_t>(row.count)));
    EXPECT_EQ(result["items"].arrayValue()->size(), row.count);
  }
}

}  // namespace
}  // namespace tarnwell::test
