/// What the server says first.

#include <gtest/gtest.h>

#include "hostile/ServerAttack.h"
#include "hostile/Sessions.h"

namespace tarnwell::test {

namespace {

Dialogue greetedBy(const Step& greeting) {
  Dialogue dialogue = honest(listSession());
  dialogue[1] = greeting;
  return dialogue;
}

void listsThreeFolders(const JSONValue& result) { EXPECT_EQ(result["count"], JSONValue(3)); }

/// A greeting that is none. The program says LOGOUT, since it leaves a server that still talks.
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
  std::vector<ServerAttack> rows{
      {.name = "byeAndClose",
       .attack = "the greeting is BYE, and the connection closes at the login",
       .outcome = "says that the connection was closed",
       .dialogue =
           brokenAt(listSession().answering("greeting", "* BYE too many connections\r\n"), 1, cutHere()),
       .error = "The IMAP connection was closed unexpectedly."},
      {.name = "byeAndNo",
       .attack = "the greeting is BYE, and the login is refused",
       .outcome = "says that the login failed",
       .dialogue = brokenAt(listSession(), 1, expect("A0002 LOGOUT\r\n"), "A0001 NO go away\r\n"),
       .error = "Authentication failed. Check the email address and Apple app-specific password."},
      {.name = "preauth",
       .attack = "the greeting is PREAUTH, and the login is answered with BAD",
       .outcome = "says that the login failed",
       .dialogue = brokenAt(listSession(), 1, expect("A0002 LOGOUT\r\n"), "A0001 BAD already in\r\n"),
       .error = "Authentication failed. Check the email address and Apple app-specific password."},
      strange("plus", "the greeting is a continuation, \"+ go ahead\"", "+ go ahead", "+ go ahead"),
      strange("tagged", "the greeting is the answer to a command not sent", "A0001 OK ready",
              "A0001 OK ready"),
      strange("anotherProtocol", "the greeting is that of another protocol", "HTTP/1.1 400 Bad Request",
              "HTTP/1.1 400 Bad Request"),
      strange("empty", "the greeting is an empty line", "", ""),
      strange("controlCharacters", "a strange greeting with control and bidirectional characters",
              "\x1B[2Jhello\a \xE2\x80\xAEolleh", "[2Jhello   olleh"),
      {.name = "oneMegabyte",
       .attack = "a greeting of one megabyte",
       .outcome = "goes on as after any greeting",
       .dialogue = greetedBy(answer("* OK " + std::string(megabyte, 'x') + "\r\n")),
       .check = listsThreeFolders},
      {.name = "byteByByte",
       .attack = "a greeting byte by byte",
       .outcome = "goes on as after any greeting",
       .dialogue = greetedBy(answerSlowly("* OK ready and willing\r\n")),
       .check = listsThreeFolders},
  };
  for (const std::size_t position : {1U, 2U}) {
    rows[position].dialogue.push_back(answer("A0002 OK bye\r\n"));
  }
  rows[1].dialogue[1] = answer("* BYE no\r\n");
  rows[2].dialogue[1] = answer("* PREAUTH welcome\r\n");
  return byServer(std::move(rows));
}

}  // namespace tarnwell::test
