#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "IMAP/Responses/IMAPParser.h"

namespace tarnwell {
namespace {

IMAPEnvelope envelopeOf(const std::string& elements) {
  return IMAPParser::parseEnvelope(IMAPParser::tokenize(elements).elements());
}

/// One line for the table: the fields that are not empty, as JSON.
std::string described(const std::string& elements) {
  nlohmann::json fields = envelopeOf(elements);
  for (auto field = fields.begin(); field != fields.end();) {
    field = field->is_array() && field->empty() ? fields.erase(field) : std::next(field);
  }
  return fields.dump();
}

struct Row {
  std::string elements;
  std::string fields;
};

void expectEnvelopes(const std::vector<Row>& rows) {
  for (const Row& row : rows) {
    EXPECT_EQ(described(row.elements), row.fields) << row.elements;
  }
}

TEST(EnvelopeReader, readsTheFieldsInTheirOrder) {
  const auto address = [](const std::string& name) {
    return "((\"" + name + "\" NIL \"" + name + ".box\" \"" + name + ".host\"))";
  };
  const auto expected = [](const std::string& name) {
    return std::vector<IMAPAddress>{{name, name + ".box", name + ".host"}};
  };
  const IMAPEnvelope envelope =
      envelopeOf("\"Wed, 17 Jul 1996 02:23:25 -0700 (PDT)\" \"Weekly minutes\" " + address("from") +
                 address("sender") + address("replyTo") + address("to") + address("cc") + address("bcc") +
                 "\"<in-reply-to>\" \"<message-id>\"");
  EXPECT_EQ(envelope.date, "Wed, 17 Jul 1996 02:23:25 -0700 (PDT)");
  EXPECT_EQ(envelope.subject, "Weekly minutes");
  EXPECT_TRUE(envelope.from == expected("from"));
  EXPECT_TRUE(envelope.sender == expected("sender"));
  EXPECT_TRUE(envelope.replyTo == expected("replyTo"));
  EXPECT_TRUE(envelope.to == expected("to"));
  EXPECT_TRUE(envelope.cc == expected("cc"));
  EXPECT_TRUE(envelope.bcc == expected("bcc"));
  EXPECT_EQ(envelope.inReplyTo, "<in-reply-to>");
  EXPECT_EQ(envelope.messageID, "<message-id>");
}

TEST(EnvelopeReader, missingFieldsAreEmpty) {
  EXPECT_TRUE(envelopeOf("") == IMAPEnvelope::empty);
  EXPECT_TRUE(envelopeOf("NIL NIL NIL NIL NIL NIL NIL NIL NIL NIL") == IMAPEnvelope::empty);
  expectEnvelopes({
      {"d", R"({"date":"d"})"},
      {"NIL s", R"({"subject":"s"})"},
      {"NIL NIL NIL NIL NIL NIL NIL NIL i", R"({"inReplyTo":"i"})"},
      {"NIL NIL NIL NIL NIL NIL NIL NIL NIL m more", R"({"messageID":"m"})"},
  });
}

TEST(EnvelopeReader, fieldOfTheWrongKindIsEmpty) {
  EXPECT_TRUE(envelopeOf("(d) (s) from \"sender\" replyTo to cc bcc (i) (m)") == IMAPEnvelope::empty);
  expectEnvelopes({
      {"(d) s ((NIL NIL m h))", R"({"from":[{"host":"h","mailbox":"m"}],"subject":"s"})"},
  });
}

TEST(EnvelopeReader, textsMayBeEmptyAtomsStringsOrLiterals) {
  expectEnvelopes({
      {"\"\" \"\"", R"({"date":"","subject":""})"},
      {"a b", R"({"date":"a","subject":"b"})"},
      {"{3}\r\na\"b {2}\r\n()", R"json({"date":"a\"b","subject":"()"})json"},
  });
}

TEST(EnvelopeReader, decodesOnlySubjectAndDisplayNames) {
  const std::string word = "\"=?UTF-8?Q?caf=C3=A9?=\"";
  const std::string raw = R"("=?UTF-8?Q?caf=C3=A9?=")";
  expectEnvelopes({
      {word + " " + word, R"({"date":)" + raw + R"(,"subject":"café"})"},
      {"NIL NIL ((" + word + " NIL " + word + " " + word + "))",
       R"({"from":[{"host":)" + raw + R"(,"mailbox":)" + raw + R"(,"name":"café"}]})"},
      {"NIL NIL NIL NIL NIL NIL NIL NIL " + word + " " + word,
       R"({"inReplyTo":)" + raw + R"(,"messageID":)" + raw + "}"},
  });
}

TEST(EnvelopeReader, addressNeedsFourFields) {
  expectEnvelopes({
      {"NIL NIL ((n NIL m h))", R"({"from":[{"host":"h","mailbox":"m","name":"n"}]})"},
      {"NIL NIL ((n NIL m h more))", R"({"from":[{"host":"h","mailbox":"m","name":"n"}]})"},
      {"NIL NIL ((n route m h))", R"({"from":[{"host":"h","mailbox":"m","name":"n"}]})"},
      {"NIL NIL ((NIL NIL NIL NIL))", R"({"from":[{}]})"},
      {"NIL NIL (((n) NIL (m) (h)))", R"({"from":[{}]})"},
      {"NIL NIL ((\"\" NIL \"\" \"\"))", R"({"from":[{"host":"","mailbox":"","name":""}]})"},
      {"NIL NIL ((n NIL m))", "{}"},
      {"NIL NIL (())", "{}"},
      {"NIL NIL ()", "{}"},
      {"NIL NIL (n NIL m h)", "{}"},
      {"NIL NIL (NIL x (a NIL b c) \"y\" (d NIL e))", R"({"from":[{"host":"c","mailbox":"b","name":"a"}]})"},
  });
}

// Deliberate: the markers of a group are addresses without a host.
TEST(EnvelopeReader, groupMarkersAreAddresses) {
  expectEnvelopes({
      {"NIL NIL NIL NIL NIL ((NIL NIL \"Team\" NIL) (\"A\" NIL \"a\" \"example.org\") (NIL NIL NIL NIL))",
       R"({"to":[{"mailbox":"Team"},{"host":"example.org","mailbox":"a","name":"A"},{}]})"},
  });
}

TEST(EnvelopeReader, replacesWhatIsNotUTF8) {
  expectEnvelopes({
      {"\"a\xFF\" NIL ((NIL NIL \"m\xC3\" \"h\"))",
       "{\"date\":\"a\xEF\xBF\xBD\",\"from\":[{\"host\":\"h\",\"mailbox\":\"m\xEF\xBF\xBD\"}]}"},
  });
}

TEST(EnvelopeReader, readsManyAddresses) {
  std::string elements = "NIL NIL NIL NIL NIL (";
  for (int number = 0; number < 100'000; ++number) {
    elements += "(NIL NIL \"user" + std::to_string(number) + "\" \"example.org\")";
  }
  const IMAPEnvelope envelope = envelopeOf(elements + ") NIL NIL NIL \"<id>\"");
  ASSERT_EQ(envelope.to.size(), 100'000U);
  EXPECT_EQ(envelope.to.front().email(), "user0@example.org");
  EXPECT_EQ(envelope.to.back().email(), "user99999@example.org");
  EXPECT_EQ(envelope.messageID, "<id>");
}

}  // namespace
}  // namespace tarnwell
