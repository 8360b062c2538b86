#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "IMAP/Connection/LineAssembler.h"
#include "IMAP/Responses/IMAPParser.h"

namespace tarnwell {
namespace {

std::optional<IMAPMessage> messageOf(std::string_view response) {
  const IMAPTokens tokens = IMAPParser::tokenize(response);
  return IMAPParser::parseFetchMessage(tokens.elements());
}

/// One line for the table, with only what differs from an empty message: uid, flags, internal date,
/// subject, section of the text, attachments.
std::string described(std::string_view response) {
  const std::optional<IMAPMessage> message = messageOf(response);
  if (!message) {
    return "absent";
  }
  std::string line = std::to_string(message->uid);
  for (const std::string& flag : message->flags) {
    line += " flag:" + flag;
  }
  line += message->internalDate ? " date:" + *message->internalDate : "";
  line += message->envelope.subject ? " subject:" + *message->envelope.subject : "";
  line += message->bodyInfo.preferredText ? " text:" + message->bodyInfo.preferredText->section : "";
  line += message->hasAttachments() ? " attachments" : "";
  return line;
}

struct Row {
  std::string response;
  std::string message;
};

void expectMessages(const std::vector<Row>& rows) {
  for (const Row& row : rows) {
    EXPECT_EQ(described(row.response), row.message) << row.response;
  }
}

TEST(FetchReader, readsAMessage) {
  const std::optional<IMAPMessage> message = messageOf(
      "* 12 FETCH (FLAGS (\\Seen $Work) INTERNALDATE \"17-Jul-1996 02:44:25 -0700\" RFC822.SIZE 4286 "
      "ENVELOPE (\"Wed, 17 Jul 1996 02:23:25 -0700 (PDT)\" {10}\r\nIMAP4rev1? "
      "((\"Terry Gray\" NIL \"gray\" \"cac.washington.edu\")) NIL NIL NIL NIL NIL NIL "
      "\"<B27397@example.org>\") "
      "BODYSTRUCTURE ((\"TEXT\" \"PLAIN\" (\"CHARSET\" \"US-ASCII\") NIL NIL \"QUOTED-PRINTABLE\" 3028 92)"
      "(\"APPLICATION\" \"PDF\" NIL NIL NIL \"BASE64\" 4554) \"MIXED\") UID 4711)");
  IMAPMessage expected;
  expected.uid = 4711;
  expected.flags = {"\\Seen", "$Work"};
  expected.internalDate = "17-Jul-1996 02:44:25 -0700";
  expected.envelope.date = "Wed, 17 Jul 1996 02:23:25 -0700 (PDT)";
  expected.envelope.subject = "IMAP4rev1?";
  expected.envelope.from = {{"Terry Gray", "gray", "cac.washington.edu"}};
  expected.envelope.messageID = "<B27397@example.org>";
  expected.headerBytes = {.subject = "IMAP4rev1?", .sender = "Terry Gray"};
  expected.bodyInfo.hasAttachments = true;
  expected.bodyInfo.preferredText = {{"1", "quoted-printable", "US-ASCII", false}};
  EXPECT_TRUE(message == expected);
}

TEST(FetchReader, readsWhatTheLineAssemblerDelivers) {
  const std::string response =
      "* 1 FETCH (BODY[1] {12}\r\nUID 1) {3}\r\n UID {2}\r\n17 ENVELOPE (NIL {4}\r\n\"(\r\n))";
  LineAssembler assembler;
  for (const char byte : response + "\r\n") {
    assembler.append({&byte, 1});
  }
  const std::optional<std::string> line = assembler.next();
  ASSERT_EQ(line, response);
  const std::optional<IMAPMessage> message = messageOf(*line);
  ASSERT_TRUE(message);
  EXPECT_EQ(message->uid, 17U);
  EXPECT_EQ(message->envelope.subject, "\"(\r\n");
}

TEST(FetchReader, messageWithOnlyAUIDHasTheDefaults) {
  const std::optional<IMAPMessage> message = messageOf("* 1 FETCH (UID 17)");
  IMAPMessage expected;
  expected.uid = 17;
  ASSERT_TRUE(message);
  EXPECT_TRUE(*message == expected);
  EXPECT_TRUE(message->envelope == IMAPEnvelope::empty);
  EXPECT_TRUE(message->bodyInfo == IMAPBodyInfo::unknown);
}

TEST(FetchReader, findsTheAttributesAfterTheFirstWordFETCH) {
  expectMessages({
      {"* 1 FETCH (UID 17)", "17"},
      {"* 1 fetch (UID 17)", "17"},
      {"* 1 \"Fetch\" (UID 17)", "17"},
      {"FETCH (UID 17)", "17"},
      {"* 1 FETCH (UID 17) FETCH (UID 18)", "17"},
      {"* 1 FETCH (UID 17) trailing", "17"},
      {"* 1 FETCH (UID 17", "17"},
      {"* 1 FETCH FETCH (UID 17)", "absent"},
      {"* 1 FETCH NIL (UID 17)", "absent"},
      {"* 1 FETCH UID 17", "absent"},
      {"* 1 FETCH", "absent"},
      {"* 1 (FETCH (UID 17))", "absent"},
      {"* 1 FETCHED (UID 17)", "absent"},
      {"* 1 EXPUNGE", "absent"},
      {"", "absent"},
  });
}

TEST(FetchReader, noReadableUIDIsNoMessage) {
  expectMessages({
      {"* 1 FETCH ()", "absent"},
      {"* 1 FETCH (FLAGS (\\Seen))", "absent"},
      {"* 1 FETCH (UID)", "absent"},
      {"* 1 FETCH (UID NIL)", "absent"},
      {"* 1 FETCH (UID (17))", "absent"},
      {"* 1 FETCH (UID \"\")", "absent"},
      {"* 1 FETCH (UID 4294967296)", "absent"},
      {"* 1 FETCH (UID 99999999999999999999)", "absent"},
      {"* 1 FETCH (UID -1)", "absent"},
      {"* 1 FETCH (UID -0)", "absent"},
      {"* 1 FETCH (UID +)", "absent"},
      {"* 1 FETCH (UID ++5)", "absent"},
      {"* 1 FETCH (UID +-5)", "absent"},
      {"* 1 FETCH (UID 17x)", "absent"},
      {"* 1 FETCH (UID \" 17\")", "absent"},
      {"* 1 FETCH (UID 0x11)", "absent"},
      {"* 1 FETCH (UID \xEF\xBC\x91)", "absent"},  // a full-width digit
      {"* 1 FETCH (\"UID\" 17)", "absent"},
  });
}

TEST(FetchReader, readsUnsigned32BitUIDs) {
  expectMessages({
      {"* 1 FETCH (UID 4294967295)", "4294967295"},
      {"* 1 FETCH (UID 0)", "0"},
      {"* 1 FETCH (UID +5)", "5"},
      {"* 1 FETCH (UID \"17\")", "17"},
      {"* 1 FETCH (UID {2}\r\n17)", "17"},
      {"* 1 FETCH (UID 00000000000000000017)", "17"},
      {"* 1 FETCH (uid 17)", "17"},
  });
}

TEST(FetchReader, unknownNamesArePassedOverWithTheirValue) {
  expectMessages({
      {"* 1 FETCH (UID 17 BODY[1] {5}\r\nhello)", "17"},
      {"* 1 FETCH (BODY[1] {6}\r\nUID 18 UID 17)", "17"},
      {"* 1 FETCH (RFC822.SIZE UID UID 17)", "17"},
      {"* 1 FETCH (MODSEQ (UID 18) UID 17)", "17"},
      {"* 1 FETCH (BODY[TEXT] ((\"text\" \"plain\")) UID 17)", "17"},
      {"* 1 FETCH (BODY.PEEK[] ((\"text\" \"plain\")) UID 17)", "17"},
      {"* 1 FETCH (BODY[1]<0> \"UID\" UID 17)", "17"},
      {"* 1 FETCH (X UID 17)", "absent"},
      {"* 1 FETCH (UID 17 X)", "17"},
  });
}

TEST(FetchReader, elementThatIsNoNameIsSkippedAlone) {
  expectMessages({
      {"* 1 FETCH (\"FLAGS\" UID 17)", "17"},
      {"* 1 FETCH (NIL UID 17)", "17"},
      {"* 1 FETCH ((FLAGS (x)) UID 17)", "17"},
      {"* 1 FETCH (UID 17 \"x\" FLAGS (a))", "17 flag:a"},
      {"* 1 FETCH (() () UID 17)", "17"},
  });
}

TEST(FetchReader, valueOfTheWrongKindIsSkipped) {
  expectMessages({
      {"* 1 FETCH (UID 17 FLAGS NIL)", "17"},
      {"* 1 FETCH (UID 17 FLAGS \\Seen)", "17"},
      {"* 1 FETCH (UID 17 FLAGS)", "17"},
      {"* 1 FETCH (UID 17 FLAGS (NIL (a) b \"c d\"))", "17 flag:b flag:c d"},
      {"* 1 FETCH (UID 17 INTERNALDATE NIL)", "17"},
      {"* 1 FETCH (UID 17 INTERNALDATE (x))", "17"},
      {"* 1 FETCH (UID 17 INTERNALDATE never)", "17 date:never"},
      {"* 1 FETCH (UID 17 INTERNALDATE \"\")", "17 date:"},
      {"* 1 FETCH (UID 17 ENVELOPE \"x\")", "17"},
      {"* 1 FETCH (UID 17 ENVELOPE NIL)", "17"},
      {"* 1 FETCH (UID 17 BODYSTRUCTURE NIL)", "17"},
      {"* 1 FETCH (UID 17 BODY \"x\")", "17"},
  });
}

TEST(FetchReader, readsBODYLikeBODYSTRUCTURE) {
  expectMessages({
      {"* 1 FETCH (UID 17 BODY (\"text\" \"plain\" NIL NIL NIL \"7bit\" 1 1))", "17 text:1"},
      {"* 1 FETCH (UID 17 body (\"image\" \"png\"))", "17 attachments"},
      {"* 1 FETCH (UID 17 bodystructure (\"text\" \"plain\"))", "17 text:1"},
  });
}

TEST(FetchReader, laterPairOfTheSameNameWins) {
  expectMessages({
      {"* 1 FETCH (UID 17 UID 18)", "18"},
      {"* 1 FETCH (UID 17 FLAGS (a b) FLAGS (c))", "17 flag:c"},
      {"* 1 FETCH (UID 17 FLAGS (a) FLAGS ())", "17"},
      {"* 1 FETCH (UID 17 INTERNALDATE a INTERNALDATE b)", "17 date:b"},
      {"* 1 FETCH (UID 17 ENVELOPE (NIL a) ENVELOPE (NIL b))", "17 subject:b"},
      {"* 1 FETCH (UID 17 ENVELOPE (NIL a) ENVELOPE ())", "17"},
      {"* 1 FETCH (UID 17 BODY (image png) BODYSTRUCTURE (text plain))", "17 text:1"},
  });
}

TEST(FetchReader, unreadablePairAfterAReadableOneChangesNothing) {
  expectMessages({
      {"* 1 FETCH (UID 17 UID x)", "17"},
      {"* 1 FETCH (UID 17 FLAGS (a) FLAGS NIL)", "17 flag:a"},
      {"* 1 FETCH (UID 17 INTERNALDATE a INTERNALDATE NIL)", "17 date:a"},
      {"* 1 FETCH (UID 17 ENVELOPE (NIL a) ENVELOPE NIL)", "17 subject:a"},
  });
}

TEST(FetchReader, responseCutAtEveryPositionKeepsTheUIDBeforeTheCut) {
  const std::string response =
      "* 1 FETCH (UID 17 FLAGS (\\Seen) ENVELOPE (\"d\" \"s\" ((NIL NIL \"m\" \"h\"))) BODYSTRUCTURE "
      "((\"text\" \"plain\" (\"charset\" \"utf-8\") NIL NIL \"8bit\" 1 1) \"mixed\") BODY[1] {3}\r\nabc)";
  for (std::size_t length = 0; length <= response.size(); ++length) {
    const std::vector<char> cut(response.begin(), response.begin() + static_cast<std::ptrdiff_t>(length));
    const std::optional<IMAPMessage> message = messageOf({cut.data(), cut.size()});
    const std::size_t firstDigit = response.find("17");
    ASSERT_EQ(message.has_value(), length > firstDigit) << "cut at " << length;
    EXPECT_EQ(message && message->uid == 17, length >= firstDigit + 2) << "cut at " << length;
  }
}

TEST(FetchReader, makesRoomForTheFlagsThatAreThere) {
  constexpr std::size_t count = 1025;
  std::string response = "* 1 FETCH (UID 17 FLAGS (";
  for (std::size_t number = 0; number < count; ++number) {
    response += "a \"b\\c\" NIL (d e) ";
  }
  const std::optional<IMAPMessage> message = messageOf(response + "))");
  ASSERT_TRUE(message);
  EXPECT_EQ(message->flags.size(), 2 * count);
  EXPECT_EQ(message->flags.capacity(), 2 * count);
}

TEST(FetchReader, readsAMillionOpenParentheses) {
  const std::string open(1'000'000, '(');
  EXPECT_EQ(described("* 1 FETCH (UID 17 FLAGS " + open), "17");
  EXPECT_EQ(described("* 1 FETCH (UID 17 ENVELOPE " + open), "17");
  EXPECT_EQ(described("* 1 FETCH (UID 17 BODYSTRUCTURE " + open), "17");
  EXPECT_EQ(described("* 1 FETCH (UID 17 " + open), "17");
  EXPECT_EQ(described("* 1 FETCH " + open), "absent");
}

}  // namespace
}  // namespace tarnwell
