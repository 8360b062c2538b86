/// What comes and goes while the page "Try it" is used: newer calls, changed settings, and forgetting.

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <memory>
#include <thread>

#include "App/Models/TryItModelFixture.h"
#include "support/FakeIMAPServer.h"
#include "support/Gate.h"

namespace tarnwell::test {
namespace {

using State = TryItModel::State;

TEST_F(TryItModelTest, newerSearchGivesTheOlderOneUp) {
  open();
  mailbox.hold("UID SEARCH CHARSET");
  model->search({.words = "茶"});
  ASSERT_TRUE(until([this] { return mailbox.hasCommand("UID SEARCH CHARSET"); }));
  QSignalSpy changes(&*model, &TryItModel::searchChanged);
  search({.words = "tea"});
  EXPECT_EQ(argumentsOf(ToolName::searchInbox)["query"], JSONValue("tea"));
  const auto before = changes.count();
  mailbox.release();
  choose(0);  // the older one would have answered meanwhile
  EXPECT_EQ(changes.count(), before);
  EXPECT_EQ(argumentsOf(ToolName::searchInbox)["query"], JSONValue("tea"));
}

TEST_F(TryItModelTest, progressIsToldAndASearchCanBeStopped) {
  open();
  mailbox.hold("UID FETCH 7 (BODY");
  model->search({});
  ASSERT_TRUE(until([this] { return model->progress().done == 1; }));
  EXPECT_EQ(model->progress().total, 3);
  EXPECT_EQ(model->state(), State::searching);
  model->cancelSearch();
  EXPECT_EQ(model->state(), State::cancelled);
  EXPECT_TRUE(model->messages().empty());
  mailbox.release();
  search();
  EXPECT_EQ(model->messages().size(), 3u);
  model->cancelSearch();  // too late
  EXPECT_EQ(model->state(), State::found);
}

/// With a real connection, whose wait ends at once.
TEST_F(TryItModelTest, stoppedSearchHangsUp) {
  FakeIMAPServer server(loginDialogue() + Dialogue{expect("A0004 UID SEARCH ALL\r\n"), stallHere()});
  edit([&](AppConfig& config) {
    config.imapHost = "localhost";
    config.imapPort = server.port();
  });
  auto secrets = std::make_shared<FakeMailbox>();
  settings.emplace(store);
  model.emplace(*settings,
                ReadOnlyTools(MCPTools(
                    store, secrets->keychain(), EmailRiskDetector::shared(),
                    [secrets](std::string host, std::int64_t port, std::string email, Secret password) {
                      constexpr std::chrono::seconds patience{60};
                      return std::make_unique<IMAPClient>(std::move(host), port, std::move(email),
                                                          std::move(password), patience);
                    })));
  model->search({});
  ASSERT_TRUE(until([&] { return server.received().find("UID SEARCH") != std::string::npos; }));
  model->cancelSearch();
  EXPECT_EQ(server.mismatch(), "");
}

TEST_F(TryItModelTest, settingsThatChangeMakeTheMessagesOld) {
  open();
  search();
  choose(0);
  tryChange(TriedChange::trash);
  QSignalSpy aged(&*model, &TryItModel::aged);
  change([](AppConfig& config) {
    config.lastConnectionTestSuccess = true;
    config.language = AppLanguage::japanese;
  });
  EXPECT_EQ(aged.count(), 0);
  EXPECT_TRUE(model->outcome());
  change([](AppConfig& config) { config.strictWithholding = true; });
  EXPECT_EQ(aged.count(), 1);
  EXPECT_TRUE(model->isFromBefore());
  EXPECT_FALSE(model->outcome()) << "the settings may decide otherwise now";
  EXPECT_EQ(model->messages().size(), 3u);
  change([](AppConfig& config) { config.strictWithholding = false; });
  EXPECT_FALSE(model->isFromBefore());
  change([](AppConfig& config) { config.safety.readOnly = false; });
  EXPECT_TRUE(model->isFromBefore());
  model->searchAgain();
  EXPECT_FALSE(model->isFromBefore());
  ASSERT_TRUE(searched());
}

/// The settings change twice here, so the messages are those of the settings again.
TEST_F(TryItModelTest, textIsReadAgainWhenTheSettingsChange) {
  const auto withhold = [this](bool isOn) {
    change([isOn](AppConfig& config) { config.safety.blockAuthCodeBodies = isOn; });
  };
  open();
  search();
  withhold(false);
  choose(1);
  ASSERT_EQ(model->text()->kind, TriedText::Kind::returned);
  EXPECT_EQ(model->calls().size(), 2u);
  withhold(true);
  EXPECT_FALSE(model->isFromBefore());
  EXPECT_FALSE(model->text());
  EXPECT_EQ(model->calls().size(), 1u);
  ASSERT_TRUE(until([this] { return model->text().has_value(); }));
  EXPECT_EQ(model->text()->kind, TriedText::Kind::withheld);
}

TEST_F(TryItModelTest, textThatIsBeingReadIsReadAgainWhenTheSettingsChange) {
  open();
  search();
  change([](AppConfig& config) { config.safety.blockAuthCodeBodies = false; });
  mailbox.hold("UID FETCH 7 (BODY");
  model->choose(2);
  ASSERT_TRUE(until([this] {
    const auto commands = mailbox.commands();
    return std::ranges::count(commands, "UID FETCH 7 (BODY.PEEK[1])") == 2;
  }));
  change([](AppConfig& config) { config.safety.blockAuthCodeBodies = true; });
  mailbox.release();
  ASSERT_TRUE(until([this] { return model->text().has_value(); }));
  EXPECT_EQ(model->text()->kind, TriedText::Kind::withheld);
}

/// A change of the settings that takes its time to be written.
class TryItModelWhileSaving : public TryItModelTest {
 protected:
  ~TryItModelWhileSaving() override { finishWriting(); }

  void beginToWrite(const std::function<void(AppConfig&)>& edit) {
    gate_ = std::make_shared<Gate>();
    change([edit, gate = gate_, window = std::this_thread::get_id()](AppConfig& config) {
      if (std::this_thread::get_id() != window) {
        gate->pass();
      }
      edit(config);
    });
    ASSERT_TRUE(gate_->awaitArrivals(1));
  }
  /// As long as a call takes that does not wait.
  void letACallPass() {
    ReadOnlyTools(others_.tools(store)).call(ToolName::searchInbox, {}, {});
    QCoreApplication::processEvents();
  }
  void finishWriting() {
    gate_->open();
    EXPECT_TRUE(!settings || until([this] { return !settings->isSaving(); }));
  }

  std::shared_ptr<Gate> gate_ = std::make_shared<Gate>();
  FakeMailbox others_;
};

TEST_F(TryItModelWhileSaving, searchTakesTheNewSettings) {
  open();
  beginToWrite([](AppConfig& config) { config.safety.blockAuthCodeBodies = false; });
  model->search({});
  letACallPass();
  EXPECT_EQ(model->state(), State::searching);
  change([](AppConfig& config) { config.safety.maxFetch = 2; });
  finishWriting();
  ASSERT_TRUE(searched());
  EXPECT_EQ(model->withheldCount(), 0);
  EXPECT_EQ(model->messages().size(), 2u);
  EXPECT_FALSE(model->isFromBefore());
}

TEST_F(TryItModelWhileSaving, triedChangeTakesTheNewSettings) {
  open();
  search();
  choose(0);
  beginToWrite([](AppConfig& config) { config.safety.readOnly = false; });
  model->tryChange(TriedChange::markRead);
  letACallPass();
  EXPECT_TRUE(model->isTrying());
  finishWriting();
  ASSERT_TRUE(until([this] { return !model->isTrying(); }));
  EXPECT_EQ(model->outcome()->kind, TriedOutcome::Kind::allowed);
}

TEST_F(TryItModelWhileSaving, whatWaitsCanBeStoppedAndForgotten) {
  for (const auto giveUp : {&TryItModel::cancelSearch, &TryItModel::forget}) {
    open();
    beginToWrite([](AppConfig& config) { config.safety.readOnly = false; });
    model->search({});
    ((*model).*giveUp)();
    finishWriting();
    letACallPass();
    EXPECT_NE(model->state(), State::found);
    EXPECT_EQ(mailbox.commands(), std::vector<std::string>());
  }
}

TEST_F(TryItModelTest, sameMessageIsReadAgainOnlyAfterAFailure) {
  open();
  search();
  mailbox.isDown = true;
  choose(0);
  ASSERT_EQ(model->text()->kind, TriedText::Kind::failed);
  mailbox.isDown = false;
  choose(0);
  ASSERT_TRUE(until([this] { return model->text() && model->text()->kind == TriedText::Kind::returned; }));
  model->choose(0);
  EXPECT_TRUE(model->text());
}

TEST_F(TryItModelTest, sameSearchIsMadeAgain) {
  open();
  search({.words = "tea"});
  model->searchAgain();
  ASSERT_TRUE(searched());
  EXPECT_EQ(argumentsOf(ToolName::searchInbox)["query"], JSONValue("tea"));
}

TEST_F(TryItModelTest, anotherAccountForgetsTheMessagesOfThisOne) {
  open();
  search();
  change([](AppConfig& config) { config.email = "other@example.org"; });
  EXPECT_TRUE(isEmpty());
}

TEST_F(TryItModelTest, forgetsEverythingAndWritesNothing) {
  const AppConfig before = store.load();
  open();
  search({.words = "tea"});
  choose(0);
  model->loadFolders();
  ASSERT_TRUE(until([this] { return !model->folders().empty(); }));
  tryChange(TriedChange::markRead);
  EXPECT_EQ(model->calls().size(), 3u);
  QSignalSpy searchChanges(&*model, &TryItModel::searchChanged);
  QSignalSpy chosenChanges(&*model, &TryItModel::chosenChanged);
  model->forget();
  EXPECT_TRUE(isEmpty());
  EXPECT_EQ(searchChanges.count(), 1);
  EXPECT_EQ(chosenChanges.count(), 1);
  EXPECT_TRUE(store.load() == before);
  const auto files = std::filesystem::recursive_directory_iterator(directory.path());
  EXPECT_EQ(std::count_if(begin(files), end(files), [](const auto& file) { return file.is_regular_file(); }),
            1)
      << "the settings, and nothing else";
}

TEST_F(TryItModelTest, whatIsForgottenWhileItRunsDoesNotComeBack) {
  open();
  search();
  mailbox.hold("UID FETCH 9 (BODY");
  model->choose(0);
  ASSERT_TRUE(until([this] {
    const auto commands = mailbox.commands();
    return std::ranges::count(commands, "UID FETCH 9 (BODY.PEEK[1])") == 2;
  }));
  model->tryChange(TriedChange::trash);
  model->loadFolders();
  model->forget();
  mailbox.release();
  search();
  EXPECT_FALSE(model->chosen());
  EXPECT_FALSE(model->text());
  EXPECT_FALSE(model->outcome());
  EXPECT_TRUE(model->folders().empty());
}

TEST_F(TryItModelTest, modelMayGoWhileACallRuns) {
  open();
  mailbox.hold("UID SEARCH");
  model->search({});
  ASSERT_TRUE(until([this] { return mailbox.hasCommand("UID SEARCH"); }));
  model.reset();
  mailbox.release();
}

}  // namespace
}  // namespace tarnwell::test
