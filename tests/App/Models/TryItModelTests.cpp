#include "App/Models/TryItModel.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <ostream>

#include "App/Models/TryItModelFixture.h"
#include "support/RowName.h"

namespace tarnwell::test {
namespace {

using State = TryItModel::State;
using ::testing::ElementsAre;

TEST_F(TryItModelTest, doesNothingBeforeItIsAsked) {
  open();
  change([](AppConfig& config) { config.safety.readOnly = false; });
  ASSERT_TRUE(until([this] { return !settings->isSaving(); }));
  EXPECT_TRUE(isEmpty());
  EXPECT_THAT(mailbox.commands(), ElementsAre());
}

TEST_F(TryItModelTest, findsWhatAnAssistantFinds) {
  open();
  search();
  ASSERT_EQ(model->messages().size(), 3u);
  EXPECT_EQ(model->messages()[0].subject, "Tea at four");
  EXPECT_EQ(model->messages()[0].preview, "Hello");
  EXPECT_FALSE(model->messages()[0].isWithheld);
  EXPECT_TRUE(model->messages()[1].isWithheld);
  EXPECT_EQ(
      model->messages()[1].signs,
      (std::vector<TriedSignal>{{"verification_code", "verification code", TriedSignal::Place::subject}}));
  EXPECT_TRUE(model->messages()[2].isWithheld);
  EXPECT_EQ(model->messages()[2].signs.front().place, TriedSignal::Place::text);
  EXPECT_EQ(model->withheldCount(), 2);
  EXPECT_EQ(model->progress().total, 3);
  EXPECT_EQ(model->calls().size(), 1u);
}

struct QueryRow {
  const char* name;
  TriedQuery query;
  const char* arguments;
};
void PrintTo(const QueryRow& row, std::ostream* stream) { *stream << row.name; }

class TryItModelQuery : public TryItModelTest, public testing::WithParamInterface<QueryRow> {};
INSTANTIATE_TEST_SUITE_P(
    Table, TryItModelQuery,
    testing::Values(QueryRow{"nothing", {}, "{}"}, QueryRow{"words", {.words = "tea"}, R"({"query": "tea"})"},
                    QueryRow{"all",
                             {"茶", "al@example.org", "four", true, QDate(2024, 6, 3)},
                             R"({"query": "茶", "from": "al@example.org", "subject": "four",
                                 "unreadOnly": true, "since": "2024-06-03"})"}),
    rowName);

TEST_P(TryItModelQuery, becomesTheArgumentsOfTheTool) {
  open();
  search(GetParam().query);
  EXPECT_EQ(argumentsOf(ToolName::searchInbox), *JSONValue::decode(GetParam().arguments));
}

TEST_F(TryItModelTest, chosenMessageIsReadAfterAMomentAndOnlyTheLastOne) {
  open();
  search();
  model->choose(0);
  model->choose(1);
  EXPECT_EQ(model->chosen()->uid, 8u);
  EXPECT_FALSE(model->text());
  choose(2);
  EXPECT_EQ(model->text()->kind, TriedText::Kind::withheld);
  EXPECT_EQ(
      model->text()->text,
      "Body withheld: looks like a sensitive security message (security_code). OTP / verification-code / "
      "password-reset / security-alert content is never returned by this bridge.");
  EXPECT_EQ(argumentsOf(ToolName::getMessageBody), JSONValue(JSONObject{{"uid", 7}}));
  EXPECT_FALSE(mailbox.hasCommand("UID FETCH 8 ("));
  choose(0);
  EXPECT_EQ(model->text()->kind, TriedText::Kind::returned);
  EXPECT_EQ(model->text()->text, "Hello");
  model->choose(std::nullopt);
  EXPECT_EQ(model->chosen(), nullptr);
  EXPECT_FALSE(model->text());
}

TEST_F(TryItModelTest, messageThatIsGoneIsToldAsTheToolTellsIt) {
  open();
  search();
  mailbox.mails.erase(mailbox.mails.begin());
  choose(0);
  EXPECT_EQ(model->text()->kind, TriedText::Kind::failed);
  EXPECT_EQ(model->text()->text, "No message with UID 9 in INBOX.");
}

struct ChangeRow {
  const char* name;
  SafetySettings safety;
  TriedChange change;
  TriedOutcome::Kind kind;
  QString folder;
  QString told;
};
void PrintTo(const ChangeRow& row, std::ostream* stream) { *stream << row.name; }

constexpr SafetySettings permitting{.readOnly = false, .allowTrash = true};
constexpr SafetySettings forbidding{
    .readOnly = false, .allowTrash = false, .allowMove = false, .allowMarkRead = false};
constexpr const char* previewed = "Dry-run: no change was made to the mailbox.";

class TryItModelChange : public TryItModelTest, public testing::WithParamInterface<ChangeRow> {};
INSTANTIATE_TEST_SUITE_P(
    Table, TryItModelChange,
    testing::Values(
        ChangeRow{"move", permitting, TriedChange::move, TriedOutcome::Kind::allowed, "Archive/日本語",
                  previewed},
        ChangeRow{"trash", permitting, TriedChange::trash, TriedOutcome::Kind::allowed, "Deleted Messages",
                  previewed},
        ChangeRow{"markRead", permitting, TriedChange::markRead, TriedOutcome::Kind::allowed, "", previewed},
        ChangeRow{"moveReadOnly",
                  {},
                  TriedChange::move,
                  TriedOutcome::Kind::refusedAsReadOnly,
                  "",
                  "Read-only mode is on; no message was moved."},
        ChangeRow{"trashReadOnly",
                  {},
                  TriedChange::trash,
                  TriedOutcome::Kind::refusedAsReadOnly,
                  "",
                  "Read-only mode is on; the message was not moved to Trash."},
        ChangeRow{"markReadReadOnly",
                  {},
                  TriedChange::markRead,
                  TriedOutcome::Kind::refusedAsReadOnly,
                  "",
                  "Read-only mode is on; the message was not marked as read."},
        ChangeRow{"moveDisabled", forbidding, TriedChange::move, TriedOutcome::Kind::refusedAsDisabled, "",
                  "Folder moves are disabled in Safety settings."},
        ChangeRow{"trashDisabled", forbidding, TriedChange::trash, TriedOutcome::Kind::refusedAsDisabled, "",
                  "Trash is disabled in Safety settings."},
        ChangeRow{"markReadDisabled", forbidding, TriedChange::markRead,
                  TriedOutcome::Kind::refusedAsDisabled, "", "Mark-as-read is disabled in Safety settings."}),
    rowName);

TEST_P(TryItModelChange, isOnlyTried) {
  edit([](AppConfig& config) { config.safety = GetParam().safety; });
  open();
  search();
  choose(0);
  model->loadFolders();
  ASSERT_TRUE(until([this] { return !model->folders().empty(); }));
  EXPECT_EQ(model->folders()[1].name, "Archive/日本語");
  tryChange(GetParam().change, model->folders()[1].path);
  EXPECT_EQ(model->outcome()->change, GetParam().change);
  EXPECT_EQ(model->outcome()->kind, GetParam().kind);
  EXPECT_EQ(model->outcome()->folder, GetParam().folder);
  EXPECT_EQ(model->outcome()->told, GetParam().told);
  EXPECT_EQ(argumentsOf(toolOf(GetParam().change))["dryRun"], JSONValue(true));
  for (const char* const changing : {"SELECT", "UID MOVE", "UID COPY", "UID STORE"}) {
    EXPECT_FALSE(mailbox.hasCommand(changing)) << changing;
  }
}

TEST_F(TryItModelTest, changeThatWouldFailSaysWhy) {
  edit([](AppConfig& config) { config.safety = permitting; });
  mailbox.folders = "* LIST () \"/\" INBOX\r\n";
  open();
  search();
  choose(0);
  tryChange(TriedChange::trash);
  EXPECT_EQ(model->outcome()->kind, TriedOutcome::Kind::failed);
  EXPECT_EQ(model->outcome()->told, "Folder not found: Trash");
}

struct TroubleRow {
  const char* name;
  std::function<void(FakeMailbox&, const ConfigStore&)> arrange;
  TriedFailure::Kind kind;
  QString told;
};
void PrintTo(const TroubleRow& row, std::ostream* stream) { *stream << row.name; }

constexpr const char* notConfigured =
    "No iCloud account is configured. Open the app and save your email + app password.";

class TryItModelTrouble : public TryItModelTest, public testing::WithParamInterface<TroubleRow> {};
INSTANTIATE_TEST_SUITE_P(
    Table, TryItModelTrouble,
    testing::Values(
        TroubleRow{"noAccount",
                   [](FakeMailbox&, const ConfigStore& store) {
                     store.update([](AppConfig& config) { config.email.clear(); });
                   },
                   TriedFailure::Kind::noAccount, notConfigured},
        TroubleRow{"noPassword",
                   [](FakeMailbox& mailbox, const ConfigStore&) { mailbox.hasPassword = false; },
                   TriedFailure::Kind::noPassword, notConfigured},
        TroubleRow{"keyringLocked",
                   [](FakeMailbox& mailbox, const ConfigStore&) {
                     mailbox.secretStatus = SecretStatus::interactionNotAllowed;
                   },
                   TriedFailure::Kind::keyringLocked, "Keychain error -25308: told by the keyring"},
        TroubleRow{"keyringMissing",
                   [](FakeMailbox& mailbox, const ConfigStore&) {
                     mailbox.secretStatus = SecretStatus::notAvailable;
                   },
                   TriedFailure::Kind::keyringMissing, "Keychain error -25291: told by the keyring"},
        TroubleRow{"signInRefused",
                   [](FakeMailbox& mailbox, const ConfigStore&) { mailbox.loginAnswer = "NO no"; },
                   TriedFailure::Kind::signInRefused,
                   "Authentication failed. Check the email address and Apple app-specific password."},
        TroubleRow{"down", [](FakeMailbox& mailbox, const ConfigStore&) { mailbox.isDown = true; },
                   TriedFailure::Kind::notReachable,
                   "Could not connect to the IMAP server: imap.example.org:993: nobody answers"}),
    rowName);

TEST_P(TryItModelTrouble, isNamedAndGoesWithTheNextSearch) {
  GetParam().arrange(mailbox, store);
  open();
  model->search({});
  ASSERT_TRUE(searched());
  EXPECT_EQ(model->state(), State::failed);
  ASSERT_TRUE(model->failure());
  EXPECT_EQ(model->failure()->kind, GetParam().kind);
  EXPECT_EQ(model->failure()->told, GetParam().told);
  model->loadFolders();
  ASSERT_TRUE(until([this] { return model->foldersFailure().has_value(); }));
  model->search({});
  EXPECT_FALSE(model->failure());
  EXPECT_FALSE(model->foldersFailure());
}

}  // namespace
}  // namespace tarnwell::test
