/// Tagged answers, continuations and refusals.

#include <gtest/gtest.h>

#include "hostile/ServerAttack.h"
#include "hostile/Sessions.h"
#include "support/Repeated.h"

namespace tarnwell::test {

namespace {

void listsOne(const JSONValue& result) { EXPECT_EQ(result["count"], JSONValue(1)); }
void listsThreeFolders(const JSONValue& result) { EXPECT_EQ(result["count"], JSONValue(3)); }

constexpr const char* closedText = "The IMAP connection was closed unexpectedly.";
constexpr const char* folder = "* LIST () \"/\" Archive\r\n";

ServerAttack listing(std::string name, std::string attack, std::string outcome, const std::string& answer) {
  ServerAttack row = attackDuring(listSession().answering("LIST", folder + answer), std::move(name),
                                  std::move(attack), std::move(outcome));
  row.check = listsOne;
  return row;
}

/// The answer to LIST is invalid, and then the connection closes.
ServerAttack noCompletion(std::string name, std::string attack, const std::string& line) {
  const Session session = listSession();
  ServerAttack row = attackDuring(
      session, brokenAt(session, session.position("LIST"), closeHere(), folder + line), std::move(name),
      std::move(attack), "takes it for no answer, and says that the connection was closed");
  row.error = closedText;
  return row;
}

/// The server refuses a command, and the program leaves with LOGOUT.
ServerAttack refused(std::string name, std::string attack, std::string outcome, const Session& session,
                     const std::string& step, const std::string& answer, std::string error) {
  ServerAttack row = attackDuring(session.answering(step, answer).leavingAfter(step), std::move(name),
                                  std::move(attack), std::move(outcome));
  row.error = std::move(error);
  return row;
}

/// A line in place of the first "+" of a search. The program never sends the literal's byte.
ServerAttack insteadOfPlus(std::string name, std::string attack, const std::string& line) {
  return {
      .name = std::move(name),
      .attack = std::move(attack),
      .outcome = "shows the line and leaves; the literal is not sent",
      .tool = "search_inbox",
      .arguments = {{"from", "a"}},
      .dialogue = loginDialogue() + Dialogue{expect("A0004 UID SEARCH FROM {1}\r\n"), answer(line + "\r\n"),
                                             expect("A0005 LOGOUT\r\n"), answer("A0005 OK bye\r\n")},
      .error = "Unexpected IMAP response: " + line};
}

/// The answer to CAPABILITY comes together with the answer to LOGIN.
ServerAttack answerBeforeItsCommand() {
  const Session session = listSession()
                              .answering("LOGIN", "TAG OK in\r\n* CAPABILITY IMAP4rev1\r\nA0002 OK early\r\n")
                              .answering("CAPABILITY", "");
  ServerAttack row = attackDuring(session, "answerBeforeItsCommand", "an answer sent before its command",
                                  "takes it for the answer once the command is sent");
  row.check = listsThreeFolders;
  return row;
}

/// The answers to both commands that go out together come with the answer to LOGIN.
ServerAttack answersBeforeTheirCommands() {
  const std::string early = "* CAPABILITY IMAP4rev1\r\nA0003 OK early\r\nA0002 OK early\r\n";
  const Session session = listSession()
                              .answering("LOGIN", "TAG OK in\r\n" + early)
                              .answering("CAPABILITY", "")
                              .answering("EXAMINE", "");
  ServerAttack row =
      attackDuring(session, "answersBeforeTheirCommands", "two answers sent before their commands",
                   "takes them for the answers once the commands are sent");
  row.check = listsThreeFolders;
  return row;
}

ServerAttack manyCapabilities() {
  std::string names;
  for (int number = 0; number < 10000; ++number) {
    names += " NAME" + std::to_string(number);
  }
  const Session session =
      listSession().answering("CAPABILITY", "* CAPABILITY IMAP4rev1" + names + "\r\nTAG OK done\r\n");
  ServerAttack row = attackDuring(session, "manyCapabilities", "CAPABILITY with 10,000 names", "goes on");
  row.check = listsThreeFolders;
  return row;
}

ServerAttack secondPlusAtOnce() {
  const Session session = searchSession().answering("FROM", "+ go\r\n+ go\r\n").answering("SUBJECT", "");
  ServerAttack row = attackDuring(session, "twoPluses", "two \"+\" for one literal",
                                  "takes the second for the next literal; every byte stays in its place");
  row.check = listsOne;
  return row;
}

}  // namespace

std::vector<Attack> tagAttacks() {
  const std::string longText = repeated("0123456789", 1000);
  const std::string shown = longText.substr(0, 200);
  const std::string trickText = "red\x1B[31m \xE2\x80\xAE gnirts \a\x7F";
  return byServer({
      listing("tagTooOld", "an answer with the tag of an earlier command", "waits for its own",
              "A0001 NO old\r\nTAG OK done\r\n"),
      listing("tagTooNew", "an answer with a tag not yet used", "waits for its own",
              "A9999 NO new\r\nTAG OK done\r\n"),
      listing("statusInLowerCase", "the status word in lower case", "accepts it", "TAG ok done\r\n"),
      listing("noTextAfterStatus", "a status word with nothing after it", "accepts it", "TAG OK\r\n"),
      listing("strayContinuation", "a \"+\" where nothing was announced", "passes over it",
              "+ go on\r\n+\r\nTAG OK done\r\n"),
      listing("byeAmidAnAnswer", "BYE before the tagged answer", "waits for the answer",
              "* BYE soon\r\nTAG OK done\r\n"),
      noCompletion("tagWithoutSpace", "an answer with no blank after its tag", "A0004OK done\r\n"),
      noCompletion("tagInLowerCase", "an answer with its tag in lower case", "a0004 OK done\r\n"),
      noCompletion("starInsteadOfTag", "an untagged OK in the place of the answer", "* OK done\r\n"),
      answerBeforeItsCommand(),
      answersBeforeTheirCommands(),
      refused("unknownStatus", "a status word that does not exist", "shows the line and leaves",
              listSession(), "LIST", "TAG PERHAPS later\r\n",
              "Unexpected IMAP response: A0004 PERHAPS later"),
      manyCapabilities(),
      secondPlusAtOnce(),
      insteadOfPlus("noInsteadOfPlus", "NO in the place of \"+\"", "A0004 NO too long"),
      insteadOfPlus("badInsteadOfPlus", "BAD in the place of \"+\"", "A0004 BAD no literals"),
      insteadOfPlus("untaggedInsteadOfPlus", "an untagged line in the place of \"+\"", "* OK wait"),
      refused("loginRefused", "the login is refused with a text of its own", "says that the login failed",
              listSession(), "LOGIN", "TAG NO send us your other password\r\n",
              "Authentication failed. Check the email address and Apple app-specific password."),
      refused("capabilityRefused", "CAPABILITY is refused", "shows the text and leaves", listSession(),
              "CAPABILITY", "TAG BAD what\r\n", "IMAP CAPABILITY failed: what"),
      refused("longNo", "NO with a text of ten kilobytes", "shows 200 characters of it", listSession(),
              "LIST", "TAG NO " + longText + "\r\n", "IMAP LIST failed: " + shown),
      refused("longBad", "BAD with a text of ten kilobytes", "shows 200 characters of it", searchSession(),
              "FETCH", "TAG BAD " + longText + "\r\n", "IMAP UID failed: " + shown),
      refused("trickNo", "NO with control and bidirectional characters", "shows blanks in their place",
              listSession(), "EXAMINE", "TAG NO " + trickText + "\r\n",
              "IMAP EXAMINE failed: red [31m   gnirts"),
      listing("manyOldTags", "100 answers to other commands", "waits for its own",
              repeated("A0003 OK done\r\n", 100) + "TAG OK done\r\n"),
  });
}

}  // namespace tarnwell::test
