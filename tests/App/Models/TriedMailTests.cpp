#include "App/Models/TriedMail.h"

#include <gtest/gtest.h>

#include <ostream>
#include <string>

#include "Core/KeychainStore.h"
#include "IMAP/Connection/IMAPError.h"
#include "support/RowName.h"

namespace tarnwell::test {
namespace {

ToolCall answered(const char* json) { return {.result = {*JSONValue::decode(json)}}; }
ToolCall failed(std::string text) { return {.result = ToolCallResult::error(std::move(text))}; }

TEST(TriedMail, readsAMessage) {
  const auto messages = triedMessages(answered(R"({"messages": [{
    "uid": 9, "subject": "Tea\u202e", "from": "Al <al@example.org>", "date": "Mon, 3 Jun 2024 10:00:00 +0000",
    "unread": true, "hasAttachments": true, "snippet": "[withheld: sensitive]",
    "detectedRiskSignals": [{"category": "otp", "term": "otp", "location": "from"}]}]})"));
  ASSERT_EQ(messages.size(), 1u);
  const TriedMessage expected{.uid = 9,
                              .subject = "Tea‹U+202E›",
                              .sender = "Al <al@example.org>",
                              .date = "Mon, 3 Jun 2024 10:00:00 +0000",
                              .isUnread = true,
                              .hasAttachments = true,
                              .isWithheld = true,
                              .signs = {{"otp", "otp", TriedSignal::Place::sender}}};
  EXPECT_TRUE(messages.front() == expected);
}

TEST(TriedMail, onlyWhatHasASignIsWithheld) {
  const auto messages = triedMessages(
      answered(R"({"messages": [{"uid": 9, "snippet": "[withheld: sensitive]", "detectedRiskSignals": []},
                                {"uid": 8, "snippet": "Hello", "detectedRiskSignals": [{"term": "otp"}]}]})"));
  ASSERT_EQ(messages.size(), 2u);
  EXPECT_FALSE(messages[0].isWithheld);
  EXPECT_EQ(messages[0].preview, "[withheld: sensitive]");
  EXPECT_FALSE(messages[1].isWithheld);
  EXPECT_EQ(messages[1].preview, "Hello");
}

TEST(TriedMail, whatHasAnotherShapeIsReadAsFarAsItGoes) {
  for (const char* const json : {"{}", "[]", "null", R"({"messages": 7})", R"({"folders": {}})"}) {
    EXPECT_TRUE(triedMessages(answered(json)).empty()) << json;
    EXPECT_TRUE(triedFolders(answered(json)).empty()) << json;
    EXPECT_EQ(triedText(answered(json)).kind, TriedText::Kind::none) << json;
  }
  const auto messages = triedMessages(answered(R"({"messages": [7, {"subject": null, "uid": "x"}]})"));
  ASSERT_EQ(messages.size(), 2u);
  EXPECT_TRUE(messages[0] == TriedMessage{});
  EXPECT_TRUE(messages[1] == TriedMessage{});
}

struct TextRow {
  const char* name;
  const char* json;
  TriedText::Kind kind;
  QString text;
  std::int64_t length = 0;
  std::int64_t returned = 0;
};
void PrintTo(const TextRow& row, std::ostream* stream) { *stream << row.name; }

class TriedTextOf : public testing::TestWithParam<TextRow> {};
INSTANTIATE_TEST_SUITE_P(
    Table, TriedTextOf,
    testing::Values(
        TextRow{"whole",
                R"({"returned": true, "body": "a\r\nb", "charCount": 3, "maxChars": 9, "truncated": false})",
                TriedText::Kind::returned, "a\nb", 3, 3},
        TextRow{"cut",
                R"({"returned": true, "body": "ab…", "charCount": 30, "maxChars": 2, "truncated": true})",
                TriedText::Kind::returned, "ab…", 30, 2},
        TextRow{"cutToNothing",
                R"({"returned": true, "body": "…", "charCount": 30, "maxChars": -2, "truncated": true})",
                TriedText::Kind::returned, "…", 30, 0},
        TextRow{"withheld", R"({"returned": false, "blocked": true, "reason": "Why."})",
                TriedText::Kind::withheld, "Why."},
        TextRow{"noText", R"({"returned": false, "blocked": false, "reason": "None."})",
                TriedText::Kind::none, "None."}),
    rowName);

TEST_P(TriedTextOf, reads) {
  const TriedText text = triedText(answered(GetParam().json));
  EXPECT_EQ(text.kind, GetParam().kind);
  EXPECT_EQ(text.text, GetParam().text);
  EXPECT_EQ(text.length, GetParam().length);
  EXPECT_EQ(text.returned, GetParam().returned);
}

TEST(TriedMail, ofFoldersOnlyThoseThatTakeMailAreOffered) {
  const auto folders = triedFolders(answered(R"({"folders": [
    {"path": "INBOX", "delimiter": "/", "selectable": true},
    {"path": "Archive/&ZeVnLIqe-", "delimiter": "/", "selectable": true},
    {"path": "Shelf", "delimiter": "/", "selectable": false},
    {"path": "Evil\u202e", "delimiter": "", "selectable": true}]})"));
  ASSERT_EQ(folders.size(), 2u);
  EXPECT_EQ(folders[0].path, "Archive/&ZeVnLIqe-");
  EXPECT_EQ(folders[0].name, "Archive/日本語");
  EXPECT_EQ(folders[1].path, "Evil\u202e");
  EXPECT_EQ(folders[1].name, "Evil‹U+202E›");
}

struct FailureRow {
  const char* name;
  std::string told;
  TriedFailure::Kind kind;
  bool isConfigured = true;
};
void PrintTo(const FailureRow& row, std::ostream* stream) { *stream << row.name; }

std::string keychain(std::int32_t status) {
  return KeychainError::unexpectedStatus(status, "told by the keyring").description();
}

class TriedFailureOf : public testing::TestWithParam<FailureRow> {};
INSTANTIATE_TEST_SUITE_P(
    Table, TriedFailureOf,
    testing::Values(
        FailureRow{"noAccount", IMAPError::notConfigured().description(), TriedFailure::Kind::noAccount,
                   false},
        FailureRow{"noPassword", IMAPError::notConfigured().description(), TriedFailure::Kind::noPassword},
        FailureRow{"keyringMissing", keychain(SecretStatus::notAvailable),
                   TriedFailure::Kind::keyringMissing},
        FailureRow{"keyringLocked", keychain(SecretStatus::interactionNotAllowed),
                   TriedFailure::Kind::keyringLocked},
        FailureRow{"keyringRefused", keychain(SecretStatus::internalError),
                   TriedFailure::Kind::keyringRefused},
        FailureRow{"passwordUnreadable", KeychainError::decodingFailed().description(),
                   TriedFailure::Kind::keyringRefused},
        FailureRow{"signInRefused", IMAPError::authenticationFailed().description(),
                   TriedFailure::Kind::signInRefused},
        FailureRow{"notReachable", IMAPError::connectionFailed("host: refused").description(),
                   TriedFailure::Kind::notReachable},
        FailureRow{"hungUp", IMAPError::connectionClosed().description(), TriedFailure::Kind::notReachable},
        FailureRow{"tooSlow", IMAPError::timeout().description(), TriedFailure::Kind::tooSlow},
        FailureRow{"anythingElse", "Internal error while running search_inbox.", TriedFailure::Kind::other}),
    rowName);

TEST_P(TriedFailureOf, isKnownByItsSentence) {
  AppConfig config;
  config.email = GetParam().isConfigured ? "user@example.org" : "";
  const auto failure = triedFailure(failed(GetParam().told), config);
  ASSERT_TRUE(failure);
  EXPECT_EQ(failure->kind, GetParam().kind);
  EXPECT_EQ(failure->told.toStdString(), GetParam().told);
  EXPECT_FALSE(triedFailure(answered("{}"), config));
}

}  // namespace
}  // namespace tarnwell::test
