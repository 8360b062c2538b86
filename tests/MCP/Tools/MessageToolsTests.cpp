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

const JSONValue onlyUID = JSONObject{{"uid", 9}};

class MessageTool : public ToolTest {
 protected:
  /// The result of a call about the mail, in a session with exactly these commands.
  JSONValue read(std::string_view tool, const FakeMail& mail, BodyIs bodyIs,
                 const JSONValue& arguments = onlyUID) {
    SessionScript script;
    script.command(mail.fetchSummary(), mail.summary());
    if (bodyIs == BodyIs::fetched) {
      script.command(mail.fetchBody(), mail.bodyPart());
    }
    FakeIMAPServer& server = serve(script.withLogout());
    const ToolCallResult result = call(tool, arguments);
    EXPECT_EQ(server.mismatch(), "");
    EXPECT_EQ(server.acceptCount(), 1);
    EXPECT_FALSE(result.isError);
    return result.structured;
  }

  JSONValue summary(const FakeMail& mail, BodyIs bodyIs, const JSONValue& arguments = onlyUID) {
    return read("get_message_summary", mail, bodyIs, arguments);
  }
  JSONValue body(const FakeMail& mail, BodyIs bodyIs, const JSONValue& arguments = onlyUID) {
    return read("get_message_body", mail, bodyIs, arguments);
  }
};

const char* const readingTools[] = {"get_message_summary", "get_message_body"};

// --- What both tools have in common ----------------------------------------------------------------------

TEST_F(MessageTool, invalidUIDsOpenNoConnection) {
  FakeIMAPServer& server = serve({});
  for (const char* tool : readingTools) {
    for (const char* arguments :
         {"{}", "null", "[9]", "9", R"({"uid": null})", R"({"uid": "x"})", R"({"uid": ""})", R"({"uid": -1})",
          R"({"uid": 4294967296})", R"({"uid": [9]})", R"({"uid": true})", R"({"UID": 9})"}) {
      EXPECT_EQ(errorOf(call(tool, *JSONValue::decode(arguments))), "Missing or invalid 'uid'.") << arguments;
    }
  }
  EXPECT_EQ(server.acceptCount(), 0);
}

TEST_F(MessageTool, unknownUIDIsAnErrorOfTheToolAndTheSessionEnds) {
  FakeMail mail;
  mail.uid = 4294967295;
  FakeMail another;
  for (const char* tool : readingTools) {
    for (const std::string& answer :
         {std::string(), another.summary(), std::string("* 1 FETCH (FLAGS ())\r\n")}) {
      FakeIMAPServer& server = serve(SessionScript().command(mail.fetchSummary(), answer).withLogout());
      EXPECT_EQ(errorOf(call(tool, JSONObject{{"uid", mail.uid}})),
                "No message with UID 4294967295 in INBOX.");
      EXPECT_EQ(server.mismatch(), "");
    }
  }
}

TEST_F(MessageTool, failuresOfTheServerAreToldAndTheSessionEnds) {
  const FakeMail mail;
  for (const char* tool : readingTools) {
    FakeIMAPServer* server = &serve(SessionScript().command(mail.fetchSummary(), "", "NO gone").withLogout());
    EXPECT_EQ(errorOf(call(tool, onlyUID)), "IMAP UID failed: gone");
    EXPECT_EQ(server->mismatch(), "");

    server = &serve(SessionScript()
                        .command(mail.fetchSummary(), mail.summary())
                        .command(mail.fetchBody(), "", "BAD what")
                        .withLogout());
    EXPECT_EQ(errorOf(call(tool, onlyUID)), "IMAP UID failed: what");
    EXPECT_EQ(server->mismatch(), "");
    EXPECT_EQ(LogBuffer::shared().snapshot().back().message,
              "tool " + std::string(tool) + " failed: IMAP UID failed: what");
  }
}

TEST_F(MessageTool, mailTextEntersNoLog) {
  FakeMail mail{.subject = "Private subject", .body = "Private body"};
  summary(mail, BodyIs::fetched);
  body(mail, BodyIs::fetched);
  for (const LogEntry& entry : LogBuffer::shared().snapshot()) {
    EXPECT_THAT(entry.message, Not(HasSubstr("Private")));
  }
}

// --- get_message_summary ---------------------------------------------------------------------------------

class SummaryTool : public MessageTool {};

TEST_F(SummaryTool, tellsTheWholeHeaderAndASnippet) {
  FakeMail mail;
  mail.body = "Hello,\r\n\r\n  see\tyou.\r\n";
  mail.from = R"((("Al" NIL "al" "example.org")(NIL NIL "bo" "example.org")))";
  mail.to = R"((("" NIL "cy" "example.org")))";
  mail.cc = R"((("Nobody" NIL "nobody" NIL)(NIL NIL NIL NIL)))";
  mail.flags = "\\Seen $Label";
  mail.structure =
      R"((("text" "plain" ("charset" "utf-8") NIL NIL "8bit" 1 1))"
      R"(("application" "pdf" ("name" "a.pdf") NIL NIL "base64" 9 NIL ("attachment" NIL)) "mixed"))";
  EXPECT_EQ(summary(mail, BodyIs::fetched), *JSONValue::decode(R"({
    "uid": 9, "subject": "Tea at four",
    "from": [{"name": "Al", "email": "al@example.org", "display": "Al <al@example.org>"},
             {"name": null, "email": "bo@example.org", "display": "bo@example.org"}],
    "to": [{"name": "", "email": "cy@example.org", "display": "cy@example.org"}],
    "cc": [{"name": "Nobody", "email": null, "display": "Nobody"},
           {"name": null, "email": null, "display": ""}],
    "date": "Mon, 3 Jun 2024 10:00:00 +0000", "flags": ["\\Seen", "$Label"], "hasAttachments": true,
    "detectedRiskSignals": [], "bodyWithheld": false, "bodySnippet": "Hello, see you."})"));
}

TEST_F(SummaryTool, messageOfWhichTheServerTellsNothingHasNullsAndEmptyLists) {
  const FakeMail mail;
  FakeIMAPServer& server =
      serve(SessionScript().command(mail.fetchSummary(), "* 1 FETCH (UID 9)\r\n").withLogout());
  const ToolCallResult result = call("get_message_summary", onlyUID);
  EXPECT_EQ(server.mismatch(), "");
  EXPECT_FALSE(result.isError);
  EXPECT_EQ(result.structured, *JSONValue::decode(R"({
    "uid": 9, "subject": null, "from": [], "to": [], "cc": [], "date": null, "flags": [],
    "hasAttachments": false, "detectedRiskSignals": [], "bodyWithheld": false, "bodySnippet": ""})"));
}

TEST_F(SummaryTool, bodyIsFetchedOnlyWhenASnippetIsWanted) {
  const FakeMail mail{.body = "4711 is your security code"};
  const std::pair<const char*, bool> rows[] = {
      {R"({"uid": 9, "includeBodySnippet": false})", false},
      {R"({"uid": 9, "includeBodySnippet": 0})", false},
      {R"({"uid": 9, "includeBodySnippet": true})", true},
      {R"({"uid": 9, "includeBodySnippet": 2})", true},
      {R"({"uid": 9, "includeBodySnippet": null})", true},
      {R"({"uid": 9, "includeBodySnippet": "no"})", true},
      {R"({"uid": 9, "includeBodySnippet": []})", true},
      {R"({"uid": "9"})", true},
  };
  for (const auto& [arguments, isFetched] : rows) {
    SCOPED_TRACE(arguments);
    const JSONValue result =
        summary(mail, isFetched ? BodyIs::fetched : BodyIs::notFetched, *JSONValue::decode(arguments));
    EXPECT_TRUE(result["bodySnippet"].isNull());
    EXPECT_EQ(result["bodyWithheld"], JSONValue(isFetched)) << "what was not read cannot be judged";
    EXPECT_EQ(result.member("withheldReason") != nullptr, isFetched);
    EXPECT_EQ(result["detectedRiskSignals"].arrayValue()->size(), isFetched ? 1u : 0u);
  }
}

TEST_F(SummaryTool, sensitiveHeaderWithholdsWithoutFetchingTheBody) {
  const FakeMail mail{.subject = "Your verification code", .body = "4711"};
  for (const JSONValue& isWanted : {JSONValue(true), JSONValue(false)}) {
    EXPECT_EQ(summary(mail, BodyIs::notFetched, JSONObject{{"uid", 9}, {"includeBodySnippet", isWanted}}),
              *JSONValue::decode(R"({
          "uid": 9, "subject": "Your verification code",
          "from": [{"name": "Al", "email": "al@example.org", "display": "Al <al@example.org>"}],
          "to": [], "cc": [], "date": "Mon, 3 Jun 2024 10:00:00 +0000", "flags": [], "hasAttachments": false,
          "detectedRiskSignals":
            [{"category": "verification_code", "term": "verification code", "location": "subject"}],
          "bodyWithheld": true, "bodySnippet": null,
          "withheldReason": "Sensitive security content (OTP/2FA/verification/reset). Snippet withheld."})"));
  }
}

TEST_F(SummaryTool, sensitiveBodyIsWithheldWithTheSignalsOfTheWholeMail) {
  const JSONValue result = summary({.body = "Your OTP is 4711"}, BodyIs::fetched);
  EXPECT_EQ(result["bodyWithheld"], JSONValue(true));
  EXPECT_TRUE(result["bodySnippet"].isNull());
  EXPECT_EQ(result["withheldReason"],
            JSONValue("Sensitive security content (OTP/2FA/verification/reset). Snippet withheld."));
  EXPECT_EQ(result["detectedRiskSignals"],
            *JSONValue::decode(R"([{"category": "otp", "term": "otp", "location": "body"}])"));
  EXPECT_THAT(result.serialized(), Not(HasSubstr("4711")));
}

TEST_F(SummaryTool, nothingIsWithheldWhenBlockingIsOff) {
  config.safety.blockAuthCodeBodies = false;
  const JSONValue result = summary({.subject = "Login code", .body = "Your OTP is 4711"}, BodyIs::fetched);
  EXPECT_EQ(result["bodyWithheld"], JSONValue(false));
  EXPECT_EQ(result["bodySnippet"], JSONValue("Your OTP is 4711"));
  EXPECT_EQ(result.member("withheldReason"), nullptr);
  EXPECT_EQ(result["detectedRiskSignals"], *JSONValue::decode(R"([
    {"category": "login_code", "term": "login code", "location": "subject"},
    {"category": "otp", "term": "otp", "location": "body"}])"));
}

TEST_F(SummaryTool, keywordInTheSendersDisplayNameIsEnough) {
  FakeMail mail;
  mail.from = R"((("Security Alert" NIL "no-reply" "example.org")))";
  const JSONValue result = summary(mail, BodyIs::notFetched);
  EXPECT_EQ(result["bodyWithheld"], JSONValue(true));
  EXPECT_EQ(result["detectedRiskSignals"], *JSONValue::decode(R"([
    {"category": "security_alert", "term": "security alert", "location": "from"}])"));
}

TEST_F(SummaryTool, snippetHasAtMostAThousandCharacters) {
  const std::string family = "\U0001F468\u200D\U0001F469\u200D\U0001F467";
  const std::pair<std::string, std::string> rows[] = {
      {repeated("x", 1000), repeated("x", 1000)},
      {repeated("x", 1001), repeated("x", 1000) + "…"},
      {repeated(family, 1000), repeated(family, 1000)},
      {repeated(family, 1001), repeated(family, 1000) + "…"},
      {repeated("e\u0301", 1001), repeated("e\u0301", 1000) + "…"},
      {"", ""},
      {" \r\n\t ", ""},
  };
  for (const auto& [text, snippet] : rows) {
    EXPECT_EQ(summary({.body = text}, BodyIs::fetched)["bodySnippet"], JSONValue(snippet));
  }
}

TEST_F(SummaryTool, hugeMaximumOfTheBodyDoesNotLengthenTheSnippet) {
  config.safety.maxBodyChars = 10000;
  EXPECT_EQ(summary({.body = repeated("x", 5000)}, BodyIs::fetched)["bodySnippet"],
            JSONValue(repeated("x", 1000) + "…"));
}

TEST_F(SummaryTool, attachmentsOnlyMessageHasAnEmptySnippet) {
  FakeMail mail;
  mail.structure = R"(("application" "pdf" ("name" "a.pdf") NIL NIL "base64" 9))";
  const JSONValue result = summary(mail, BodyIs::notFetched);
  EXPECT_EQ(result["bodySnippet"], JSONValue(""));
  EXPECT_EQ(result["bodyWithheld"], JSONValue(false));
  EXPECT_EQ(result["hasAttachments"], JSONValue(true));
}

// --- get_message_body ------------------------------------------------------------------------------------

class BodyTool : public MessageTool {
 protected:
  JSONValue bodyOf(const std::string& text, std::int64_t maxChars) {
    return body({.body = text}, BodyIs::fetched, JSONObject{{"uid", 9}, {"maxChars", maxChars}});
  }
};

TEST_F(BodyTool, givesTheWholeTextAsItStands) {
  EXPECT_EQ(body({.body = " Hello,\r\n\r\n  see\tyou.\r\n"}, BodyIs::fetched), *JSONValue::decode(R"({
    "uid": 9, "returned": true, "blocked": false, "truncated": false, "charCount": 20, "maxChars": 4000,
    "body": " Hello,\r\n\r\n  see\tyou.\r\n", "detectedRiskSignals": []})"));
}

struct CutRow {
  const char* name;
  std::string text;
  std::int64_t maxChars;
  std::string body;
  std::int64_t charCount;
  bool isTruncated;
};

class CutBody : public BodyTool, public ::testing::WithParamInterface<CutRow> {};

TEST_P(CutBody, hasAtMostTheWantedCharacters) {
  const CutRow& row = GetParam();
  EXPECT_EQ(bodyOf(row.text, row.maxChars), JSONValue(JSONObject{{"uid", 9},
                                                                 {"returned", true},
                                                                 {"blocked", false},
                                                                 {"truncated", row.isTruncated},
                                                                 {"charCount", row.charCount},
                                                                 {"maxChars", row.maxChars},
                                                                 {"body", row.body},
                                                                 {"detectedRiskSignals", JSONArray{}}}));
}

INSTANTIATE_TEST_SUITE_P(
    Table, CutBody,
    ::testing::Values(
        CutRow{"oneLess", "abcd", 5, "abcd", 4, false}, CutRow{"exactly", "abcde", 5, "abcde", 5, false},
        CutRow{"oneMore", "abcdef", 5, "abcde…", 6, true},
        CutRow{"many", repeated("x", 9000), 1, "x…", 9000, true},
        CutRow{"exactlyInEmoji", "👍🏽👨‍👩‍👧🇯🇵", 3,
               "👍🏽👨‍👩‍👧🇯🇵", 3, false},
        CutRow{"oneMoreInEmoji", "👍🏽👨‍👩‍👧🇯🇵!", 3,
               "👍🏽👨‍👩‍👧🇯🇵…", 4, true},
        CutRow{"exactlyInCombiningCharacters", "e\u0301a\u0308\u0323", 2, "e\u0301a\u0308\u0323", 2, false},
        CutRow{"oneMoreInCombiningCharacters", "e\u0301a\u0308\u0323o\u0302", 2, "e\u0301a\u0308\u0323…", 3,
               true},
        CutRow{"lineEndIsOneCharacter", "a\r\nb", 3, "a\r\nb", 3, false},
        CutRow{"lineEndIsNotCutInTwo", "a\r\nb", 2, "a\r\n…", 3, true},
        CutRow{"blanksBeforeTheCutStay", "a  b", 3, "a  …", 4, true},
        CutRow{"onlyBlanks", "  ", 2, "  ", 2, false},
        CutRow{"theWholeDefault", repeated("x", 4000), 4000, repeated("x", 4000), 4000, false},
        CutRow{"oneMoreThanTheDefault", repeated("x", 4001), 4000, repeated("x", 4000) + "…", 4001, true}),
    rowName);

TEST_F(BodyTool, effectiveMaximumIsClamped) {
  const struct {
    const char* wanted;
    std::int64_t setting;
    std::int64_t effective;
  } rows[] = {
      {"null", 4000, 4000},
      {"0", 4000, 1},
      {"-1", 4000, 1},
      {"-9223372036854775808", 4000, 1},
      {"50000", 4000, 4000},
      {"4001", 4000, 4000},
      {"\"12\"", 4000, 12},
      {"2.9", 4000, 2},
      {"\"x\"", 4000, 4000},
      {"[5]", 4000, 4000},
      {"true", 4000, 4000},
      {"1e300", 4000, 4000},
      {"null", 50000, 10000},
      {"50000", 50000, 10000},
      {"10001", 10000, 10000},
      {"20", 10, 10},
      {"5", 10, 5},
      {"9223372036854775807", 50000, 10000},
      {"3", 0, 1},
      {"3", -7, 1},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(std::string(row.wanted) + " with the setting " + std::to_string(row.setting));
    config.safety.maxBodyChars = row.setting;
    const JSONValue result =
        body({.body = repeated("x", 12000)}, BodyIs::fetched,
             *JSONValue::decode(R"({"uid": 9, "maxChars": )" + std::string(row.wanted) + "}"));
    EXPECT_EQ(result["maxChars"], JSONValue(row.effective));
    EXPECT_EQ(result["body"], JSONValue(repeated("x", static_cast<std::size_t>(row.effective)) + "…"));
    EXPECT_EQ(result["charCount"], JSONValue(12000));
  }
}

TEST_F(BodyTool, settingOfNoCharactersAtAllGivesNone) {
  for (const std::int64_t setting : {0, -1, -4000}) {
    config.safety.maxBodyChars = setting;
    EXPECT_EQ(body({.body = "Private"}, BodyIs::fetched),
              JSONValue(JSONObject{{"uid", 9},
                                   {"returned", true},
                                   {"blocked", false},
                                   {"truncated", true},
                                   {"charCount", 7},
                                   {"maxChars", setting},
                                   {"body", "…"},
                                   {"detectedRiskSignals", JSONArray{}}}));
  }
}

TEST_F(BodyTool, htmlIsGivenAsText) {
  FakeMail mail{.body = "<p>Tea &amp; <b>cake</b></p><script>x</script>"};
  mail.structure = R"(("text" "html" ("charset" "utf-8") NIL NIL "8bit" 1 1))";
  const JSONValue result = body(mail, BodyIs::fetched);
  EXPECT_THAT(result["body"].stringValue().value_or(""), HasSubstr("Tea & "));
  EXPECT_THAT(result.serialized(), Not(::testing::AnyOf(HasSubstr("<b>"), HasSubstr("script"))));
}

JSONValue noReadableText(JSONArray signals = {}) {
  return JSONObject{{"uid", 9},
                    {"returned", false},
                    {"blocked", false},
                    {"reason", "This message has no readable text body (it may be attachments-only)."},
                    {"detectedRiskSignals", std::move(signals)}};
}

TEST_F(BodyTool, attachmentsOnlyMessageHasNoReadableText) {
  FakeMail mail;
  mail.structure = R"(("application" "pdf" ("name" "a.pdf") NIL NIL "base64" 9))";
  EXPECT_EQ(body(mail, BodyIs::notFetched), noReadableText());
}

TEST_F(BodyTool, bodyThatDecodesToNothingIsNoReadableText) {
  EXPECT_EQ(body({.body = ""}, BodyIs::fetched), noReadableText());
  EXPECT_EQ(body({.body = std::nullopt}, BodyIs::fetched), noReadableText());
  FakeMail softBreak{.body = "=\r\n"};
  softBreak.structure = R"(("text" "plain" NIL NIL NIL "quoted-printable" 1 1))";
  EXPECT_EQ(body(softBreak, BodyIs::fetched), noReadableText());
}

TEST_F(BodyTool, missingTextOfASensitiveMailIsToldWithItsSignalsWhenBlockingIsOff) {
  config.safety.blockAuthCodeBodies = false;
  EXPECT_EQ(
      body({.subject = "2FA", .body = ""}, BodyIs::fetched),
      noReadableText({JSONObject{{"category", "two_factor"}, {"term", "2fa"}, {"location", "subject"}}}));
}

TEST_F(BodyTool, sensitiveHeaderBlocksWithoutFetchingTheBody) {
  EXPECT_EQ(body({.subject = "Password reset: your OTP", .body = "4711"}, BodyIs::notFetched),
            *JSONValue::decode(R"({
    "uid": 9, "returned": false, "blocked": true,
    "reason": "Body withheld: looks like a sensitive security message (password_reset, otp). OTP / verification-code / password-reset / security-alert content is never returned by this bridge.",
    "detectedRiskSignals": [{"category": "password_reset", "term": "password reset", "location": "subject"},
                            {"category": "otp", "term": "otp", "location": "subject"}]})"));
}

TEST_F(BodyTool, keywordInTheSendersDisplayNameIsEnough) {
  FakeMail mail;
  mail.from = R"((("Team 2FA" NIL "al" "example.org")))";
  const JSONValue result = body(mail, BodyIs::notFetched);
  EXPECT_EQ(result["blocked"], JSONValue(true));
  EXPECT_EQ(result["detectedRiskSignals"],
            *JSONValue::decode(R"([{"category": "two_factor", "term": "2fa", "location": "from"}])"));
}

TEST_F(BodyTool, sensitiveBodyIsBlocked) {
  EXPECT_EQ(body({.body = "認証コード: 4711"}, BodyIs::fetched), *JSONValue::decode(R"({
    "uid": 9, "returned": false, "blocked": true,
    "reason": "Body withheld: looks like a sensitive security message (verification_code). OTP / verification-code / password-reset / security-alert content is never returned by this bridge.",
    "detectedRiskSignals":
      [{"category": "verification_code", "term": "認証コード", "location": "body"}]})"));
}

TEST_F(BodyTool, sensitiveMailIsGivenInFullWithItsSignalsWhenBlockingIsOff) {
  config.safety.blockAuthCodeBodies = false;
  EXPECT_EQ(body({.subject = "Your verification code", .body = "It is 4711"}, BodyIs::fetched),
            *JSONValue::decode(R"({
    "uid": 9, "returned": true, "blocked": false, "truncated": false, "charCount": 10, "maxChars": 4000,
    "body": "It is 4711", "detectedRiskSignals":
      [{"category": "verification_code", "term": "verification code", "location": "subject"}]})"));
}

// --- What leaves was scanned -----------------------------------------------------------------------------

/// A body. `isSummaryWithheld` is for a summary of 1000 characters, `isBodyBlocked` for `maxChars` characters
/// of the body.
struct ScanRow {
  const char* name;
  std::string body;
  bool isSummaryWithheld;
  bool isBodyBlocked;
  std::int64_t maxChars = 4000;
};

class ScannedMessage : public MessageTool, public ::testing::WithParamInterface<ScanRow> {};

TEST_P(ScannedMessage, asASummary) {
  const JSONValue result = summary({.body = GetParam().body}, BodyIs::fetched);
  EXPECT_EQ(result["bodyWithheld"], JSONValue(GetParam().isSummaryWithheld));
  EXPECT_EQ(result["bodySnippet"].isNull(), GetParam().isSummaryWithheld);
  if (GetParam().isSummaryWithheld) {
    EXPECT_THAT(result.serialized(), Not(HasSubstr("4711")));
    EXPECT_FALSE(result["detectedRiskSignals"].arrayValue()->empty()) << "the reason is told";
  }
}

TEST_P(ScannedMessage, asABody) {
  const JSONValue result = body({.body = GetParam().body}, BodyIs::fetched,
                                JSONObject{{"uid", 9}, {"maxChars", GetParam().maxChars}});
  EXPECT_EQ(result["blocked"], JSONValue(GetParam().isBodyBlocked));
  EXPECT_EQ(result["returned"], JSONValue(!GetParam().isBodyBlocked));
  EXPECT_EQ(result.member("body") == nullptr, GetParam().isBodyBlocked);
  if (GetParam().isBodyBlocked) {
    EXPECT_THAT(result.serialized(), Not(HasSubstr("4711")));
    EXPECT_FALSE(result["detectedRiskSignals"].arrayValue()->empty()) << "the reason is told";
  }
}

/// The keyword after `before` characters.
std::string keywordAfter(std::size_t before, std::string_view filler = "x") {
  return "4711 " + repeated(filler, before - 6) + " security code";
}

INSTANTIATE_TEST_SUITE_P(
    Table, ScannedMessage,
    ::testing::Values(
        ScanRow{"harmless", "4711 is the number of a perfume", false, false},
        ScanRow{"inPlainSight", "4711 is your security code", true, true},
        ScanRow{"inOtherCase", "4711 is your SeCuRiTy CoDe", true, true},
        ScanRow{"splitByALineBreak", "4711 is your security\r\ncode", true, true},
        ScanRow{"splitByManyBlanks", "4711 is your security \t\n  code", true, true},
        ScanRow{"splitByANoBreakSpace", "4711 is your security\u00a0code", true, true},
        ScanRow{"splitByAnIdeographicSpace", "4711 is your security\u3000code", true, true},
        ScanRow{"afterAPageOfBlanks", "4711" + repeated(" ", 20000) + "security code", true, false},
        ScanRow{"afterAPageOfLineEnds", repeated("\r\n", 20000) + "4711 security\r\ncode", true, false},
        ScanRow{"afterPartOfAPageOfLineEnds", repeated("\r\n", 3900) + "4711 security\r\ncode", true, true},
        ScanRow{"lineEndsAfterASmallMaximum", "4712" + repeated("\r\n", 4400) + "security code", true, false,
                200},
        ScanRow{"wholeWordAcrossLines", "4711\r\nOTP\r\n", true, true},
        ScanRow{"partOfAWord", "4711 hotpot", false, false},
        ScanRow{"endsAtTheThousandthCharacter", keywordAfter(987), true, true},
        ScanRow{"cutInTwoByTheThousandthCharacter", keywordAfter(995), true, true},
        ScanRow{"beginsWithTheThousandthCharacter", keywordAfter(999), true, true},
        ScanRow{"beginsAfterTheThousandthCharacter", repeated("x", 1000) + "security code 123", false, true},
        ScanRow{"cutInTwoInEmoji", keywordAfter(995, "👨‍👩‍👧"), true, true},
        ScanRow{"farAfterTheSnippet", keywordAfter(1100), false, true},
        ScanRow{"endsAtTheLastCharacter", keywordAfter(3987), false, true},
        ScanRow{"cutInTwoByTheLastCharacter", keywordAfter(3995), false, true},
        ScanRow{"cutInTwoAndSplitByALineBreak", "4711 " + repeated("x", 3984) + " security\r\n  code", false,
                true},
        ScanRow{"beginsWithTheLastCharacter", keywordAfter(3999), false, true},
        ScanRow{"beginsAfterTheLastCharacter", keywordAfter(4000), false, false},
        ScanRow{"farAfterTheBody", keywordAfter(4100), false, false},
        ScanRow{"smallMaximumStillScansTheBeginning", keywordAfter(700), true, true, 1},
        ScanRow{"smallMaximumScansAtLeastEightHundred", keywordAfter(787), true, true, 10},
        ScanRow{"farAfterASmallMaximum", keywordAfter(2000), false, false, 10}),
    rowName);

TEST_F(MessageTool, bodyOfTheGreatestLengthIsScannedToItsEnd) {
  config.safety.maxBodyChars = 10000;
  EXPECT_EQ(body({.body = keywordAfter(9990)}, BodyIs::fetched)["blocked"], JSONValue(true));
  EXPECT_EQ(body({.body = keywordAfter(10100)}, BodyIs::fetched)["blocked"], JSONValue(false));
}

TEST_F(MessageTool, keywordThatTheCutSplitsAnywhereWithholds) {
  constexpr std::size_t length = std::string_view("security code").size();
  for (std::size_t inside = 0; inside <= length; ++inside) {
    EXPECT_EQ(summary({.body = keywordAfter(1000 - inside)}, BodyIs::fetched)["bodyWithheld"],
              JSONValue(inside > 0))
        << inside << " characters of it leave";
  }
}

TEST_F(MessageTool, readingInAnotherCharsetEndsWhereTheTextDoes) {
  FakeMail mail;
  mail.structure = R"(("text" "plain" ("charset" "iso-8859-1") NIL NIL "8bit" 1 1))";
  // Each of these characters has three bytes. Each byte is one character of the text that leaves.
  for (const std::size_t before : {300U, 332U, 333U, 334U, 400U}) {
    mail.body = repeated("文", before) + "認証コード";
    const bool leaves = 3 * before < 1000;
    EXPECT_EQ(summary(mail, BodyIs::fetched)["bodyWithheld"], JSONValue(leaves)) << before;
  }
}

TEST_F(MessageTool, readingWithoutTagsEndsWhereTheTextDoes) {
  FakeMail mail;
  mail.structure = R"(("text" "html" ("charset" "utf-8") NIL NIL "8bit" 1 1))";
  for (const std::size_t before : {300U, 498U, 499U, 500U, 501U, 900U}) {
    // In the text that leaves, each letter is one character and each tag is one blank.
    mail.body = repeated("x<i>", before) + "<b>s</b>ecurity code";
    const bool leaves = 2 * before < 1000;
    EXPECT_EQ(summary(mail, BodyIs::fetched)["bodyWithheld"], JSONValue(leaves)) << before;
  }
}

TEST_F(MessageTool, htmlIsScannedInTheFormInWhichItLeaves) {
  FakeMail mail{.body = "<p>4711 is your <b>security</b>&nbsp;<br>\r\n<i>code</i></p>"};
  mail.structure = R"(("text" "html" ("charset" "utf-8") NIL NIL "8bit" 1 1))";
  config.safety.blockAuthCodeBodies = false;
  const std::string asItLeaves = body(mail, BodyIs::fetched)["body"].stringValue().value_or("");
  ASSERT_THAT(asItLeaves, Not(HasSubstr("security code"))) << "the case would be too easy";
  config.safety.blockAuthCodeBodies = true;
  EXPECT_EQ(body(mail, BodyIs::fetched)["blocked"], JSONValue(true));
}

}  // namespace
}  // namespace tarnwell::test
