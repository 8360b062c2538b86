/// Lines that are long, slow or many.

#include <gtest/gtest.h>

#include "hostile/ServerAttack.h"
#include "hostile/Sessions.h"

namespace tarnwell::test {

namespace {

/// The answer to LIST: these steps, one folder, and OK.
ServerAttack beforeTheFolder(std::string name, std::string attack, std::string outcome,
                             const Dialogue& before) {
  const Session session = listSession();
  const Dialogue steps = before + Dialogue{answer("* LIST () \"/\" Archive\r\nA0004 OK done\r\n")};
  ServerAttack row = attackDuring(session, answeredBy(session, "LIST", steps), std::move(name),
                                  std::move(attack), std::move(outcome));
  row.check = [](const JSONValue& result) { EXPECT_EQ(result["count"], JSONValue(1)); };
  return row;
}

/// Lines of 40 bytes: together they are more than the program may take.
ServerAttack millionLines() {
  ServerAttack row = beforeTheFolder("millionLines", "a million untagged lines before an answer",
                                     "passes over them; keeps none of them",
                                     {answer("* OK " + std::string(33, '.') + "\r\n", 1000000)});
  row.peakMegabytes = 30;
  return row;
}

ServerAttack fiftyMegabytes() {
  constexpr std::size_t piece = std::size_t{64} * 1024;
  ServerAttack row = beforeTheFolder(
      "fiftyMegabytes", "a line of 50 megabytes in pieces of 64 KiB", "reads it once",
      {answer("* OK "), answer(std::string(piece, 'x'), 50000000 / piece + 1), answer("\r\n")});
  row.peakMegabytes = 250;
  return row;
}

}  // namespace

std::vector<Attack> lineAttacks() {
  constexpr std::size_t megabyte = 1000000;
  return byServer({
      beforeTheFolder("emptyLines", "empty lines before an answer", "passes over them",
                      {answer("\r\n", 1000)}),
      beforeTheFolder("bareLineFeeds", "lines that end in a line feed alone",
                      "takes them for a part of the next line",
                      {answer("* OK one\n* OK two\n* OK three\r\n")}),
      beforeTheFolder("zeroBytes", "a line with zero bytes and bytes that are no UTF-8", "passes over it",
                      {answer(std::string("* OK \0\0 \xFF\xFE\x80\r\n", 13))}),
      beforeTheFolder("oneMegabyteByteByByte", "a line of one megabyte in pieces of one byte",
                      "reads it in linear time",
                      {answer("* OK "), answerSlowly(std::string(megabyte, 'x')), answer("\r\n")}),
      fiftyMegabytes(),
      millionLines(),
  });
}

}  // namespace tarnwell::test
