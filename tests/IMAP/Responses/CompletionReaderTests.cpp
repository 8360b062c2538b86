#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "IMAP/Responses/IMAPParser.h"

namespace tarnwell {
namespace {

using Status = IMAPParser::Completion::Status;

/// One line for the table: the status, a colon, the text; "absent" without a result.
std::string completionOf(std::string_view line, std::string_view tag) {
  const std::optional<IMAPParser::Completion> completion = IMAPParser::parseCompletion(line, tag);
  if (!completion) {
    return "absent";
  }
  const char* const status = completion->status == Status::ok   ? "ok"
                             : completion->status == Status::no ? "no"
                                                                : "bad";
  return std::string(status) + ":" + completion->text;
}

struct Row {
  std::string line;
  std::string tag;
  std::string completion;
};

void expectCompletions(const std::vector<Row>& rows) {
  for (const Row& row : rows) {
    EXPECT_EQ(completionOf(row.line, row.tag), row.completion) << row.line;
  }
}

TEST(CompletionReader, readsTheStatusInAnyCase) {
  expectCompletions({
      {"A7 OK done", "A7", "ok:done"},
      {"A7 ok [READ-WRITE] SELECT completed", "A7", "ok:[READ-WRITE] SELECT completed"},
      {"A7 No [TRYCREATE] Mailbox does not exist", "A7", "no:[TRYCREATE] Mailbox does not exist"},
      {"A7 BAD unknown command", "A7", "bad:unknown command"},
      {"A7 bad Unknown Command", "A7", "bad:Unknown Command"},
      {"A7 OK", "A7", "ok:"},
      {"A7 NO ", "A7", "no:"},
      {"A7 BAD", "A7", "bad:"},
  });
}

TEST(CompletionReader, anotherTagOrStatusIsAbsent) {
  expectCompletions({
      {"A7 ok [READ-WRITE] SELECT completed", "A8", "absent"},
      {"a7 OK done", "A7", "absent"},
      {"* OK ready", "A7", "absent"},
      {"A7 PREAUTH", "A7", "absent"},
      {"A7 BYE", "A7", "absent"},
      {"A7 O K", "A7", "absent"},
      {"A7 BA", "A7", "absent"},
      {"A7 O", "A7", "absent"},
      {"A7", "A7", "absent"},
      {"A", "A7", "absent"},
      {"", "A7", "absent"},
      {"A7 \xEF\xBC\xAF\xEF\xBC\xAB done", "A7", "absent"},  // full-width letters
  });
}

// Deliberate: the caller hands over lines of its own tag only, so that prefixes decide.
TEST(CompletionReader, asksForNoBlankAfterTagAndStatus) {
  expectCompletions({
      {"A7OK done", "A7", "ok:done"},
      {"A7 OKdone", "A7", "ok:done"},
      {"A7 NOOP", "A7", "no:OP"},
      {"A7 BADLY", "A7", "bad:LY"},
      {"A70 OK done", "A7", "absent"},
      {"OK done", "", "ok:done"},
  });
}

TEST(CompletionReader, trimsWhiteSpaceAroundTheLineAndBlanksWithin) {
  expectCompletions({
      {" \r\n\tA7 OK done \r\n", "A7", "ok:done"},
      {"A7 \t OK \t done  it ", "A7", "ok:done  it"},
      {"\xE3\x80\x80"
       "A7\xC2\xA0"
       "OK\xE2\x80\x83"
       "done\xC2\xA0\xE2\x80\xA8\xC2\x85",
       "A7", "ok:done"},
      {"A7\xE2\x80\x80\xE2\x80\x8A\xE2\x80\xAF\xE2\x81\x9F\xE1\x9A\x80OK", "A7", "ok:"},
  });
}

TEST(CompletionReader, aLineBreakIsNoBlank) {
  expectCompletions({
      {"A7\nOK done", "A7", "absent"},
      {"A7 \r OK done", "A7", "absent"},
      {"A7 OK \n done", "A7", "ok:\n done"},
      {"A7 OK\xC2\x85"
       "done",
       "A7",
       "ok:\xC2\x85"
       "done"},
  });
}

TEST(CompletionReader, replacesWhatIsNotUTF8) {
  expectCompletions({
      {"A7 NO \xFF"
       "x",
       "A7", "no:\xEF\xBF\xBDx"},
      {"A7 NO \xC2", "A7", "no:\xEF\xBF\xBD"},
  });
}

TEST(CompletionReader, readsAMillionBlanks) {
  const std::string blanks(1'000'000, ' ');
  EXPECT_EQ(completionOf(blanks + "A7" + blanks + "OK" + blanks + "x" + blanks, "A7"), "ok:x");
}

}  // namespace
}  // namespace tarnwell
