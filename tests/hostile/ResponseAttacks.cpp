/// FETCH and SEARCH responses of every shape that a server should not send.

#include <gtest/gtest.h>

#include "hostile/ServerAttack.h"
#include "hostile/Sessions.h"
#include "support/Repeated.h"

namespace tarnwell::test {

namespace {

using Check = std::function<void(const JSONValue&)>;

/// `get_message_summary` of message 7 without its body. The server answers with these steps and OK.
ServerAttack summary(std::string name, std::string attack, std::string outcome, const Dialogue& responses,
                     Check check) {
  Dialogue dialogue =
      loginDialogue() +
      Dialogue{expect("A0004 UID FETCH 7 (UID FLAGS INTERNALDATE ENVELOPE BODYSTRUCTURE)\r\n")};
  dialogue = dialogue + responses +
             Dialogue{answer("A0004 OK done\r\n"), expect("A0005 LOGOUT\r\n"), answer("A0005 OK bye\r\n")};
  return {.name = std::move(name),
          .attack = std::move(attack),
          .outcome = std::move(outcome),
          .tool = "get_message_summary",
          .arguments = {{"uid", 7}, {"includeBodySnippet", false}},
          .dialogue = std::move(dialogue),
          .check = std::move(check)};
}

ServerAttack noMessage(std::string name, std::string attack, const Dialogue& responses) {
  ServerAttack row =
      summary(std::move(name), std::move(attack), "says that there is no such message", responses, {});
  row.error = "No message with UID 7 in INBOX.";
  return row;
}

Check subjectIs(JSONValue subject) {
  return [subject = std::move(subject)](const JSONValue& result) { EXPECT_EQ(result["subject"], subject); };
}

/// Message 7 with this envelope.
Dialogue envelope(const std::string& fields) {
  return {answer("* 1 FETCH (UID 7 ENVELOPE (" + fields + "))\r\n")};
}

/// Nested parentheses in place of the structure, and then an envelope.
ServerAttack nested(std::size_t depth, const std::string& depthText) {
  return summary("nested" + std::to_string(depth), depthText + " parentheses within each other",
                 "reads past them without a stack of calls",
                 {answer("* 1 FETCH (UID 7 BODYSTRUCTURE "), answer("(", depth), answer(")", depth),
                  answer(" ENVELOPE (NIL \"Lunch\"))\r\n")},
                 subjectIs("Lunch"));
}

ServerAttack unclosed() {
  return summary("neverClosed", "100,000 parentheses of which none is closed", "reads what came before them",
                 {answer("* 1 FETCH (UID 7 ENVELOPE (NIL \"Lunch\") BODYSTRUCTURE "), answer("(", 100000),
                  answer("\r\n")},
                 subjectIs("Lunch"));
}

ServerAttack siblings() {
  return summary(
      "siblings", "a list of a million elements", "reads past them",
      {answer("* 1 FETCH (UID 7 X-LIST ("), answer("a ", 1000000), answer(") ENVELOPE (NIL \"Lunch\"))\r\n")},
      subjectIs("Lunch"));
}

ServerAttack manyParts() {
  return summary("manyParts", "a body structure of 10,000 parts", "finds the attachments among them",
                 {answer("* 1 FETCH (UID 7 ENVELOPE (NIL \"Lunch\") BODYSTRUCTURE ("),
                  answer("(\"TEXT\" \"PLAIN\" NIL NIL NIL \"7BIT\" 1 1)", 10000),
                  answer("(\"IMAGE\" \"PNG\" NIL NIL NIL \"BASE64\" 1) \"MIXED\"))\r\n")},
                 [](const JSONValue& result) { EXPECT_EQ(result["hasAttachments"], JSONValue(true)); });
}

ServerAttack manyAddresses() {
  return summary("manyAddresses", "100,000 recipients", "lists them all",
                 {answer("* 1 FETCH (UID 7 ENVELOPE (NIL \"Lunch\" NIL NIL NIL ("),
                  answer("(NIL NIL \"a\" \"b.example\")", 100000), answer(") NIL NIL NIL NIL))\r\n")},
                 [](const JSONValue& result) { EXPECT_EQ(result["to"].arrayValue()->size(), 100000U); });
}

/// `get_message_body`. The server answers for the body with this text in place of a literal.
ServerAttack bodyAs(std::string name, std::string attack, const std::string& value) {
  const Session session =
      bodySession().answering("BODY", "* 1 FETCH (UID 7 BODY[1] " + value + ")\r\nTAG OK done\r\n");
  ServerAttack row =
      attackDuring(session, std::move(name), std::move(attack), "says that there is no readable text");
  row.check = [](const JSONValue& result) {
    EXPECT_EQ(result["reason"],
              JSONValue("This message has no readable text body (it may be attachments-only)."));
  };
  return row;
}

/// `get_message_body`. Between an empty literal and the end of the response these bytes stand so many times.
ServerAttack bodyBeside(std::string name, std::string attack, const std::string& bytes, std::size_t times) {
  const Session session = bodySession();
  ServerAttack row = attackDuring(
      session,
      answeredBy(session, "BODY",
                 {answer("* 1 FETCH (X {0}\r\n "), answer(bytes, times), answer(")\r\nA0005 OK done\r\n")}),
      std::move(name), std::move(attack), "reads it in linear time; says that there is no readable text");
  row.check = [](const JSONValue& result) { EXPECT_EQ(result["returned"], JSONValue(false)); };
  return row;
}

/// A structure whose text is 100,000 parts deep. The section number is just as long.
ServerAttack deepText() {
  constexpr std::size_t depth = 100000;
  const std::string section = repeated("1.", depth - 1) + "1";
  return {
      .name = "deepText",
      .attack = "the only text lies 100,000 parts deep, and fetching it is refused",
      .outcome = "asks for it all the same; shows the refusal",
      .tool = "get_message_body",
      .arguments = {{"uid", 7}},
      .dialogue =
          loginDialogue() +
          Dialogue{expect("A0004 UID FETCH 7 (UID FLAGS INTERNALDATE ENVELOPE BODYSTRUCTURE)\r\n"),
                   answer("* 1 FETCH (UID 7 BODYSTRUCTURE "), answer("(", depth),
                   answer("(\"TEXT\" \"PLAIN\" NIL NIL NIL \"7BIT\" 1 1)"), answer(")", depth),
                   answer(")\r\nA0004 OK done\r\n"),
                   expect("A0005 UID FETCH 7 (BODY.PEEK[" + section + "])\r\n"),
                   answer("A0005 BAD too deep\r\n"), expect("A0006 LOGOUT\r\n"), answer("A0006 OK bye\r\n")},
      .error = "IMAP UID failed: too deep"};
}

/// `search_inbox` for everything, at most one message. The server answers with these steps, then the message.
ServerAttack search(std::string name, std::string attack, std::string outcome, const Dialogue& responses,
                    const std::string& fetchedUID) {
  Dialogue dialogue = loginDialogue() + Dialogue{expect("A0004 UID SEARCH ALL\r\n")} + responses +
                      Dialogue{answer("A0004 OK done\r\n")};
  const std::string logout = fetchedUID.empty() ? "A0005" : "A0006";
  if (!fetchedUID.empty()) {
    dialogue.push_back(
        expect("A0005 UID FETCH " + fetchedUID + " (UID FLAGS INTERNALDATE ENVELOPE BODYSTRUCTURE)\r\n"));
    dialogue.push_back(answer("A0005 OK done\r\n"));
  }
  return {.name = std::move(name),
          .attack = std::move(attack),
          .outcome = std::move(outcome),
          .tool = "search_inbox",
          .arguments = {{"limit", 1}},
          .dialogue = dialogue + Dialogue{expect(logout + " LOGOUT\r\n"), answer(logout + " OK bye\r\n")},
          .check = [](const JSONValue& result) { EXPECT_EQ(result["count"], JSONValue(0)); },
          .peakMegabytes = 250};
}

std::vector<ServerAttack> shapes() {
  return {
      nested(10, "ten"),
      nested(1000, "a thousand"),
      nested(100000, "100,000"),
      nested(1000000, "a million"),
      unclosed(),
      siblings(),
      manyParts(),
      manyAddresses(),
      bodyBeside("bodyBesideWords", "four million words in the answer with a body", "a ", 4000000),
      bodyBeside("bodyBesideBraces", "four million braces in the answer with a body", "{ ", 4000000),
      deepText(),
  };
}

std::vector<ServerAttack> fields() {
  const Check lunch = subjectIs("Lunch");
  const Check nothing = subjectIs(nullptr);
  return {
      summary("fieldsMissing", "an envelope of two fields", "gives what is there", envelope("NIL \"Lunch\""),
              lunch),
      summary("fieldsTooMany", "an envelope of a hundred fields", "passes over what is too much",
              envelope("NIL \"Lunch\"" + repeated(" NIL", 98)), lunch),
      summary("fieldsNIL", "an envelope of nothing but NIL", "gives nulls", envelope(repeated("NIL ", 10)),
              nothing),
      summary("fieldsOfTheWrongKind", "lists where texts belong, and texts where lists belong", "gives nulls",
              envelope("(a) (b) \"c\" \"d\" \"e\" f g h (i) (j)"), nothing),
      summary("quotedNumbers", "the UID as a quoted text", "reads it",
              {answer("* 1 FETCH (UID \"7\" ENVELOPE (NIL \"Lunch\"))\r\n")}, lunch),
      summary("structureNIL", "NIL in the place of every part", "gives what is there",
              {answer("* 1 FETCH (UID 7 FLAGS NIL INTERNALDATE NIL BODYSTRUCTURE NIL ENVELOPE (NIL "
                      "\"Lunch\"))\r\n")},
              lunch),
      summary("groups", "addresses that are groups, and addresses with NIL in them",
              "lists them without an address",
              envelope("NIL \"Lunch\" ((NIL NIL \"friends\" NIL) (NIL NIL NIL NIL) (NIL NIL)) NIL NIL NIL"),
              [](const JSONValue& result) {
                EXPECT_EQ(result["from"].arrayValue()->size(), 2U);
                EXPECT_EQ((*result["from"].arrayValue())[0]["email"], JSONValue());
              }),
      summary("stringNeverClosed", "a text whose closing quote is missing", "ends it with the line",
              {answer("* 1 FETCH (UID 7 ENVELOPE (NIL \"Lunch\r\n")}, lunch),
      summary("escapeAtTheEnd", "a text that ends in a lone backslash", "ends it with the line",
              {answer("* 1 FETCH (UID 7 ENVELOPE (NIL \"Lunch\\\r\n")},
              [](const JSONValue& result) {
                EXPECT_EQ(result["subject"].stringValue().value_or("").substr(0, 5), "Lunch");
              }),
      bodyAs("bodyQuoted", "a body as a quoted text", "\"hello\""),
      bodyAs("bodyNIL", "a body of NIL", "NIL"),
  };
}

std::vector<ServerAttack> wrongMessages() {
  return {
      noMessage("anotherUID", "FETCH for another UID",
                {answer("* 1 FETCH (UID 8 ENVELOPE (NIL \"Other\"))\r\n")}),
      noMessage("withoutUID", "FETCH without a UID", {answer("* 7 FETCH (ENVELOPE (NIL \"Lunch\"))\r\n")}),
      noMessage("UIDTooLarge", "FETCH for a UID above 32 bits",
                {answer("* 1 FETCH (UID 4294967303 ENVELOPE (NIL \"Lunch\"))\r\n")}),
      noMessage("manyOtherUIDs", "100,000 FETCH responses for other UIDs",
                {answer("* 1 FETCH (UID 8 ENVELOPE (NIL \"Other\"))\r\n", 100000)}),
      summary("fetchedTwice", "FETCH twice for one UID", "takes the later",
              {answer("* 1 FETCH (UID 7 ENVELOPE (NIL \"Early\"))\r\n"),
               answer("* 1 FETCH (UID 7 ENVELOPE (NIL \"Late\"))\r\n")},
              subjectIs("Late")),
      summary("splitOverTwo", "one message split over two responses", "takes the later, not a mixture",
              {answer("* 1 FETCH (UID 7 ENVELOPE (NIL \"Lunch\"))\r\n"),
               answer("* 1 FETCH (UID 7 FLAGS (\\Seen))\r\n")},
              subjectIs(nullptr)),
      summary("unsolicited", "unsolicited responses around the answer", "passes over them",
              {answer("* 3 EXISTS\r\n* 2 FETCH (FLAGS (\\Seen))\r\n"),
               answer("* 1 FETCH (UID 7 ENVELOPE (NIL \"Lunch\"))\r\n"),
               answer("* 5 EXPUNGE\r\n* 1 FETCH (FLAGS ())\r\n* VANISHED 7\r\n")},
              subjectIs("Lunch")),
  };
}

std::vector<ServerAttack> searches() {
  return {
      search("tenMillionUIDs", "SEARCH with ten million UIDs", "fetches the newest",
             {answer("* SEARCH"), answer(" 4294967295", 1), answer(" 7", 9999999), answer("\r\n")},
             "4294967295"),
      search("searchWords", "SEARCH with words, signs and numbers above 32 bits among the UIDs",
             "takes the numbers that are UIDs",
             {answer("* SEARCH one -3 4294967296 7x NIL 12 (5) 99999999999999999999\r\n")}, "12"),
      search("searchTwice", "SEARCH split over several responses", "takes them together",
             {answer("* SEARCH 3\r\n* SEARCH\r\n* search 9\r\n* ESEARCH 77\r\n")}, "9"),
      search("searchMissing", "no SEARCH response at all", "finds nothing", {}, ""),
  };
}

}  // namespace

std::vector<Attack> responseAttacks() {
  std::vector<ServerAttack> rows = shapes();
  for (const auto& table : {fields(), wrongMessages(), searches()}) {
    rows.insert(rows.end(), table.begin(), table.end());
  }
  return byServer(std::move(rows));
}

}  // namespace tarnwell::test
