#include "IMAP/Responses/IMAPMessage.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

namespace tarnwell {
namespace {

TEST(IMAPAddress, displaysNameAndEmail) {
  struct Row {
    IMAPAddress address;
    std::optional<std::string> email;
    std::string display;
  };
  const std::vector<Row> rows{
      {{std::nullopt, "a", "example.org"}, "a@example.org", "a@example.org"},
      {{"Alice", "a", "example.org"}, "a@example.org", "Alice <a@example.org>"},
      {{"", "a", "example.org"}, "a@example.org", "a@example.org"},
      {{" ", "a", "example.org"}, "a@example.org", "  <a@example.org>"},
      {{"Alice", "a", std::nullopt}, std::nullopt, "Alice"},
      {{"Alice", std::nullopt, "example.org"}, std::nullopt, "Alice"},
      {{"", "a", std::nullopt}, std::nullopt, ""},
      {{std::nullopt, "a", std::nullopt}, std::nullopt, ""},
      {{std::nullopt, std::nullopt, std::nullopt}, std::nullopt, ""},
      {{"Alice", "", ""}, "@", "Alice <@>"},
      {{std::nullopt, "", "example.org"}, "@example.org", "@example.org"},
      {{std::nullopt, "a", ""}, "a@", "a@"},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(nlohmann::json(row.address).dump());
    EXPECT_EQ(row.address.email(), row.email);
    EXPECT_EQ(row.address.display(), row.display);
  }
}

TEST(IMAPAddress, comesBackFromItsJSON) {
  const std::vector<std::pair<IMAPAddress, std::string>> rows{
      {{"Alice", "a", "example.org"}, R"({"host":"example.org","mailbox":"a","name":"Alice"})"},
      {{std::nullopt, "", std::nullopt}, R"({"mailbox":""})"},
      {{}, "{}"},
  };
  for (const auto& [address, text] : rows) {
    EXPECT_EQ(nlohmann::json(address).dump(), text);
    EXPECT_TRUE(nlohmann::json::parse(text).get<IMAPAddress>() == address) << text;
  }
  EXPECT_TRUE(nlohmann::json::parse(R"({"name":null})").get<IMAPAddress>() == IMAPAddress());
  EXPECT_THROW(nlohmann::json::parse(R"({"name":1})").get<IMAPAddress>(), nlohmann::json::exception);
}

TEST(IMAPEnvelope, emptyOneWritesOnlyItsLists) {
  const std::string text = R"({"bcc":[],"cc":[],"from":[],"replyTo":[],"sender":[],"to":[]})";
  EXPECT_EQ(nlohmann::json(IMAPEnvelope::empty).dump(), text);
  EXPECT_TRUE(nlohmann::json::parse(text).get<IMAPEnvelope>() == IMAPEnvelope::empty);
}

TEST(IMAPEnvelope, comesBackFromItsJSON) {
  const IMAPEnvelope envelope{
      .date = "d",
      .subject = "s",
      .from = {{"f", "m", "h"}},
      .sender = {{"se", "m", "h"}},
      .replyTo = {{"r", "m", "h"}},
      .to = {{"t", "m", "h"}, {}},
      .cc = {{"c", "m", "h"}},
      .bcc = {{"b", "m", "h"}},
      .inReplyTo = "i",
      .messageID = "id",
  };
  const nlohmann::json json = envelope;
  EXPECT_EQ(json.size(), 10U);
  EXPECT_EQ(json["to"].dump(), R"([{"host":"h","mailbox":"m","name":"t"},{}])");
  EXPECT_EQ(json["replyTo"][0]["name"], "r");
  EXPECT_EQ(json["messageID"], "id");
  EXPECT_TRUE(json.get<IMAPEnvelope>() == envelope);
}

TEST(IMAPEnvelope, missingListThrows) {
  for (const std::string key : {"from", "sender", "replyTo", "to", "cc", "bcc"}) {
    nlohmann::json json = IMAPEnvelope::empty;
    json.erase(key);
    EXPECT_THROW(json.get<IMAPEnvelope>(), nlohmann::json::exception) << key;
  }
}

TEST(IMAPBodyInfo, unknownTellsNothing) {
  EXPECT_FALSE(IMAPBodyInfo::unknown.hasAttachments);
  EXPECT_FALSE(IMAPBodyInfo::unknown.preferredText);
}

TEST(IMAPMessage, isUnreadWithoutTheFlagSeen) {
  const std::vector<std::pair<std::vector<std::string>, bool>> rows{
      {{}, true},
      {{"\\Answered", "\\SEEN"}, false},
      {{"\\seen"}, false},
      {{"\\Seen"}, false},
      {{"\\Answered"}, true},
      {{"Seen"}, true},
      {{"\\Seen2", "\\See", ""}, true},
  };
  for (const auto& [flags, unread] : rows) {
    IMAPMessage message;
    message.flags = flags;
    EXPECT_EQ(message.isUnread(), unread) << ::testing::PrintToString(flags);
  }
}

TEST(IMAPMessage, hasTheAttachmentsOfItsBody) {
  IMAPMessage message;
  EXPECT_FALSE(message.hasAttachments());
  message.bodyInfo.hasAttachments = true;
  EXPECT_TRUE(message.hasAttachments());
}

}  // namespace
}  // namespace tarnwell
