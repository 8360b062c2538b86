#include "App/Models/SafetyModel.h"

#include <gtest/gtest.h>

#include <QSignalSpy>
#include <QTest>
#include <filesystem>
#include <functional>
#include <limits>
#include <optional>
#include <ostream>
#include <string>

#include "support/RowName.h"
#include "support/TemporaryDirectory.h"

namespace tarnwell {
namespace {

using test::TemporaryDirectory;

constexpr std::int64_t smallest = std::numeric_limits<std::int64_t>::min();
constexpr std::int64_t largest = std::numeric_limits<std::int64_t>::max();

/// A model over a settings file of its own.
class SafetyModelTest : public testing::Test {
 protected:
  void begin(const std::function<void(AppConfig&)>& edit) {
    store_.update(edit);
    settings_.emplace(store_);
    model_.emplace(*settings_);
  }

  /// Waits for the file, and returns what a helper reads from it.
  AppConfig saved() {
    EXPECT_TRUE(QTest::qWaitFor([&] { return !settings_->isSaving(); }, 10'000));
    return store_.load();
  }

  TemporaryDirectory directory_;
  ConfigStore store_{directory_.path()};
  std::optional<SettingsFile> settings_;
  std::optional<SafetyModel> model_;
};

struct Row {
  const char* name;
  std::function<void(AppConfig&)> edit;
  SafetySummary summary;
};

void PrintTo(const Row& row, std::ostream* stream) { *stream << row.name; }

constexpr auto byKeywords = SafetySummary::Withholding::byKeywords;

const Row summaries[] = {
    {"defaults", [](AppConfig&) {}, {20, 4000, false, false, false, false, byKeywords}},
    {"readOnlyBeatsEverySwitch",
     [](AppConfig& config) { config.safety.allowTrash = config.safety.allowCopyMoveFallback = true; },
     {20, 4000, false, false, false, false, byKeywords}},
    {"writing",
     [](AppConfig& config) { config.safety.readOnly = false; },
     {20, 4000, true, true, false, false, byKeywords}},
    {"trashAlone",
     [](AppConfig& config) {
       config.safety = {.readOnly = false, .allowTrash = true, .allowMove = false, .allowMarkRead = false};
     },
     {20, 4000, false, false, true, false, byKeywords}},
    {"fallbackOfTheTrash",
     [](AppConfig& config) {
       config.safety = {
           .readOnly = false, .allowTrash = true, .allowMove = false, .allowCopyMoveFallback = true};
     },
     {20, 4000, true, false, true, true, byKeywords}},
    {"fallbackWithoutAMove",
     [](AppConfig& config) {
       config.safety = {.readOnly = false, .allowMove = false, .allowCopyMoveFallback = true};
     },
     {20, 4000, true, false, false, false, byKeywords}},
    {"smallerOfTwoLimits",
     [](AppConfig& config) { config.safety.maxFetch = 7; },
     {7, 4000, false, false, false, false, byKeywords}},
    {"limitsBeyondTheHelpersOwn",
     [](AppConfig& config) {
       config.safety.maxFetch = config.safety.maxMessagesPerCall = config.safety.maxBodyChars = largest;
     },
     {100, 10'000, false, false, false, false, byKeywords}},
    {"limitsBelowOne",
     [](AppConfig& config) {
       config.safety.maxFetch = 0;
       config.safety.maxMessagesPerCall = smallest;
       config.safety.maxBodyChars = -5;
     },
     {1, 1, false, false, false, false, byKeywords}},
    {"strict",
     [](AppConfig& config) { config.strictWithholding = true; },
     {20, 4000, false, false, false, false, SafetySummary::Withholding::strict}},
    {"strictWithoutBlocking",
     [](AppConfig& config) {
       config.strictWithholding = true;
       config.safety.blockAuthCodeBodies = false;
     },
     {20, 4000, false, false, false, false, SafetySummary::Withholding::none}},
};

class SafetyModelSummary : public SafetyModelTest, public testing::WithParamInterface<Row> {};
INSTANTIATE_TEST_SUITE_P(Table, SafetyModelSummary, testing::ValuesIn(summaries), rowName);

TEST_P(SafetyModelSummary, saysWhatActs) {
  begin(GetParam().edit);
  EXPECT_TRUE(model_->summary() == GetParam().summary);
}

TEST_F(SafetyModelTest, boundsAreThoseOfTheHelper) {
  for (const SafetyLimit limit : {SafetyLimit::maxMessagesPerCall, SafetyLimit::maxFetch}) {
    EXPECT_EQ(SafetyModel::bounds(limit).least, 1);
    EXPECT_EQ(SafetyModel::bounds(limit).most, BridgeConstants::searchLimitMax);
  }
  EXPECT_EQ(SafetyModel::bounds(SafetyLimit::maxBodyChars).least, 1);
  EXPECT_EQ(SafetyModel::bounds(SafetyLimit::maxBodyChars).most, BridgeConstants::bodyHardMaxChars);
}

TEST_F(SafetyModelTest, valueIsTheOneThatActs) {
  begin([](AppConfig& config) { config.safety.maxFetch = 5000, config.safety.maxBodyChars = 0; });
  EXPECT_EQ(model_->value(SafetyLimit::maxFetch), 100);
  EXPECT_EQ(model_->value(SafetyLimit::maxMessagesPerCall), 20);
  EXPECT_EQ(model_->value(SafetyLimit::maxBodyChars), 1);
}

/// Each setting changes its own key and no other.
TEST_F(SafetyModelTest, everySwitchIsSavedAtOnce) {
  begin([](AppConfig& config) { config.email = "anna@example.org"; });
  for (const SafetySwitch item : SafetyItems::switches) {
    const bool before = model_->isOn(item);
    QSignalSpy changed(&*model_, &SafetyModel::changed);
    model_->set(item, !before);
    EXPECT_EQ(model_->isOn(item), !before);
    EXPECT_EQ(changed.count(), 1);
    EXPECT_TRUE(saved() == settings_->config());
    EXPECT_EQ(saved().email, "anna@example.org");
    model_->set(item, before);
    AppConfig untouched;
    untouched.email = "anna@example.org";
    EXPECT_TRUE(saved() == untouched);
  }
}

TEST_F(SafetyModelTest, everyLimitIsSavedAtOnce) {
  begin([](AppConfig&) {});
  for (const SafetyLimit limit : SafetyItems::limits) {
    model_->set(limit, 3);
    EXPECT_EQ(model_->value(limit), 3);
  }
  const AppConfig config = saved();
  EXPECT_EQ(config.safety.maxMessagesPerCall, 3);
  EXPECT_EQ(config.safety.maxFetch, 3);
  EXPECT_EQ(config.safety.maxBodyChars, 3);
}

TEST_F(SafetyModelTest, sameValueIsNotSavedAgain) {
  begin([](AppConfig&) {});
  QSignalSpy changed(&*model_, &SafetyModel::changed);
  model_->set(SafetySwitch::readOnly, true);
  model_->set(SafetyLimit::maxFetch, 50);
  EXPECT_EQ(changed.count(), 0);
  EXPECT_FALSE(settings_->isSaving());
}

TEST_F(SafetyModelTest, saysWhyASettingIsWithoutEffect) {
  begin([](AppConfig& config) { config.safety.allowMove = false; });
  using enum WithoutEffect;
  for (const SafetySwitch item : {SafetySwitch::allowMarkRead, SafetySwitch::allowMove,
                                  SafetySwitch::allowTrash, SafetySwitch::allowCopyMoveFallback}) {
    EXPECT_EQ(model_->withoutEffect(item), everythingIsReadOnly);
  }
  EXPECT_EQ(model_->withoutEffect(SafetySwitch::readOnly), std::nullopt);
  EXPECT_EQ(model_->withoutEffect(SafetySwitch::strictWithholding), std::nullopt);
  EXPECT_EQ(model_->withoutEffect(SafetyLimit::maxFetch), otherLimitIsSmaller);
  EXPECT_EQ(model_->withoutEffect(SafetyLimit::maxMessagesPerCall), std::nullopt);
  EXPECT_EQ(model_->withoutEffect(SafetyLimit::maxBodyChars), std::nullopt);

  model_->set(SafetySwitch::readOnly, false);
  model_->set(SafetySwitch::blockAuthCodeBodies, false);
  model_->set(SafetyLimit::maxFetch, 20);
  EXPECT_EQ(model_->withoutEffect(SafetySwitch::allowMove), std::nullopt);
  EXPECT_EQ(model_->withoutEffect(SafetySwitch::allowCopyMoveFallback), nothingMayBeMoved);
  EXPECT_EQ(model_->withoutEffect(SafetySwitch::strictWithholding), withholdingIsOff);
  EXPECT_EQ(model_->withoutEffect(SafetyLimit::maxFetch), std::nullopt);
  model_->set(SafetySwitch::allowTrash, true);
  EXPECT_EQ(model_->withoutEffect(SafetySwitch::allowCopyMoveFallback), std::nullopt);
}

TEST_F(SafetyModelTest, asksBeforeWhatCannotBeTakenBack) {
  begin([](AppConfig& config) { config.strictWithholding = true; });
  for (const SafetySwitch item : SafetyItems::switches) {
    const bool isAsked = item == SafetySwitch::readOnly || item == SafetySwitch::blockAuthCodeBodies ||
                         item == SafetySwitch::strictWithholding;
    EXPECT_EQ(model_->asksBefore(item, false), isAsked);
    EXPECT_FALSE(model_->asksBefore(item, true));
  }
  model_->set(SafetySwitch::blockAuthCodeBodies, false);
  EXPECT_FALSE(model_->asksBefore(SafetySwitch::strictWithholding, false));  // it is without effect
}

TEST_F(SafetyModelTest, summaryWithASwitchLeavesTheSettings) {
  begin([](AppConfig&) {});
  EXPECT_TRUE(model_->summaryWith(SafetySwitch::readOnly, false).mayMove);
  EXPECT_FALSE(model_->summary().mayMove);
  EXPECT_TRUE(model_->summary().mayChangeNothing());
  EXPECT_FALSE(settings_->isSaving());
}

TEST_F(SafetyModelTest, goesBackToTheSafeValues) {
  begin([](AppConfig& config) {
    config.email = "anna@example.org";
    config.safety = {.readOnly = false, .maxFetch = 1, .allowTrash = true, .blockAuthCodeBodies = false};
  });
  EXPECT_FALSE(model_->isAtSafeValues());
  model_->backToSafeValues();
  EXPECT_TRUE(model_->isAtSafeValues());
  AppConfig expected;
  expected.email = "anna@example.org";
  expected.strictWithholding = true;
  EXPECT_TRUE(saved() == expected);
}

TEST_F(SafetyModelTest, defaultsWithoutStrictWithholdingAreNotTheSafeValues) {
  begin([](AppConfig&) {});
  EXPECT_FALSE(model_->isAtSafeValues());
}

TEST_F(SafetyModelTest, changeFromOutsideShowsByItself) {
  begin([](AppConfig&) {});
  store_.update([](AppConfig& config) { config.safety.allowTrash = true; });
  EXPECT_TRUE(QTest::qWaitFor([&] { return model_->isOn(SafetySwitch::allowTrash); }, 10'000));
}

/// Everybody may write the file by now, so it is not written over.
TEST_F(SafetyModelTest, changeThatIsNotSavedGoesBack) {
  begin([](AppConfig& config) { config.strictWithholding = true; });
  QSignalSpy failures(&*model_, &SafetyModel::notSaved);
  std::filesystem::permissions(store_.configURL(), std::filesystem::perms::all);
  model_->set(SafetySwitch::readOnly, false);
  EXPECT_TRUE(QTest::qWaitFor([&] { return model_->isOn(SafetySwitch::readOnly) && !settings_->isSaving(); },
                              10'000));
  ASSERT_EQ(failures.count(), 1);
  EXPECT_TRUE(failures.at(0).at(0).toString().contains("everybody may write it"));
  EXPECT_TRUE(
      QTest::qWaitFor([&] { return model_->fileState() == ConfigStore::FileState::untrusted; }, 10'000));
  EXPECT_EQ(model_->fileProblem(), "everybody may write it");
}

TEST_F(SafetyModelTest, refusalsAreTheWordsOfTheHelper) {
  EXPECT_EQ(refusal(SafetySwitch::readOnly), "Read-only mode is on; no message was moved.");
  EXPECT_EQ(refusal(SafetySwitch::allowMarkRead), "Mark-as-read is disabled in Safety settings.");
  EXPECT_EQ(refusal(SafetySwitch::allowMove), "Folder moves are disabled in Safety settings.");
  EXPECT_EQ(refusal(SafetySwitch::allowTrash), "Trash is disabled in Safety settings.");
  EXPECT_TRUE(
      refusal(SafetySwitch::allowCopyMoveFallback)
          .contains("enable \"Move on servers without MOVE (COPY + mark deleted)\" in Safety settings."));
  for (const SafetySwitch item : {SafetySwitch::blockAuthCodeBodies, SafetySwitch::strictWithholding}) {
    EXPECT_TRUE(refusal(item).startsWith("Body withheld: looks like a sensitive security message ("))
        << refusal(item).toStdString();
  }
}

}  // namespace
}  // namespace tarnwell
