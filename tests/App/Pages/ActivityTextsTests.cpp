#include "App/Pages/ActivityTexts.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QPushButton>
#include <QRegularExpression>

#include "App/support/ActivityPageFixture.h"

namespace tarnwell::test {
namespace {

bool isJapanese(const QString& text) {
  static const QRegularExpression letter("[\\p{Hiragana}\\p{Katakana}\\p{Han}]");
  return text.contains(letter);
}

constexpr auto lastPhrase = LogPhrase::endpointStopped;

/// A text of each phrase, with parts that look like places for other parts.
LogText sample(LogPhrase phrase, qint64 count = 16) {
  return {.phrase = phrase,
          .name = "NAME%2",
          .detail = "DETAIL%1",
          .count = count,
          .withheld = count > 1 ? 5 : 0,
          .milliseconds = 2'450};
}

struct ActivityTextsTest : testing::Test {
  Language language;
  ~ActivityTextsTest() override { language.choose(AppLanguage::english); }

  QStringList sentences(AppLanguage spoken) {
    language.choose(spoken);
    QStringList result;
    for (int phrase = 1; phrase <= static_cast<int>(lastPhrase); ++phrase) {
      result += ActivityTexts::sentence(sample(static_cast<LogPhrase>(phrase)));
    }
    return result;
  }
};

TEST_F(ActivityTextsTest, everyPhraseHasASentenceOfItsOwnInBothLanguages) {
  const QStringList english = sentences(AppLanguage::english);
  const QStringList japanese = sentences(AppLanguage::japanese);
  for (const QStringList& all : {english, japanese}) {
    EXPECT_EQ(QSet<QString>(all.begin(), all.end()).size(), all.size()) << "two phrases say the same";
  }
  for (qsizetype each = 0; each < english.size(); ++each) {
    SCOPED_TRACE(english[each].toStdString());
    EXPECT_FALSE(isJapanese(english[each]));
    EXPECT_TRUE(isJapanese(japanese[each])) << japanese[each].toStdString();
    for (const QString& part : {QString("NAME%2"), QString("DETAIL%1"), QString("16"), QString("2.5")}) {
      EXPECT_EQ(japanese[each].contains(part), english[each].contains(part))
          << japanese[each].toStdString() << " has other parts: " << part.toStdString();
    }
    for (const QString& text : {english[each], japanese[each]}) {
      EXPECT_FALSE(QString(text).remove("NAME%2").remove("DETAIL%1").contains('%')) << text.toStdString();
    }
  }
}

struct CountRow {
  LogPhrase phrase;
  qint64 count;
  const char* english;
};

TEST_F(ActivityTextsTest, countsHaveTheirPlurals) {
  const CountRow rows[] = {
      {LogPhrase::foundMessages, 0, "NAME%2 gave 0 messages (2.5 s)."},
      {LogPhrase::foundMessages, 1, "NAME%2 gave 1 message (2.5 s)."},
      {LogPhrase::foundMessages, 16, "NAME%2 gave 16 messages, 5 of them withheld (2.5 s)."},
      {LogPhrase::foundFolders, 1, "NAME%2 gave 1 folder (2.5 s)."},
      {LogPhrase::foundFolders, 9, "NAME%2 gave 9 folders (2.5 s)."},
      {LogPhrase::readText, 1, "NAME%2 gave a text of 1 character (2.5 s)."},
      {LogPhrase::readText, 187, "NAME%2 gave a text of 187 characters (2.5 s)."},
  };
  language.choose(AppLanguage::english);
  for (const CountRow& row : rows) {
    EXPECT_EQ(ActivityTexts::sentence(sample(row.phrase, row.count)), row.english);
  }
  LogText huge = sample(LogPhrase::foundFolders);
  huge.count = 999'999'999'999;
  EXPECT_TRUE(ActivityTexts::sentence(huge).contains("2,147,483,647")) << "no nonsense at least";
}

TEST_F(ActivityTextsTest, timeTellsTheDayUnlessItIsToday) {
  const ActivityTexts texts;
  ActivityEntry entry{.date = std::chrono::system_clock::now()};
  EXPECT_THAT(texts.words(entry, ActivityColumn::time).toStdString(), testing::MatchesRegex("..:..:.."));
  entry.date -= std::chrono::hours(48);
  EXPECT_THAT(texts.words(entry, ActivityColumn::time).toStdString(),
              testing::MatchesRegex("....-..-.. ..:..:.."));
}

TEST_F(ActivityTextsTest, subjectThatIsNotOursIsShownAsItIs) {
  const ActivityTexts texts;
  EXPECT_EQ(texts.words({.category = "quota"}, ActivityColumn::subject), "quota");
  EXPECT_EQ(texts.words({.original = "a text"}, ActivityColumn::text), "a text");
}

struct Spoken : ActivityPageTest, testing::WithParamInterface<AppLanguage> {
  Spoken() : ActivityPageTest(GetParam()) {}
  ~Spoken() override { language.choose(AppLanguage::english); }
  bool isInLanguage(const QString& text) const {
    return isJapanese(text) == (GetParam() == AppLanguage::japanese);
  }
};

TEST_P(Spoken, everythingIsSaidInTheLanguage) {
  log.tell({followedEntry(1, "tool call: get_status", "tool", SystemLogType::error)}, LogAccess::notAllowed);
  ASSERT_TRUE(hasRows(1));
  for (int column = 0; column < 4; ++column) {
    EXPECT_TRUE(isInLanguage(model.headerData(column, Qt::Horizontal, Qt::DisplayRole).toString())) << column;
    const QString text = model.index(0, column).data().toString();
    EXPECT_TRUE(column == 0 || isInLanguage(text)) << text.toStdString();
  }
  for (int choice = 0; choice < 2; ++choice) {
    EXPECT_TRUE(isInLanguage(processes()->itemText(choice))) << choice;
  }
  for (const QWidget* const widget : page.findChildren<QWidget*>()) {
    const auto* const button = qobject_cast<const QAbstractButton*>(widget);
    QStringList said{widget->accessibleName(), widget->accessibleDescription(), widget->toolTip()};
    said += button ? button->text() : QString();
    for (const QString& text : std::as_const(said)) {
      EXPECT_TRUE(text.isEmpty() || isInLanguage(text)) << text.toStdString();
    }
  }
  for (const QString& text : visibleTexts()) {
    EXPECT_TRUE(isInLanguage(text) || text == "!") << text.toStdString();
  }
}

TEST_P(Spoken, anotherLanguageChangesEverythingAtOnce) {
  log.tell({followedEntry(1, "stdio input stream ended")}, LogAccess::noJournal);
  ASSERT_TRUE(hasRows(1));
  const QString text = cell(0, ActivityColumn::text);
  const QStringList before = visibleTexts();
  language.choose(GetParam() == AppLanguage::japanese ? AppLanguage::english : AppLanguage::japanese);
  QCoreApplication::sendPostedEvents();
  EXPECT_NE(cell(0, ActivityColumn::text), text);
  for (const QString& shown : visibleTexts()) {
    EXPECT_TRUE(!before.contains(shown) || shown == "!") << shown.toStdString();
  }
}

TEST_P(Spoken, nothingIsCutOffInASmallWindow) {
  programs->run({{.processID = 4711, .parentID = 1, .name = "tarnwell"},
                 {.processID = 1, .name = "code", .executable = "/usr/share/code/code"}});
  log.tell({followedEntry(1, "tool call: get_status", "tool", SystemLogType::error),
            followedEntry(2, "stdio MCP server started")},
           LogAccess::notAllowed);
  ASSERT_TRUE(hasRows(2));
  ASSERT_TRUE(QTest::qWaitFor([&] { return processes()->itemText(2).startsWith("Visual Studio Code"); }));
  processes()->setCurrentIndex(2);
  page.resize(640, 600);  // a window of 800 x 600 with the names of the pages beside
  QTest::qWait(0);
  EXPECT_EQ(page.size(), QSize(640, 600)) << "the page needs more room";
  for (const QPushButton* const button : page.findChildren<QPushButton*>()) {
    EXPECT_TRUE(!button->isVisible() || button->width() >= button->minimumSizeHint().width())
        << button->text().toStdString();
  }
  for (const QLabel* const label : page.findChildren<QLabel*>()) {
    const int needed = label->wordWrap() ? label->heightForWidth(label->width()) : label->sizeHint().height();
    EXPECT_TRUE(!label->isVisible() || label->height() >= needed) << label->text().toStdString();
  }
  EXPECT_GE(processes()->width(), processes()->sizeHint().width());
  const QFontMetrics metrics(table()->font());
  for (int column = 0; column < 3; ++column) {
    for (const QString& text : {model.headerData(column, Qt::Horizontal, Qt::DisplayRole).toString(),
                                model.index(0, column).data().toString()}) {
      EXPECT_GT(table()->columnWidth(column), metrics.horizontalAdvance(text)) << text.toStdString();
    }
  }
  EXPECT_GT(table()->columnWidth(3), 200);
  EXPECT_GT(table()->viewport()->height(), 3 * table()->rowHeight(0));
}

INSTANTIATE_TEST_SUITE_P(, Spoken, testing::Values(AppLanguage::english, AppLanguage::japanese),
                         [](const auto& instance) { return std::string(rawValue(instance.param)); });

}  // namespace
}  // namespace tarnwell::test
