/// The setting `strictWithholding` in every tool that shows something of a mail.

#include <functional>

#include "MCP/Tools/FakeMail.h"
#include "MCP/Tools/ToolFixture.h"
#include "support/SessionScript.h"

namespace tarnwell::test {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;

const JSONValue onlyUID = JSONObject{{"uid", 9}};

/// None of these mails has a keyword.
const FakeMail codeInSubject{.subject = "493021 is your Acme passcode",
                             .body = "It is valid for ten minutes."};
const FakeMail codeInBody{.subject = "Your request", .body = "Enter the passcode 493021 to sign in to Acme."};
const FakeMail link{.subject = "One more step",
                    .body =
                        "Confirm your email address to activate your account:\r\n"
                        "https://app.example.org/confirm?token=9f8e7d6c5b4a"};
const FakeMail receipt{.subject = "Your order 493021", .body = "Thank you for your order. Total: 12.50 EUR."};

enum class BodyIs { fetched, notFetched };

class StrictWithholding : public ToolTest {
 protected:
  StrictWithholding() { config.strictWithholding = true; }

  JSONValue read(std::string_view tool, const FakeMail& mail, BodyIs bodyIs = BodyIs::fetched,
                 const JSONValue& arguments = onlyUID) {
    SessionScript script;
    return play(script.command(mail.fetchSummary(), mail.summary()), tool, mail, bodyIs, arguments);
  }

  /// The only message in the result of a tool that searches first.
  JSONValue found(std::string_view tool, const char* list, const FakeMail& mail, BodyIs bodyIs) {
    SessionScript script;
    script.command("UID SEARCH ALL", "* SEARCH 9\r\n").command(mail.fetchSummary(), mail.summary());
    const JSONValue result = play(script, tool, mail, bodyIs, JSONObject{});
    const JSONArray* messages = result[list].arrayValue();
    return messages && messages->size() == 1 ? messages->front() : JSONValue();
  }

 private:
  JSONValue play(SessionScript& script, std::string_view tool, const FakeMail& mail, BodyIs bodyIs,
                 const JSONValue& arguments) {
    if (bodyIs == BodyIs::fetched) {
      script.command(mail.fetchBody(), mail.bodyPart());
    }
    FakeIMAPServer& server = serve(script.withLogout());
    const JSONValue result = call(tool, arguments).structured;
    EXPECT_EQ(server.mismatch(), "");
    return result;
  }
};

TEST_F(StrictWithholding, isOffUnlessItIsSet) {
  config.strictWithholding = AppConfig().strictWithholding;
  const JSONValue summary = read("get_message_summary", codeInSubject);
  EXPECT_EQ(summary["subject"], JSONValue("493021 is your Acme passcode"));
  EXPECT_EQ(summary["bodySnippet"], JSONValue("It is valid for ten minutes."));
  EXPECT_TRUE(summary["detectedRiskSignals"].arrayValue()->empty());
  EXPECT_EQ(read("get_message_body", codeInBody)["returned"], JSONValue(true));
  EXPECT_EQ(read("get_message_body", link)["returned"], JSONValue(true));
}

TEST_F(StrictWithholding, codeInTheSubjectIsMaskedAndTheBodyNotFetched) {
  const JSONValue summary = read("get_message_summary", codeInSubject, BodyIs::notFetched);
  EXPECT_EQ(summary["subject"], JSONValue("•••••• is your Acme passcode"));
  EXPECT_EQ(summary["bodyWithheld"], JSONValue(true));
  const JSONValue& signal = summary["detectedRiskSignals"].arrayValue()->front();
  EXPECT_EQ(signal["category"], JSONValue("one_time_code"));
  EXPECT_EQ(signal["location"], JSONValue("subject"));

  const JSONValue body = read("get_message_body", codeInSubject, BodyIs::notFetched);
  EXPECT_EQ(body["blocked"], JSONValue(true));
  EXPECT_EQ(body["reason"],
            JSONValue("Body withheld: looks like a sensitive security message (one_time_code). OTP / "
                      "verification-code / password-reset / security-alert content is never returned by this "
                      "bridge."));
  for (const JSONValue& message :
       {found("search_inbox", "messages", codeInSubject, BodyIs::notFetched),
        found("propose_inbox_cleanup", "items", codeInSubject, BodyIs::notFetched)}) {
    EXPECT_EQ(message["subject"], JSONValue("•••••• is your Acme passcode"));
    EXPECT_EQ(message["snippet"], JSONValue("[withheld: sensitive]"));
  }
}

TEST_F(StrictWithholding, codeInTheBodyWithholdsIt) {
  for (const JSONValue& result :
       {read("get_message_summary", codeInBody), read("get_message_body", codeInBody),
        found("search_inbox", "messages", codeInBody, BodyIs::fetched),
        found("propose_inbox_cleanup", "items", codeInBody, BodyIs::fetched)}) {
    EXPECT_THAT(result.serialized(), Not(HasSubstr("493021")));
  }
  const JSONValue body = read("get_message_body", codeInBody);
  EXPECT_EQ(body["detectedRiskSignals"], *JSONValue::decode(R"([
      {"category": "one_time_code", "term": "passcode", "location": "body"}])"));
}

TEST_F(StrictWithholding, accountLinkWithholdsTheBody) {
  const JSONValue body = read("get_message_body", link);
  EXPECT_EQ(body["blocked"], JSONValue(true));
  EXPECT_EQ(body["detectedRiskSignals"].arrayValue()->front()["category"], JSONValue("account_link"));
}

TEST_F(StrictWithholding, otherReadingsAreJudgedToo) {
  FakeMail mail{.body = "Enter the pass<b>code</b> <i>493</i><i>021</i> to sign in to Acme."};
  mail.structure = R"(("text" "html" ("charset" "utf-8") NIL NIL "8bit" 1 1))";
  EXPECT_EQ(read("get_message_body", mail)["blocked"], JSONValue(true));
}

TEST_F(StrictWithholding, harmlessMailIsReturnedWithItsNumbers) {
  const JSONValue summary = read("get_message_summary", receipt);
  EXPECT_EQ(summary["subject"], JSONValue("Your order 493021"));
  EXPECT_EQ(summary["bodyWithheld"], JSONValue(false));
  EXPECT_EQ(found("search_inbox", "messages", receipt, BodyIs::fetched)["subject"],
            JSONValue("Your order 493021"));
}

TEST_F(StrictWithholding, codesAreMaskedInAMailThatAKeywordWithholds) {
  FakeMail mail{.subject = "G-493021: your verification code"};
  mail.from = R"((("Acme 493 021" NIL "al" "example.org")))";
  const JSONValue summary = read("get_message_summary", mail, BodyIs::notFetched);
  EXPECT_EQ(summary["subject"], JSONValue("••••••••: your verification code"));
  EXPECT_EQ((*summary["from"].arrayValue())[0]["name"], JSONValue("Acme •••••••"));
  EXPECT_EQ((*summary["from"].arrayValue())[0]["display"], JSONValue("Acme ••••••• <al@example.org>"));
}

TEST_F(StrictWithholding, codesAreMaskedWhereTheBodyWasNotLookedAt) {
  const FakeMail mail{.subject = "493021", .body = "Enter the passcode above to sign in to Acme."};
  const JSONValue arguments = JSONObject{{"uid", 9}, {"includeBodySnippet", false}};
  EXPECT_EQ(read("get_message_summary", mail, BodyIs::notFetched, arguments)["subject"], JSONValue("••••••"));
  config.safety.readOnly = false;
  serve(SessionScript("SELECT INBOX")
            .command(mail.fetchSummary(), mail.summary())
            .command("UID STORE 9 +FLAGS (\\Seen)")
            .withLogout());
  const JSONValue marked = call("mark_as_read", JSONObject{{"uid", 9}, {"dryRun", false}}).structured;
  EXPECT_THAT(marked.serialized(), HasSubstr("••••••"));
  EXPECT_THAT(marked.serialized(), Not(HasSubstr("493021")));
}

TEST_F(StrictWithholding, withholdsAndMasksNothingWhenBlockingIsOff) {
  config.safety.blockAuthCodeBodies = false;
  const JSONValue summary = read("get_message_summary", codeInSubject);
  EXPECT_EQ(summary["subject"], JSONValue("493021 is your Acme passcode"));
  EXPECT_EQ(summary["bodySnippet"], JSONValue("It is valid for ten minutes."));
  EXPECT_EQ(read("get_message_body", link)["returned"], JSONValue(true));
}

TEST_F(StrictWithholding, changesNoByteOfAResultWhileItIsFalse) {
  const std::function<std::string(const FakeMail&)> everything = [this](const FakeMail& mail) {
    return read("get_message_summary", mail).serialized() + read("get_message_body", mail).serialized() +
           found("search_inbox", "messages", mail, BodyIs::fetched).serialized() +
           found("propose_inbox_cleanup", "items", mail, BodyIs::fetched).serialized();
  };
  config.strictWithholding = false;
  for (const FakeMail& mail : {codeInSubject, codeInBody, link, receipt}) {
    const std::string results = everything(mail);
    EXPECT_THAT(results, HasSubstr(*mail.subject));
    EXPECT_THAT(results,
                Not(::testing::AnyOf(HasSubstr("•"), HasSubstr("withheld: "), HasSubstr("one_time"))));
  }
}

TEST_F(StrictWithholding, statusTellsTheNineSafetySettingsAlone) {
  save();
  EXPECT_THAT(call("get_status").structured.serialized(), Not(HasSubstr("strictWithholding")));
}

/// Each body is judged with the header of its own message, in whatever order the answers come.
TEST_F(StrictWithholding, answersInAnotherOrderChangeNoJudgement) {
  FakeMail harmless = receipt;
  harmless.uid = 8;
  FakeMail withLink = link;
  withLink.uid = 7;
  SessionScript script;
  script.command("UID SEARCH ALL", "* SEARCH 7 8 9\r\n")
      .command("UID FETCH 9,8,7 (UID FLAGS INTERNALDATE ENVELOPE BODYSTRUCTURE)",
               codeInBody.summary() + harmless.summary() + withLink.summary());
  FakeIMAPServer& server =
      serve(script.dialogue() +
            Dialogue{expect("A0006 " + codeInBody.fetchBody() + "\r\nA0007 " + harmless.fetchBody() +
                            "\r\nA0008 " + withLink.fetchBody() + "\r\n"),
                     answer(harmless.bodyPart() + withLink.bodyPart() + "A0008 OK\r\nA0007 OK\r\n" +
                            codeInBody.bodyPart() + "A0006 OK\r\n"),
                     expect("A0009 LOGOUT\r\n"), answer("A0009 OK\r\n")});
  const JSONValue result = call("search_inbox", JSONObject{}).structured;
  EXPECT_EQ(server.mismatch(), "");
  const JSONArray* messages = result["messages"].arrayValue();
  ASSERT_TRUE(messages && messages->size() == 3) << result.prettyString();
  EXPECT_THAT((*messages)[0]["snippet"].stringValue().value_or(""), HasSubstr("withheld"));
  EXPECT_EQ((*messages)[1]["snippet"], "Thank you for your order. Total: 12.50 EUR.");
  EXPECT_THAT((*messages)[2]["snippet"].stringValue().value_or(""), HasSubstr("withheld"));
}

}  // namespace
}  // namespace tarnwell::test
