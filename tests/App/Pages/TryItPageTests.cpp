/// The paths through the page "Try it", by keys alone.

#include "App/Pages/TryItPage.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QAccessible>
#include <QClipboard>

#include "App/Pages/SafetyTexts.h"
#include "App/Pages/TryItPageFixture.h"

namespace tarnwell::test {
namespace {

class TryItPageIn : public TryItPageTest, public testing::WithParamInterface<AppLanguage> {
 protected:
  TryItPageIn() { language_.choose(GetParam()); }
};
INSTANTIATE_TEST_SUITE_P(In, TryItPageIn, testing::ValuesIn(AppLanguages::allCases), languageName);

TEST_F(TryItPageTest, beginsEmptyAndReadsNothing) {
  begin();
  EXPECT_TRUE(shown(*page).contains(word("See it with the eyes of an assistant")));
  EXPECT_EQ(mailbox.commands(), std::vector<std::string>());
  EXPECT_EQ(tabStops(*page), (QStringList{"Search the inbox", "&Filters", "&Search"}));
}

TEST_P(TryItPageIn, listShowsWhatIsWithheldAndByWhichWord) {
  begin();
  search();
  EXPECT_TRUE(shown(*page).contains(TryItTexts::summary(3, 2, false))) << shown(*page).toStdString();
  const QStringList rows = rowTexts();
  ASSERT_EQ(rows.size(), 3);
  EXPECT_TRUE(rows[0].startsWith("Al <al@example.org>. Tea at four. ")) << rows[0].toStdString();
  EXPECT_TRUE(rows[0].endsWith("Hello, see you.")) << rows[0].toStdString();
  EXPECT_TRUE(rows[0].contains(word("Unread", "TryItTexts")));
  EXPECT_FALSE(rows[2].contains(word("Unread", "TryItTexts")));
  const QString withheld = word("Withheld: “%1” in the subject", "TryItTexts");
  EXPECT_TRUE(rows[1].endsWith(withheld.arg("\u2068verification code\u2069"))) << rows[1].toStdString();
  EXPECT_TRUE(
      rows[2].endsWith(word("Withheld: “%1” in the text", "TryItTexts").arg("\u2068security code\u2069")))
      << rows[2].toStdString();
}

TEST_F(TryItPageTest, sentencesOfASearchCountInBothLanguages) {
  EXPECT_EQ(TryItTexts::summary(16, 5, false), "16 messages, 5 withheld. An assistant sees exactly this.");
  EXPECT_EQ(TryItTexts::summary(1, 1, false), "1 message, 1 withheld. An assistant sees exactly this.");
  EXPECT_EQ(TryItTexts::summary(2, 0, false), "2 messages, none withheld. An assistant sees exactly this.");
  EXPECT_EQ(TryItTexts::summary(0, 0, false), "No message was found. An assistant would find none either.");
  EXPECT_EQ(TryItTexts::summary(16, 5, true), "16 messages, 5 withheld.");
  EXPECT_EQ(TryItTexts::summary(0, 0, true), "No message was found.");
  EXPECT_EQ(TryItTexts::progress({12, 20}), "12 of 20 messages are read.");
  EXPECT_EQ(TryItTexts::progress({}), "Asking the mail server…");
  language_.choose(AppLanguage::japanese);
  EXPECT_EQ(TryItTexts::summary(16, 5, false),
            "メール 16 通、うち 5 通は渡しません。アシスタントからもこのとおりに見えます。");
  EXPECT_EQ(TryItTexts::summary(16, 5, true), "メール 16 通、うち 5 通は渡しません。");
  EXPECT_EQ(TryItTexts::progress({12, 20}), "20 通のうち 12 通を読み取りました。");
}

TEST_F(TryItPageTest, datesAreThoseOfThePersonsClock) {
  const QDateTime now(QDate(2024, 6, 3), QTime(18, 0));
  const QString today = QDateTime(QDate(2024, 6, 3), QTime(9, 5)).toString(Qt::RFC2822Date);
  EXPECT_EQ(TryItTexts::shortDate(today, now), "9:05 AM");
  EXPECT_EQ(TryItTexts::shortDate(today + " (CEST)", now), "9:05 AM");
  EXPECT_EQ(TryItTexts::shortDate(today, now.addDays(1)), "6/3/24");
  EXPECT_EQ(TryItTexts::shortDate("yesterday", now), "yesterday");
  EXPECT_EQ(TryItTexts::longDate(today), "Monday, June 3, 2024, 9:05 AM");
}

TEST_P(TryItPageIn, handedOutMessageShowsItsFieldsAndTheText) {
  begin();
  search();
  openRow(0);
  const QString all = everything();
  for (const QString& part :
       {QStringLiteral("Tea at four"), QStringLiteral("Al <al@example.org>"),
        word("The text is handed out.", "TryItTexts"), QStringLiteral("Hello,\nsee you.")}) {
    EXPECT_TRUE(all.contains(part)) << part.toStdString() << " is not in\n" << all.toStdString();
  }
}

TEST_P(TryItPageIn, withheldMessageShowsTheWordItsPlaceAndTheRefusal) {
  begin();
  search();
  openRow(2);
  const QString all = everything();
  const QString reason = word("“%1” in the text (%2)", "TryItTexts")
                             .arg("\u2068security code\u2069", word("security code", "TryItTexts"));
  for (const QString& part :
       {word("The text is withheld. An assistant is told why instead.", "TryItTexts"), reason,
        QStringLiteral("[withheld: sensitive]"),
        QStringLiteral("Body withheld: looks like a sensitive security message (security_code).")}) {
    EXPECT_TRUE(all.contains(part)) << part.toStdString() << " is not in\n" << all.toStdString();
  }
  EXPECT_FALSE(all.contains("4711"));
}

TEST_F(TryItPageTest, switchedOffWithholdingIsSaid) {
  begin(620, [](AppConfig& config) { config.safety.blockAuthCodeBodies = false; });
  search();
  openRow(1);
  EXPECT_TRUE(everything().contains("The text is handed out, because withholding is switched off."));
  EXPECT_TRUE(everything().contains("“\u2068verification code\u2069” in the subject (verification code)"));
  EXPECT_TRUE(everything().contains("4711"));
}

TEST_F(TryItPageTest, narrowPageTakesTurnsAndEscapeGoesBack) {
  begin();
  search();
  openRow(1);
  EXPECT_FALSE(list()->isVisible());
  EXPECT_EQ(nameOf(QApplication::focusWidget()), "&Back");
  press(Qt::Key_Escape);
  EXPECT_TRUE(list()->isVisible());
  EXPECT_TRUE(list()->hasFocus());
  EXPECT_EQ(list()->currentIndex().row(), 1);
  EXPECT_EQ(model->chosen(), nullptr);
}

TEST_F(TryItPageTest, widePageFollowsTheList) {
  beginWide();
  search();
  goToList();
  press(Qt::Key_Home);
  press(Qt::Key_Down);
  EXPECT_TRUE(list()->isVisible());
  ASSERT_NE(model->chosen(), nullptr);
  EXPECT_EQ(model->chosen()->uid, 8u);
  EXPECT_TRUE(list()->hasFocus());
}

TEST_F(TryItPageTest, filtersCountWhileTheyAreSeen) {
  begin();
  pressButton("&Filters");
  ASSERT_TRUE(tabTo("From"));
  type("al@example.org");
  ASSERT_TRUE(tabTo("Subject"));
  type("tea");
  ASSERT_TRUE(tabTo("Received"));
  press(Qt::Key_Down);
  ASSERT_TRUE(tabTo("Unread messages only"));
  press(Qt::Key_Space);
  ASSERT_TRUE(tabTo("Subject"));
  search();
  const std::string request = model->calls().front()->request;
  const JSONValue arguments = (*JSONValue::decode(request))["arguments"];
  const std::string yesterday = QDate::currentDate().addDays(-1).toString(Qt::ISODate).toStdString();
  EXPECT_EQ(arguments,
            JSONValue(JSONObject{
                {"from", "al@example.org"}, {"subject", "tea"}, {"unreadOnly", true}, {"since", yesterday}}));
  pressButton("&Filters");
  ASSERT_TRUE(tabTo("Search the inbox"));
  search();
  EXPECT_EQ((*JSONValue::decode(model->calls().front()->request))["arguments"], JSONValue(JSONObject{}));
}

TEST_F(TryItPageTest, searchCanBeWatchedAndStopped) {
  begin();
  mailbox.hold("UID FETCH 9 (BODY");
  press(Qt::Key_Return);
  ASSERT_TRUE(eventually([this] { return shown(*page).contains("1 of 3 messages are read."); }));
  pressButton("Ca&ncel");
  EXPECT_EQ(model->state(), TryItModel::State::cancelled);
  EXPECT_TRUE(shown(*page).contains("The search was stopped."));
  mailbox.release();
}

TEST_P(TryItPageIn, exactJSONIsCopiedByteForByte) {
  mailbox.mails[0].subject = "gpj\u202etxt.exe";
  begin();
  search();
  openRow(0);
  pressButton(word("The exact &JSON"));
  const ToolCall call = *model->calls().front();
  EXPECT_TRUE(everything().contains("\"uid\": 9"));
  EXPECT_TRUE(everything().contains("\"charCount\""));
  ASSERT_TRUE(tabTo(word("Call", "TryItCalls")));
  press(Qt::Key_Home);
  settle();
  EXPECT_TRUE(everything().contains("gpj‹U+202E›txt.exe"));
  EXPECT_FALSE(everything().contains(QChar(0x202e)));
  pressButton(
      word("Copy: %1", "CopyBlock").arg(word("What an assistant receives, byte for byte", "TryItCalls")));
  EXPECT_EQ(QGuiApplication::clipboard()->text().toStdString(), call.answer);
}

struct ChangeRow {
  const char* name;
  const char* button;
  bool isReadOnly;
  QString sentence;
};
void PrintTo(const ChangeRow& row, std::ostream* stream) { *stream << row.name; }

class TryItPageChange : public TryItPageTest, public testing::WithParamInterface<ChangeRow> {};
INSTANTIATE_TEST_SUITE_P(
    Table, TryItPageChange,
    testing::Values(
        ChangeRow{
            "moved", "If it were &moved there?", false,
            "Allowed: an assistant could move this message to “\u2068Archive\u2069”. Nothing was changed "
            "now.\nAn assistant reads: “\u2068Dry-run: no change was made to the mailbox.\u2069”"},
        ChangeRow{"markedAsRead", "If it were mar&ked as read?", false,
                  "Allowed: an assistant could mark this message as read. Nothing was changed now."},
        ChangeRow{
            "trashedWhereThatIsOff", "If it were &trashed?", false,
            "Refused, because “Trash” is off. Nothing was changed.\nAn assistant reads: “\u2068Trash is "
            "disabled in Safety settings.\u2069”"},
        ChangeRow{"movedReadOnly", "If it were &moved there?", true,
                  "Refused, because “Read-only mode” is on. Nothing was changed.\nAn assistant reads: "
                  "“\u2068Read-only mode is on; no message was moved.\u2069”"}),
    [](const auto& instance) { return std::string(instance.param.name); });

TEST_P(TryItPageChange, saysWhatWouldHappen) {
  begin(620, [](AppConfig& config) { config.safety.readOnly = GetParam().isReadOnly; });
  search();
  openRow(0);
  pressButton("What would &happen?");
  ASSERT_TRUE(eventually([this] { return !model->folders().empty(); }));
  pressButton(GetParam().button);
  ASSERT_TRUE(eventually([this] { return model->outcome().has_value(); }));
  EXPECT_TRUE(shown(*page).contains(GetParam().sentence)) << shown(*page).toStdString();
  EXPECT_FALSE(mailbox.hasCommand("SELECT"));
}

TEST_F(TryItPageTest, changedSettingsAreSaidAndTheSearchIsMadeAgain) {
  beginWide();
  search("tea");
  goToList();
  press(Qt::Key_Down);
  settings->change([](AppConfig& config) { config.strictWithholding = true; });
  EXPECT_TRUE(shown(*page).contains("The settings have changed since this search."));
  EXPECT_FALSE(shown(*page).contains("An assistant sees exactly this."));
  EXPECT_GE(list()->currentIndex().row(), 0) << "who reads on keeps the place";
  pressButton("Search a&gain");
  ASSERT_TRUE(eventually([this] { return model->state() == TryItModel::State::found; }));
  EXPECT_FALSE(shown(*page).contains("The settings have changed since this search."));
  EXPECT_TRUE(shown(*page).contains("An assistant sees exactly this."));
  EXPECT_EQ((*JSONValue::decode(model->calls().front()->request))["arguments"]["query"], JSONValue("tea"));
}

}  // namespace
}  // namespace tarnwell::test
