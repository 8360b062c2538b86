/// What the page shows by itself: failures, changes from outside, texts.

#include <filesystem>
#include <fstream>
#include <iterator>
#include <utility>

#include "App/Pages/SafetyPageFixture.h"
#include "App/Widgets/Theme.h"
#include "Core/SafetyPolicy.h"
#include "IMAP/Connection/IMAPError.h"

namespace tarnwell::test {
namespace {

using SafetyTexts::label;

constexpr char notSavedText[] = "The settings could not be saved. The page shows what holds.";

/// The notice with this text, while it is shown.
const Notice* noticeOf(const SafetyPage& page, const QString& text) {
  for (const Notice* const notice : page.findChildren<Notice*>()) {
    if (notice->isVisible() && notice->text() == text) {
      return notice;
    }
  }
  return nullptr;
}

/// A folder that nothing can be written into, also not by root: it is a file.
TEST_F(SafetyPageTest, changeThatIsNotSavedIsShownAndGoesBack) {
  store_ = ConfigStore(directory_ / "folder");
  std::ofstream(directory_ / "folder") << "in the way";
  begin();
  ASSERT_TRUE(tabTo("Trash"));
  press(Qt::Key_Space);
  ASSERT_TRUE(
      eventually([&] { return noticeOf(*page_, notSavedText) && !safety_->isOn(SafetySwitch::allowTrash); }));
  EXPECT_FALSE(isOn());
  EXPECT_TRUE(noticeOf(*page_, notSavedText)->details().contains("folder"));

  ASSERT_TRUE(tabTo("Messages in one call"));
  press(Qt::Key_Up);
  EXPECT_EQ(noticeOf(*page_, notSavedText), nullptr);  // a new try
  ASSERT_TRUE(eventually([&] { return noticeOf(*page_, notSavedText) && number() == 20; }));

  std::filesystem::remove(directory_ / "folder");
  press(Qt::Key_Up);
  EXPECT_EQ(saved().safety.maxMessagesPerCall, 21);
  EXPECT_EQ(noticeOf(*page_, notSavedText), nullptr);
}

TEST_P(SafetyPageIn, changeFromOutsideShowsByItself) {
  begin([](AppConfig&) {});
  ASSERT_TRUE(tabTo(label(SafetySwitch::allowTrash)));
  store_.update([](AppConfig& config) { config.safety.allowTrash = true, config.safety.maxFetch = 30; });
  EXPECT_TRUE(eventually([&] { return isOn(); }));
  ASSERT_TRUE(tabTo(label(SafetyLimit::maxFetch)));
  EXPECT_EQ(number(), 30);
  store_.update([](AppConfig& config) { config.safety.maxFetch = 31; });
  EXPECT_TRUE(eventually([&] { return number() == 31; }));  // it has the focus, and nobody types
}

TEST_P(SafetyPageIn, changeFromOutsideDoesNotOverwriteWhatIsTyped) {
  begin([](AppConfig&) {});
  ASSERT_TRUE(tabTo(label(SafetyLimit::maxFetch)));
  press(Qt::Key_A, Qt::ControlModifier);
  type("4");
  store_.update([](AppConfig& config) { config.safety.allowTrash = true, config.safety.maxFetch = 30; });
  ASSERT_TRUE(eventually([&] { return safety_->isOn(SafetySwitch::allowTrash); }));
  EXPECT_EQ(typed(), "4");
  type("0");
  press(Qt::Key_Return);
  EXPECT_EQ(saved().safety.maxFetch, 40);
  EXPECT_TRUE(saved().safety.allowTrash);
}

/// What was typed counts, even when it is the number that stood there before.
TEST_F(SafetyPageTest, numberThatWasTypedAgainCounts) {
  begin([](AppConfig&) {});
  ASSERT_TRUE(tabTo("Messages fetched at once"));
  press(Qt::Key_A, Qt::ControlModifier);
  type("50");
  store_.update([](AppConfig& config) { config.safety.maxFetch = 30; });
  ASSERT_TRUE(eventually([&] { return safety_->value(SafetyLimit::maxFetch) == 30; }));
  press(Qt::Key_Tab);
  EXPECT_EQ(saved().safety.maxFetch, 50);
}

TEST_P(SafetyPageIn, damagedFileIsShownAndKept) {
  std::ofstream(store_.configURL()) << R"({"safety": 7})";
  begin();
  const QString text = SafetyTexts::fileNotice(ConfigStore::FileState::damaged);
  ASSERT_NE(noticeOf(*page_, text), nullptr);
  EXPECT_EQ(noticeOf(*page_, text)->details(), "safety: expected an object");
  ASSERT_TRUE(tabTo(label(SafetySwitch::allowTrash)));
  press(Qt::Key_Space);
  EXPECT_TRUE(saved().safety.allowTrash);
  EXPECT_TRUE(eventually([&] { return noticeOf(*page_, text) == nullptr; }));
  const std::filesystem::directory_iterator files(directory_.path());
  EXPECT_EQ(std::distance(std::filesystem::begin(files), std::filesystem::end(files)),
            2);  // the new file and the copy
}

TEST_P(SafetyPageIn, fileOfSomebodyElseIsShown) {
  store_.update([](AppConfig& config) { config.safety.readOnly = false; });
  std::filesystem::permissions(store_.configURL(), std::filesystem::perms::all);
  begin();
  EXPECT_NE(noticeOf(*page_, SafetyTexts::fileNotice(ConfigStore::FileState::untrusted)), nullptr);
  ASSERT_TRUE(tabTo(label(SafetySwitch::readOnly)));
  EXPECT_TRUE(isOn());
}

TEST_P(SafetyPageIn, everySettingQuotesTheHelper) {
  begin();
  for (const SafetySwitch item : SafetyItems::switches) {
    ASSERT_TRUE(tabTo(label(item)));
    EXPECT_TRUE(focused().accessibleDescription().contains(refusal(item)));
    EXPECT_TRUE(shown(*page_).contains(refusal(item)));
  }
}

/// An assistant that tells a person what to switch on uses these words.
TEST_F(SafetyPageTest, labelsAreThoseOfTheHelpersTexts) {
  begin();
  EXPECT_EQ(page_->title(), "Safety settings");
  EXPECT_EQ(label(SafetySwitch::allowCopyMoveFallback).toStdString(), copyFallbackLabel);
  const std::pair<SafetySwitch, WriteOperation> operations[] = {
      {SafetySwitch::allowMove, WriteOperation::move},
      {SafetySwitch::allowMarkRead, WriteOperation::markRead},
      {SafetySwitch::allowTrash, WriteOperation::trash},
  };
  for (const auto& [item, operation] : operations) {
    EXPECT_TRUE(disabledRefusal(operation).starts_with(label(item).toStdString() + " "));
    EXPECT_TRUE(disabledRefusal(operation).ends_with(" in " + page_->title().toStdString() + "."));
    EXPECT_TRUE(
        readOnlyRefusal(operation).starts_with(label(SafetySwitch::readOnly).toStdString() + " is on;"));
  }
}

TEST_P(SafetyPageIn, settingWithoutEffectSaysWhy) {
  begin();
  ASSERT_TRUE(tabTo(label(SafetySwitch::allowMove)));
  const QString because = SafetyTexts::sentence(SafetySwitch::allowMove, WithoutEffect::everythingIsReadOnly);
  EXPECT_TRUE(focused().accessibleDescription().startsWith(because));
  EXPECT_TRUE(shown(*page_).contains(because));
  safety_->set(SafetySwitch::readOnly, false);
  EXPECT_FALSE(shown(*page_).contains(because));
  EXPECT_TRUE(shown(*page_).contains(SafetyTexts::sentence(SafetySwitch::allowMove, std::nullopt)));
}

/// Every text, also those that a failure brought.
TEST_F(SafetyPageTest, languageChangesAllTextsAtOnce) {
  store_.update([](AppConfig& config) { config.strictWithholding = true; });
  std::filesystem::permissions(store_.configURL(), std::filesystem::perms::all);
  begin();
  ASSERT_TRUE(tabTo("Trash"));
  press(Qt::Key_Space);
  ASSERT_TRUE(eventually([&] { return noticeOf(*page_, notSavedText) != nullptr; }));
  const QStringList english = shown(*page_).split('\n');
  language_.choose(AppLanguage::japanese);
  QCoreApplication::sendPostedEvents();
  const QStringList marks{"!", "✕"};
  for (const QString& text : shown(*page_).split('\n')) {
    EXPECT_TRUE(!english.contains(text) || marks.contains(text)) << text.toStdString();
  }
  EXPECT_EQ(page_->title(), "安全設定（Safety settings）");
}

TEST_P(SafetyPageIn, nothingIsCutOff) {
  applyTheme(*qobject_cast<QApplication*>(QCoreApplication::instance()), Scheme::light);
  begin([](AppConfig& config) { config.safety = {.readOnly = false, .allowCopyMoveFallback = true}; });
  for (const QSize size : {QSize(620, 600), QSize(400, 300), QSize(1200, 900)}) {
    page_->resize(size);
    QCoreApplication::sendPostedEvents();
    EXPECT_EQ(cutOff(*page_), QStringList()) << size.width();
  }
}

}  // namespace
}  // namespace tarnwell::test
