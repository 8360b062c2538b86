/// The memory that a message of any size may take, and the memory that stays after very many calls.

#include <gtest/gtest.h>

#include "hostile/ProcessFacts.h"
#include "hostile/ServerAttack.h"
#include "support/Repeated.h"

namespace tarnwell::test {

namespace {

constexpr std::size_t mebibyte = std::size_t{1024} * 1024;

constexpr const char* fetchOfSeven = "UID FETCH 7 (UID FLAGS INTERNALDATE ENVELOPE BODYSTRUCTURE)";

/// One text part; `type` is as in "\"PLAIN\" (\"CHARSET\" \"UTF-8\") NIL NIL \"7BIT\"".
std::string structure(const std::string& type) { return "BODYSTRUCTURE (\"TEXT\" " + type + " 1 1)"; }

/// Bytes that are repeated while they are sent.
struct Bulk {
  std::string block;
  std::size_t times;

  std::size_t size() const { return block.size() * times; }
  Dialogue literal() const { return {answer("{" + std::to_string(size()) + "}\r\n"), answer(block, times)}; }
};

/// So many mebibytes of these bytes. Their number must divide a mebibyte.
Bulk mebibytes(std::size_t count, std::string bytes) {
  const std::size_t inOne = mebibyte / bytes.size();
  return {std::move(bytes), count * inOne};
}

std::string tagged(int number) {
  const std::string digits = std::to_string(number);
  return "A" + std::string(4 - digits.size(), '0') + digits;
}

Dialogue readingOf(const Dialogue& summary, const Dialogue& body) {
  return loginDialogue() + Dialogue{expect(std::string("A0004 ") + fetchOfSeven + "\r\n")} + summary +
         Dialogue{answer("A0004 OK done\r\n"), expect("A0005 UID FETCH 7 (BODY.PEEK[1])\r\n")} + body +
         Dialogue{answer("A0005 OK done\r\n"), expect("A0006 LOGOUT\r\n"), answer("A0006 OK bye\r\n")};
}

Dialogue bodyOf(const std::string& type, const Bulk& bulk) {
  return readingOf(
      {answer("* 1 FETCH (UID 7 " + structure(type) + ")\r\n")},
      Dialogue{answer("* 1 FETCH (UID 7 BODY[1] ")} + bulk.literal() + Dialogue{answer(")\r\n")});
}

/// The session of `search_inbox` without arguments. These steps send the summary of its one message.
Dialogue searching(const Dialogue& summary) {
  return loginDialogue() +
         Dialogue{expect("A0004 UID SEARCH ALL\r\n"), answer("* SEARCH 7\r\nA0004 OK done\r\n"),
                  expect(std::string("A0005 ") + fetchOfSeven + "\r\n")} +
         summary +
         Dialogue{answer("A0005 OK done\r\n"), expect("A0006 UID FETCH 7 (BODY.PEEK[1])\r\n"),
                  answer("* 1 FETCH (UID 7 BODY[1] {12}\r\nSee you soon)\r\nA0006 OK done\r\n"),
                  expect("A0007 LOGOUT\r\n"), answer("A0007 OK bye\r\n")};
}

/// The envelope is (date subject from sender reply-to to cc bcc in-reply-to message-id).
Dialogue summaryWith(const std::string& before, const Bulk& bulk, const std::string& after) {
  const std::string plain = structure("\"PLAIN\" NIL NIL NIL \"7BIT\"");
  return Dialogue{answer("* 1 FETCH (UID 7 ENVELOPE (" + before)} + bulk.literal() +
         Dialogue{answer(after + ") " + plain + ")\r\n")};
}

Dialogue envelopeOf(const std::string& before, const Bulk& bulk, const std::string& after) {
  return readingOf(summaryWith(before, bulk, after), {answer("* 1 FETCH (UID 7 BODY[1] {2}\r\nok)\r\n")});
}

/// The most memory that the program has ever held, in bytes.
std::size_t peakOf(const ServeProgram& program) {
  return static_cast<std::size_t>(processFigure(program.processID(), "VmHWM")) * 1024;
}

/// What a call may add to the memory that an ordinary call takes. A text whose bytes become three each needs
/// four times its size: the bytes as they came, and the text.
constexpr const char* boundInWords = "takes at most four times its size and 4 MiB more than an ordinary call";
std::size_t boundFor(const Bulk& bulk) { return 4 * bulk.size() + 4 * mebibyte; }

/// The result of a call that succeeds, after an ordinary call. Under a sanitizer the memory is not checked,
/// because its shadow and quarantine distort the figure.
JSONValue callWithinBound(const Bulk& bulk, const Dialogue& dialogue, std::string_view tool,
                          const JSONObject& arguments) {
  Home home;
  ServeProgram program(home);
  expectSound(home, program);
  const std::size_t ordinary = peakOf(program);
  FakeIMAPServer server(dialogue);
  home.useServer(server.port());
  const ToolAnswer answer = program.call(tool, arguments);
  EXPECT_EQ(answer.error(), "");
  EXPECT_EQ(server.mismatch(), "");
  const std::size_t taken = peakOf(program) - ordinary;
  std::cout << "memory: " << ordinary / 1024 << " KiB and " << taken / 1024 << " KiB for a literal of "
            << bulk.size() / 1024 << " KiB\n";
  if (!isSanitized) {
    EXPECT_LE(taken, boundFor(bulk));
  }
  expectSound(home, program);
  expectQuietEnd(program);
  return answer.result;
}

/// The text begins with these words.
void readBigMessage(const Dialogue& dialogue, const Bulk& bulk, std::string_view beginning = "") {
  const JSONValue message = callWithinBound(bulk, dialogue, "get_message_body", {{"uid", 7}});
  EXPECT_EQ(message["returned"], JSONValue(true)) << message.serialized().substr(0, 1000);
  EXPECT_TRUE(message["body"].stringValue().value_or("").starts_with(beginning));
}

/// The result contains the subject twice: as text for people and as a value.
void listBigSubject(const Bulk& bulk) {
  const Dialogue dialogue = searching(summaryWith("NIL ", bulk, " NIL NIL NIL NIL NIL NIL NIL NIL"));
  const JSONValue result = callWithinBound(bulk, dialogue, "search_inbox", {});
  ASSERT_EQ(result["count"], JSONValue(1));
  const std::optional<std::string> subject = (*result["messages"].arrayValue())[0]["subject"].stringValue();
  EXPECT_TRUE(subject == repeated(bulk.block, bulk.times));
}

/// Twenty messages with this body each, whose fetches are all under way at the same time.
void searchBigBodies(const Bulk& bulk) {
  constexpr int count = 20;
  std::string found = "* SEARCH";
  std::string asked;
  std::string summaries;
  std::string commands;
  for (int uid = count; uid > 0; --uid) {
    const std::string number = std::to_string(uid);
    found += " " + number;
    asked += (asked.empty() ? "" : ",") + number;
    summaries += "* 1 FETCH (UID " + number + " " + structure("\"PLAIN\" NIL NIL NIL \"8BIT\"") + ")\r\n";
    commands += tagged(6 + count - uid) + " UID FETCH " + number + " (BODY.PEEK[1])\r\n";
  }
  Dialogue dialogue =
      loginDialogue() +
      Dialogue{expect("A0004 UID SEARCH ALL\r\n"), answer(found + "\r\nA0004 OK\r\n"),
               expect("A0005 UID FETCH " + asked + " (UID FLAGS INTERNALDATE ENVELOPE BODYSTRUCTURE)\r\n"),
               answer(summaries + "A0005 OK\r\n"), expect(commands)};
  for (int uid = count; uid > 0; --uid) {
    dialogue = dialogue + Dialogue{answer("* 1 FETCH (UID " + std::to_string(uid) + " BODY[1] ")} +
               bulk.literal() + Dialogue{answer(")\r\n" + tagged(6 + count - uid) + " OK\r\n")};
  }
  const std::string end = tagged(6 + count);
  dialogue = dialogue + Dialogue{expect(end + " LOGOUT\r\n"), answer(end + " OK\r\n")};
  EXPECT_EQ(callWithinBound(bulk, dialogue, "search_inbox", {})["count"], JSONValue(count));
}

Attack bigBody(const std::string& name, const std::string& attack, const std::string& type, Bulk bulk,
               const std::string& beginning = "") {
  return {name, attack, boundInWords,
          [type, bulk = std::move(bulk), beginning] { readBigMessage(bodyOf(type, bulk), bulk, beginning); }};
}

std::vector<Attack> bigMessages() {
  const std::string words = "Thirty-two bytes of a long text\n";
  const std::string coded = "6enp6enp6enp6enp6enp6enp6enp\r\n\r\n";
  const std::string markup = "<p>c\xE9 \xE8\xE9\xE0&amp;&nbsp;<b>x</b></p>";
  const Bulk identifier = mebibytes(64, words);
  const Bulk subject = mebibytes(8, words);
  const Bulk listedSubject = mebibytes(4, "Thirty-two bytes of a long text.");
  const std::string expanding = repeated("\uFDFA", 10) + "ab";
  const Bulk expandingSubject = mebibytes(1, expanding);
  const std::string marks = repeated("\u0F77", 10) + "\u0301";
  const std::string katakana = "\x1B(I" + std::string(29, '1');
  return {
      bigBody("bodyOf25MiB", "a body of 25 MiB", R"("PLAIN" ("CHARSET" "UTF-8") NIL NIL "7BIT")",
              mebibytes(25, words)),
      bigBody("bodyOf64MiB", "a body of 64 MiB", R"("PLAIN" ("CHARSET" "UTF-8") NIL NIL "7BIT")",
              mebibytes(64, words)),
      bigBody("html", "HTML of 8 MiB in ISO 8859-1", R"("HTML" ("CHARSET" "ISO-8859-1") NIL NIL "8BIT")",
              mebibytes(8, markup)),
      bigBody("base64", "HTML of 8 MiB in base64", R"("HTML" ("CHARSET" "ISO-8859-1") NIL NIL "BASE64")",
              mebibytes(8, coded)),
      bigBody("cyrillic", "a body of 8 MiB, each byte of which becomes two",
              R"("PLAIN" ("CHARSET" "WINDOWS-1251") NIL NIL "8BIT")", mebibytes(8, std::string(32, '\xE9'))),
      bigBody("threefold", "a body of 8 MiB, each byte of which becomes three",
              R"("PLAIN" ("CHARSET" "WINDOWS-1252") NIL NIL "8BIT")", mebibytes(8, std::string(32, '\x80')),
              "€€€"),
      bigBody("halfWidthKatakana", "half-width katakana of 8 MiB in ISO-2022-JP",
              R"("PLAIN" ("CHARSET" "ISO-2022-JP") NIL NIL "7BIT")", mebibytes(8, katakana), "ｱｱｱ"),
      bigBody("oneCharacter", "a body of 8 MiB that is one character with millions of vowels",
              R"("PLAIN" ("CHARSET" "UTF-8") NIL NIL "8BIT")", mebibytes(8, marks)),
      {"messageID", "a message ID of 64 MiB", boundInWords,
       [identifier] {
         readBigMessage(envelopeOf("NIL NIL NIL NIL NIL NIL NIL NIL NIL ", identifier, ""), identifier);
       }},
      {"subject", "a subject of 8 MiB", boundInWords,
       [subject] {
         readBigMessage(envelopeOf("NIL ", subject, " NIL NIL NIL NIL NIL NIL NIL NIL"), subject);
       }},
      {"expandingSubject", "a subject of 1 MiB in characters that stand for eighteen others", boundInWords,
       [expandingSubject] {
         readBigMessage(envelopeOf("NIL ", expandingSubject, " NIL NIL NIL NIL NIL NIL NIL NIL"),
                        expandingSubject);
       }},
      {"twentyBodies", "twenty bodies of 4 MiB each in a search",
       "holds one at a time; the same bound, for one",
       [found = mebibytes(4, words)] { searchBigBodies(found); }},
      {"listedSubject", "a subject of 4 MiB in a list of results", "gives it whole; the same bound",
       [listedSubject] { listBigSubject(listedSubject); }},
  };
}

/// The resources that a process holds.
struct Holdings {
  long kilobytes;
  long descriptors;
  long threads;
};

Holdings holdingsOf(const ServeProgram& program) {
  const pid_t process = program.processID();
  return {processFigure(process, "VmRSS"), program.view().descriptorCount(),
          processFigure(process, "Threads")};
}

/// A hundred calls make ten sessions over TLS and thirty requests to the secret service, and sixty of the
/// calls are refused.
void playHundredCalls(ServeProgram& program) {
  for (int number = 0; number < 100; ++number) {
    if (number % 10 == 0) {
      EXPECT_EQ(program.call("search_inbox").result["count"], JSONValue(1));
    } else if (number % 10 <= 3) {
      EXPECT_EQ(program.call("get_status").result["configured"], JSONValue(true));
    } else {
      EXPECT_TRUE(program.call(number % 2 == 0 ? "get_message_body" : "no_such_tool").isError);
    }
  }
}

/// The first hundred calls fill the log's 500 entries in memory and load everything that is loaded on demand.
/// So the resources are compared only after them.
void callTenThousandTimes() {
  FakeIMAPServer server(searching(
      {answer("* 1 FETCH (UID 7 FLAGS () ENVELOPE (NIL \"Lunch\" NIL NIL NIL NIL NIL NIL NIL NIL) " +
              structure("\"PLAIN\" NIL NIL NIL \"7BIT\"") + ")\r\n")}));
  Home home;
  home.useServer(server.port());
  ServeProgram program(home);
  playHundredCalls(program);
  const Holdings before = holdingsOf(program);
  for (int hundred = 1; hundred < 100; ++hundred) {
    playHundredCalls(program);
  }
  const Holdings after = holdingsOf(program);
  EXPECT_EQ(server.acceptCount(), 1000);
  EXPECT_EQ(server.mismatch(), "");
  std::cout << "after 100 calls " << before.kilobytes << " kB, after 10,000 " << after.kilobytes << " kB\n";
  EXPECT_EQ(after.descriptors, before.descriptors);
  EXPECT_EQ(after.threads, before.threads);
  if (!isSanitized) {
    EXPECT_LT(after.kilobytes - before.kilobytes, 1000);
  }
  expectSound(home, program);
  expectQuietEnd(program);
}

}  // namespace

std::vector<Attack> memoryAttacks() { return bigMessages(); }

std::vector<Attack> enduranceAttacks() {
  return {{"tenThousandCalls", "10,000 tool calls, 1000 of them over TLS",
           "grows by less than 1 MB after the first hundred, and by no descriptor and no thread",
           callTenThousandTimes}};
}

}  // namespace tarnwell::test
