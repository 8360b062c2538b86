/// Attacks with the announcement of a literal and the bytes after it.

#include <gtest/gtest.h>

#include "hostile/ServerAttack.h"
#include "hostile/Sessions.h"

namespace tarnwell::test {

namespace {

/// The folders' paths, each followed by a semicolon.
std::string paths(const JSONValue& result) {
  std::string text;
  for (const JSONValue& folder : *result["folders"].arrayValue()) {
    text += folder["path"].stringValue().value_or("?") + ";";
  }
  return text;
}

std::function<void(const JSONValue&)> lists(std::string expected) {
  return [expected = std::move(expected)](const JSONValue& result) { EXPECT_EQ(paths(result), expected); };
}

/// One LIST response between two normal ones.
ServerAttack amongFolders(std::string name, std::string attack, std::string outcome, const std::string& line,
                          std::string expected) {
  const Session session = listSession().answering(
      "LIST", "* LIST () \"/\" INBOX\r\n" + line + "* LIST () \"/\" Archive\r\nTAG OK done\r\n");
  ServerAttack row = attackDuring(session, std::move(name), std::move(attack), std::move(outcome));
  row.check = lists(std::move(expected));
  return row;
}

/// A literal that is never filled: only a few of its bytes arrive.
ServerAttack neverFilled(std::string name, const std::string& announced) {
  const Session session = bodySession();
  ServerAttack row = attackDuring(
      session,
      brokenAt(session, session.position("BODY"), closeHere(),
               "* 1 FETCH (UID 7 BODY[1] {" + announced + "}\r\na few bytes\r\nA0005 OK done\r\n"),
      std::move(name),
      "a literal of {" + announced + "} is announced, a few bytes come, the connection closes",
      "says so; takes no memory for what was announced");
  row.error = "The IMAP connection was closed unexpectedly.";
  row.peakMegabytes = 100;
  return row;
}

/// The body comes with this text in place of a correct announcement.
ServerAttack bodyAs(std::string name, std::string attack, std::string outcome, const std::string& value,
                    std::function<void(const JSONValue&)> check) {
  const Session session =
      bodySession().answering("BODY", "* 1 FETCH (UID 7 BODY[1] " + value + ")\r\nTAG OK done\r\n");
  ServerAttack row = attackDuring(session, std::move(name), std::move(attack), std::move(outcome));
  row.check = std::move(check);
  return row;
}

void hasNoBody(const JSONValue& result) {
  EXPECT_EQ(result["returned"], JSONValue(false));
  EXPECT_EQ(result["reason"],
            JSONValue("This message has no readable text body (it may be attachments-only)."));
}

void hasBody(const JSONValue& result, const std::string& body) { EXPECT_EQ(result["body"], JSONValue(body)); }

/// 200,000 flags of one byte. Each is a literal.
ServerAttack manyLiterals() {
  constexpr std::size_t count = 200000;
  const Session session = markReadSession();
  const Dialogue steps{answer("* 1 FETCH (UID 7 FLAGS ("), answer("{1}\r\na ", count),
                       answer(") ENVELOPE (NIL {5}\r\nLunch))\r\nA0004 OK done\r\n")};
  ServerAttack row = attackDuring(session, answeredBy(session, "FETCH", steps), "manyLiterals",
                                  "200,000 literals of one byte in one response", "reads them all");
  row.check = [](const JSONValue& result) { EXPECT_EQ(result["detail"]["subject"], JSONValue("Lunch")); };
  return row;
}

}  // namespace

std::vector<Attack> literalAttacks() {
  return byServer({
      neverFilled("literalOf32Bits", "4294967296"),
      neverFilled("literalOf63Bits", "9223372036854775807"),
      amongFolders("literalOf64Bits", "a literal of {18446744073709551616}, more than 63 bits hold",
                   "takes it for no announcement; leaves the folder out",
                   "* LIST () \"/\" {18446744073709551616}\r\n", "INBOX;Archive;"),
      amongFolders("literalOf30Digits", "a literal of thirty digits",
                   "takes it for no announcement; leaves the folder out",
                   "* LIST () \"/\" {" + std::string(30, '9') + "}\r\n", "INBOX;Archive;"),
      amongFolders("literalOfNothing", "a folder's name is a literal of {0}", "leaves the folder out",
                   "* LIST () \"/\" {0}\r\n\r\n", "INBOX;Archive;"),
      amongFolders("literalWithZeroes", "a literal of {00005}", "reads five bytes",
                   "* LIST () \"/\" {00005}\r\nUnder\r\n", "INBOX;Under;Archive;"),
      amongFolders("negativeLiteral", "a literal of {-1}",
                   "takes it for no announcement; leaves the folder out", "* LIST () \"/\" {-1}\r\n",
                   "INBOX;Archive;"),
      amongFolders("literalWithoutNumber", "a literal of {+}",
                   "takes it for no announcement; leaves the folder out", "* LIST () \"/\" {+}\r\n",
                   "INBOX;Archive;"),
      amongFolders("literalThatDoesNotWait", "a literal in the form {5+}, which only clients may use",
                   "reads five bytes", "* LIST () \"/\" {5+}\r\nUnder\r\n", "INBOX;Under;Archive;"),
      amongFolders("lineEndsWithinLiteral", "a folder's name holds a line end and a tagged answer",
                   "reads one name; nothing in it ends the command",
                   "* LIST () \"/\" {15}\r\nA0004 OK done\r\n\r\n", "INBOX;A0004 OK done\r\n;Archive;"),
      amongFolders("markerAmidHumanText", "{5} in the middle of a text for people", "passes over the text",
                   "* OK the quota is {5} megabytes\r\n", "INBOX;Archive;"),
      amongFolders("markerEndsHumanText", "{25} at the end of a text for people",
                   "reads 25 bytes more with it, as the grammar has it; the folder in them is lost",
                   "* OK the quota is {25}\r\n* LIST () \"/\" Swallowed\r\n"
                   "\r\n",
                   "INBOX;Archive;"),
      bodyAs("bodyOfNothing", "a body of {0}", "says that there is no readable text", "{0}\r\n", hasNoBody),
      bodyAs("bodyOf30Digits", "a body of thirty digits", "says that there is no readable text",
             "{" + std::string(30, '9') + "}", hasNoBody),
      bodyAs("bodyTwice", "a response with two bodies", "gives the first", "{4}\r\nfour BODY[2] {5}\r\nfives",
             [](const JSONValue& result) { hasBody(result, "four"); }),
      manyLiterals(),
  });
}

}  // namespace tarnwell::test
