/// Tagged answers, continuations and refusals.

#include <gtest/gtest.h>

#include <algorithm>

#include "hostile/ServerAttack.h"
#include "hostile/Sessions.h"
#include "support/Repeated.h"

namespace tarnwell::test {

namespace {

void listsOneFolder(const JSONValue& result) { EXPECT_EQ(result["count"], JSONValue(1)); }

constexpr const char* closedText = "The IMAP connection was closed unexpectedly.";
constexpr const char* folder = "* LIST () \"/\" Archive\r\n";

ServerAttack listing(std::string name, std::string attack, std::string outcome, const std::string& answer) {
  return {.name = std::move(name),
          .attack = std::move(attack),
          .outcome = std::move(outcome),
          .dialogue = honest(listSession().answering("LIST", folder + answer)),
          .check = listsOneFolder};
}

/// The answer to LIST is none, and then the connection closes.
ServerAttack noCompletion(std::string name, std::string attack, const std::string& line) {
  return {.name = std::move(name),
          .attack = std::move(attack),
          .outcome = "takes it for no answer, and says that the connection was closed",
          .dialogue = brokenAt(listSession(), listSession().position("LIST"), closeHere(), folder + line),
          .error = closedText};
}

/// A command is refused; the program leaves with LOGOUT.
ServerAttack refused(std::string name, std::string attack, std::string outcome, const Session& session,
                     const std::string& step, const std::string& answer, std::string error) {
  Session changed = session.answering(step, answer);
  const std::size_t position = changed.position(step);
  changed.exchanges.resize(position + 1);
  const auto commands = std::ranges::count_if(
      changed.exchanges, [](const Exchange& exchange) { return exchange.command.starts_with("A0"); });
  const std::string tag = changed.tag(static_cast<std::size_t>(commands) + 1);
  changed.exchanges.push_back({"LOGOUT", tag + " LOGOUT\r\n", tag + " OK bye\r\n"});
  return {.name = std::move(name),
          .attack = std::move(attack),
          .outcome = std::move(outcome),
          .tool = changed.tool,
          .arguments = changed.arguments,
          .dialogue = honest(changed),
          .error = std::move(error)};
}

/// What stands in the place of the first "+" of a search. The literal's byte is never sent.
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

/// The answer to CAPABILITY comes together with that to LOGIN.
ServerAttack answerBeforeItsCommand() {
  const Session session = listSession()
                              .answering("LOGIN", "TAG OK in\r\n* CAPABILITY IMAP4rev1\r\nA0002 OK early\r\n")
                              .answering("CAPABILITY", "");
  return {.name = "answerBeforeItsCommand",
          .attack = "an answer sent before its command",
          .outcome = "takes it for the answer once the command is sent",
          .dialogue = honest(session),
          .check = [](const JSONValue& result) { EXPECT_EQ(result["count"], JSONValue(3)); }};
}

ServerAttack manyCapabilities() {
  std::string names;
  for (int number = 0; number < 10000; ++number) {
    names += " NAME" + std::to_string(number);
  }
  const Session session =
      listSession().answering("CAPABILITY", "* CAPABILITY IMAP4rev1" + names + "\r\nTAG OK done\r\n");
  return {.name = "manyCapabilities",
          .attack = "CAPABILITY with 10,000 names",
          .outcome = "goes on",
          .dialogue = honest(session),
          .check = [](const JSONValue& result) { EXPECT_EQ(result["count"], JSONValue(3)); }};
}

ServerAttack secondPlusAtOnce() {
  const Session session = searchSession().answering("FROM", "+ go\r\n+ go\r\n").answering("SUBJECT", "");
  return {.name = "twoPluses",
          .attack = "two \"+\" for one literal",
          .outcome = "takes the second for the next literal; every byte stays in its place",
          .tool = session.tool,
          .arguments = session.arguments,
          .dialogue = honest(session),
          .check = listsOneFolder};
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
      listing("noTextBehindStatus", "a status word with nothing behind it", "accepts it", "TAG OK\r\n"),
      listing("strayContinuation", "a \"+\" where nothing was announced", "passes over it",
              "+ go on\r\n+\r\nTAG OK done\r\n"),
      listing("byeAmidAnAnswer", "BYE before the tagged answer", "waits for the answer",
              "* BYE soon\r\nTAG OK done\r\n"),
      noCompletion("tagWithoutSpace", "an answer with no blank behind its tag", "A0004OK done\r\n"),
      noCompletion("tagInLowerCase", "an answer with its tag in lower case", "a0004 OK done\r\n"),
      noCompletion("starInsteadOfTag", "an untagged OK in the place of the answer", "* OK done\r\n"),
      answerBeforeItsCommand(),
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
