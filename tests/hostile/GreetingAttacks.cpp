/// Attacks with the first line of the server.

#include <gtest/gtest.h>

#include "hostile/ServerAttack.h"
#include "hostile/Sessions.h"

namespace tarnwell::test {

namespace {

/// After this greeting everything goes on normally.
ServerAttack unusual(std::string name, std::string attack, const Step& greeting) {
  const Session session = listSession();
  ServerAttack row = attackDuring(session, answeredBy(session, "greeting", {greeting}), std::move(name),
                                  std::move(attack), "goes on as after any greeting");
  row.check = [](const JSONValue& result) { EXPECT_EQ(result["count"], JSONValue(3)); };
  return row;
}

/// After this greeting the login is refused.
ServerAttack noLogin(std::string name, std::string attack, const std::string& greeting,
                     const std::string& refusal) {
  const Session session =
      listSession().answering("greeting", greeting).answering("LOGIN", refusal).leavingAfter("LOGIN");
  ServerAttack row = attackDuring(session, std::move(name), std::move(attack), "says that the login failed");
  row.error = "Authentication failed. Check the email address and Apple app-specific password.";
  return row;
}

ServerAttack byeAndClose() {
  const Session session = listSession().answering("greeting", "* BYE too many connections\r\n");
  ServerAttack row = attackDuring(
      session, brokenAt(session, session.position("LOGIN"), cutHere()), "byeAndClose",
      "the greeting is BYE, and the connection closes at the login", "says that the connection was closed");
  row.error = "The IMAP connection was closed unexpectedly.";
  return row;
}

/// A line that is not a greeting. The program sends LOGOUT, because it leaves a server that still answers.
ServerAttack strange(std::string name, std::string attack, const std::string& line,
                     const std::string& shown) {
  return {.name = std::move(name),
          .attack = std::move(attack),
          .outcome = "shows the line, at most 200 characters of it, and leaves; no login is sent",
          .dialogue = {answer(line + "\r\n"), expect("A0001 LOGOUT\r\n"), answer("A0001 OK bye\r\n")},
          .error = "Unexpected IMAP response: " + shown};
}

}  // namespace

std::vector<Attack> greetingAttacks() {
  constexpr std::size_t megabyte = 1000000;
  return byServer({
      byeAndClose(),
      noLogin("byeAndNo", "the greeting is BYE, and the login is refused", "* BYE no\r\n",
              "TAG NO go away\r\n"),
      noLogin("preauth", "the greeting is PREAUTH, and the login is answered with BAD",
              "* PREAUTH welcome\r\n", "TAG BAD already in\r\n"),
      strange("plus", "the greeting is a continuation, \"+ go ahead\"", "+ go ahead", "+ go ahead"),
      strange("tagged", "the greeting is the answer to a command not sent", "A0001 OK ready",
              "A0001 OK ready"),
      strange("anotherProtocol", "the greeting is that of another protocol", "HTTP/1.1 400 Bad Request",
              "HTTP/1.1 400 Bad Request"),
      strange("empty", "the greeting is an empty line", "", ""),
      strange("controlCharacters", "a strange greeting with control and bidirectional characters",
              "\x1B[2Jhello\a \xE2\x80\xAEolleh", "[2Jhello   olleh"),
      unusual("oneMegabyte", "a greeting of one megabyte",
              answer("* OK " + std::string(megabyte, 'x') + "\r\n")),
      unusual("byteByByte", "a greeting byte by byte", answerSlowly("* OK ready and willing\r\n")),
  });
}

}  // namespace tarnwell::test
