/// Answers to the commands that change the mailbox. The program reports a change only as the server reported
/// it.

#include <gtest/gtest.h>

#include "hostile/ServerAttack.h"
#include "hostile/Sessions.h"
#include "support/Repeated.h"

namespace tarnwell::test {

namespace {

std::string rejected(const std::string& detail) {
  return "The mail server rejected the move (" + detail +
         "). This is a server-side limitation — it is NOT fixed by changing read-only, dry-run, or the allow "
         "toggles. To move anyway without permanent deletion, enable \"Move on servers without MOVE (COPY + "
         "mark deleted)\" in Safety settings. (The bridge never performs a physical delete / EXPUNGE.)";
}

ServerAttack writing(std::string name, std::string attack, std::string outcome, const Session& session,
                     std::string error) {
  ServerAttack row = attackDuring(session, std::move(name), std::move(attack), std::move(outcome));
  row.error = std::move(error);
  return row;
}

/// The client sends the write, its answer begins, and the connection closes.
ServerAttack lost(const Session& session, const std::string& step, const std::string& begin) {
  ServerAttack row = attackDuring(
      session, brokenAt(session, session.position(step), closeHere(), begin),
      session.name() + "AnswerTo" + step + "Lost",
      step + " is sent, and the connection closes amid the answer",
      "says so; claims neither that the change was made nor that it was not, and tries nothing else");
  row.error = "The IMAP connection was closed unexpectedly.";
  return row;
}

/// The session of the fallback. The server refuses one step, and the session ends.
ServerAttack fallbackRefused(const std::string& step, std::string outcome) {
  return writing(
      "fallback" + step + "Refused", "MOVE is refused, and then " + step + " too", std::move(outcome),
      fallbackSession().answering(step, "TAG NO cannot\r\n").leavingAfter(step), "IMAP UID failed: cannot");
}

}  // namespace

std::vector<Attack> writeAttacks() {
  ServerAttack believed = writing("unknownMessage", "MOVE of an unknown message is answered with OK",
                                  "believes it, as it must", moveSession(), "");
  believed.check = [](const JSONValue& result) { EXPECT_EQ(result["reason"], JSONValue("Executed.")); };
  return byServer({
      lost(moveSession(), "MOVE", "* OK [COPYUID 1 7 9] moving\r\nA0005 "),
      lost(trashSession(), "MOVE", "A0005 OK"),
      lost(markReadSession(), "STORE", "* 1 FETCH (FLAGS (\\Seen))\r\n"),
      lost(fallbackSession(), "COPY", "A0006 O"),
      lost(fallbackSession(), "STORE", "A0007 OK done"),
      writing("moveRefused", "MOVE is refused", "says that nothing was moved, and which setting helps",
              moveSession().answering("MOVE", "TAG NO [CANNOT] not here\r\n"), rejected("[CANNOT] not here")),
      writing("moveRefusedAtLength", "MOVE is refused in ten kilobytes with control characters",
              "shows 200 characters of them, blanks for the rest",
              moveSession().answering("MOVE",
                                      "TAG BAD \x1B[31m\xE2\x80\xAE" + repeated("0123456789", 1000) + "\r\n"),
              rejected("[31m " + repeated("0123456789", 20).substr(0, 195))),
      writing("moveAnsweredForAnother", "MOVE is answered with another tag first", "waits for its own",
              moveSession().answering("MOVE", "A0004 NO old\r\nTAG NO new\r\n"), rejected("new")),
      writing("storeRefused", "STORE is refused", "says that it failed",
              markReadSession().answering("STORE", "TAG NO read-only\r\n"), "IMAP UID failed: read-only"),
      fallbackRefused("COPY", "says that it failed; flags nothing"),
      fallbackRefused("STORE", "says that it failed; the message then stands in both places"),
      believed,
  });
}

}  // namespace tarnwell::test
