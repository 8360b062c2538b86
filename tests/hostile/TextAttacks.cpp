/// Texts from the user and the client that try to act as commands. A second command is never sent: the
/// server's dialogue contains every byte that may come.

#include <gtest/gtest.h>

#include "hostile/ServerAttack.h"
#include "hostile/Sessions.h"
#include "support/Repeated.h"

namespace tarnwell::test {

namespace {

constexpr std::size_t megabyte = 1000000;
const std::string secondCommand = "x\r\nA0002 LOGOUT\r\n";
constexpr const char* refusedText = "Invalid argument: control character in IMAP argument";

/// A list of folders after a login with these two, in the form that they have in quotes.
ServerAttack loginAs(std::string name, std::string attack, std::string outcome, std::string email,
                     std::string password, const std::string& quotedPair) {
  Session session = listSession();
  session.exchanges[session.position("LOGIN")].command = "A0001 LOGIN " + quotedPair + "\r\n";
  ServerAttack row = attackDuring(session, std::move(name), std::move(attack), std::move(outcome));
  row.email = std::move(email);
  row.password = std::move(password);
  row.check = [](const JSONValue& result) { EXPECT_EQ(result["count"], JSONValue(3)); };
  return row;
}

ServerAttack refusedLogin(std::string name, std::string attack, std::string email, std::string password) {
  return {.name = std::move(name),
          .attack = std::move(attack),
          .outcome = "refuses it; no login is sent",
          .dialogue = {answer("* OK ready\r\n"), expect("A0001 LOGOUT\r\n"), answer("A0001 OK bye\r\n")},
          .email = std::move(email),
          .password = std::move(password),
          .error = refusedText};
}

/// The program makes no connection.
ServerAttack notEvenConnected(std::string name, std::string attack, std::string outcome, std::string email,
                              std::string password, std::string error) {
  return {.name = std::move(name),
          .attack = std::move(attack),
          .outcome = std::move(outcome),
          .email = std::move(email),
          .password = std::move(password),
          .error = std::move(error),
          .connections = 0};
}

/// A search for this text, which arrives unchanged as a literal.
ServerAttack searchFor(std::string name, std::string attack, const std::string& text,
                       const std::string& charset = "") {
  return {.name = std::move(name),
          .attack = std::move(attack),
          .outcome = "sends its bytes as a literal, whatever they are",
          .tool = "search_inbox",
          .arguments = {{"query", text}},
          .dialogue = loginDialogue() + Dialogue{expect("A0004 UID SEARCH" + charset + " TEXT {" +
                                                        std::to_string(text.size()) + "}\r\n"),
                                                 answer("+ go\r\n"), expect(text + "\r\n"),
                                                 answer("* SEARCH\r\nA0004 OK done\r\n"),
                                                 expect("A0005 LOGOUT\r\n"), answer("A0005 OK bye\r\n")},
          .check = [](const JSONValue& result) { EXPECT_EQ(result["count"], JSONValue(0)); }};
}

ServerAttack moveTo(std::string name, std::string attack, const std::string& target) {
  Session session = moveSession().leavingAfter("LIST");
  session.arguments["targetFolder"] = target;
  ServerAttack row = attackDuring(session, std::move(name), std::move(attack),
                                  "compares it with the folders' names and sends nothing of it");
  row.error = "Folder not found: " + target;
  return row;
}

std::vector<ServerAttack> logins() {
  const std::string large(megabyte, 'x');
  return {
      loginAs("emailWithQuotes", "an e-mail address with quotes and backslashes", "escapes them", "a\"b\\c@d",
              testPassword, "\"a\\\"b\\\\c@d\" \"app-pass-word\""),
      loginAs("emailWithMarker", "an e-mail address `{0}`", "quotes it", "{0}", testPassword,
              "\"{0}\" \"app-pass-word\""),
      refusedLogin("emailWithCommand", "an e-mail address with a line end and a command after it",
                   secondCommand, testPassword),
      refusedLogin("emailWithControl", "an e-mail address with a control character of Unicode", "a\xC2\x85@b",
                   testPassword),
      loginAs("emailOf900Kilobytes", "an e-mail address of 900 kilobytes", "sends it, once",
              std::string(900000, 'x'), testPassword,
              "\"" + std::string(900000, 'x') + "\" \"app-pass-word\""),
      notEvenConnected("emailOf10Megabytes", "an e-mail address of ten megabytes",
                       "sets the settings aside, as any of more than a megabyte; does not connect",
                       std::string(10 * megabyte, 'x'), testPassword,
                       "No iCloud account is configured. Open the app and save your email + app password."),
      loginAs("passwordWithQuotes", "a password with quotes and backslashes", "escapes them", testEmail,
              "a\"b\\c", "\"user@example.org\" \"a\\\"b\\\\c\""),
      loginAs("passwordWithMarker", "a password `{0}`", "quotes it", testEmail, "{0}",
              "\"user@example.org\" \"{0}\""),
      refusedLogin("passwordWithCommand", "a password with a line end and a command after it", testEmail,
                   secondCommand),
      refusedLogin("passwordWithZeroByte", "a password with a zero byte", testEmail, std::string("a\0b", 3)),
      loginAs("passwordOfAMegabyte", "a password of a megabyte", "sends it, once", testEmail, large,
              "\"user@example.org\" \"" + large + "\""),
      notEvenConnected("passwordNotText", "a password that is no UTF-8", "says so; does not connect",
                       testEmail, "\xFF\xFE", "Keychain item could not be decoded as UTF-8"),
      notEvenConnected("passwordEmpty", "an empty password",
                       "says that no account is set up; does not connect", testEmail, "",
                       "No iCloud account is configured. Open the app and save your email + app password."),
  };
}

}  // namespace

std::vector<Attack> textAttacks() {
  std::vector<ServerAttack> rows = logins();
  const std::vector<ServerAttack> others{
      searchFor("searchWithControls", "a search text with control characters",
                std::string("a\0\x01\x1B[2J\x7F", 8)),
      searchFor("searchWithQuotes", "a search text with quotes and backslashes", "\"\\\" OR ALL \"\\"),
      searchFor("searchWithMarker", "a search text `{0}`", "{0}"),
      searchFor("searchWithMarkerAndLine", "a search text that announces a literal of its own",
                "a {3}\r\nbcd"),
      searchFor("searchWithCommand", "a search text with a line end and a command after it", secondCommand),
      searchFor("searchBeyondASCII", "a search text in another script", "日本語\xE2\x80\xAE",
                " CHARSET UTF-8"),
      searchFor("searchOfAMegabyte", "a search text of a megabyte", std::string(megabyte, 'x')),
      moveTo("folderWithControls", "a target folder with control characters",
             std::string("a\0\x01\x1B[2J", 7)),
      moveTo("folderWithQuotes", "a target folder with quotes and backslashes", "Archive\" \"\\"),
      moveTo("folderWithMarker", "a target folder `{0}`", "{0}"),
      moveTo("folderWithCommand", "a target folder with a line end and a command after it",
             "Archive\r\nA0002 LOGOUT\r\n"),
      moveTo("folderOfAMegabyte", "a target folder of a megabyte", std::string(megabyte, 'x')),
  };
  rows.insert(rows.end(), others.begin(), others.end());
  return byServer(std::move(rows));
}

}  // namespace tarnwell::test
