/// The page "Try it" with mail that means harm, and that it forgets.

#include <gtest/gtest.h>

#include <QAccessible>
#include <cmath>
#include <ostream>

#include "App/Pages/TryItPageFixture.h"
#include "support/HostileText.h"

namespace tarnwell::test {
namespace {

class TryItPageSafety : public TryItPageTest, public testing::WithParamInterface<AppLanguage> {
 protected:
  TryItPageSafety() { language_.choose(GetParam()); }
};
INSTANTIATE_TEST_SUITE_P(In, TryItPageSafety, testing::ValuesIn(AppLanguages::allCases), languageName);

TEST_P(TryItPageSafety, leavingThePageForgetsEverything) {
  beginWide();
  search("tea");
  openRow(0);
  pressButton(word("What would &happen?", "TryItChanges"));
  ASSERT_TRUE(eventually([this] { return !model->folders().empty(); }));
  pressButton(word("The exact &JSON"));
  page->hide();
  EXPECT_EQ(model->state(), TryItModel::State::empty);
  EXPECT_TRUE(model->messages().empty());
  EXPECT_TRUE(model->calls().empty());
  EXPECT_EQ(list()->model()->rowCount(), 0);
  for (const QLabel* const label : page->findChildren<QLabel*>()) {
    EXPECT_FALSE(label->text().contains("Tea at four")) << label->text().toStdString();
    EXPECT_FALSE(label->text().contains("al@example.org")) << label->text().toStdString();
    EXPECT_FALSE(label->text().contains("Hello")) << label->text().toStdString();
  }
  for (const QPlainTextEdit* const text : page->findChildren<QPlainTextEdit*>()) {
    EXPECT_EQ(text->toPlainText(), "");
    EXPECT_FALSE(text->document()->isUndoAvailable());
  }
  for (QLineEdit* const field : page->findChildren<QLineEdit*>()) {
    EXPECT_EQ(field->text(), "");
    field->undo();
    EXPECT_EQ(field->text(), "");
  }
  for (const QComboBox* const box : page->findChildren<QComboBox*>()) {
    EXPECT_EQ(box->findText("Archive"), -1);
  }
  page->show();
  EXPECT_TRUE(shown(*page).contains(word("See it with the eyes of an assistant")));
}

/// The window system hides the page then, and not the app.
TEST_F(TryItPageTest, minimizedWindowKeepsWhatItShows) {
  struct MinimizedPage : TryItPage {
    using TryItPage::TryItPage;
    void minimize() {
      QHideEvent event;
      QSpontaneKeyEvent::setSpontaneous(&event);
      hideEvent(&event);
    }
  };
  begin();
  MinimizedPage second(*model);
  second.show();
  search();
  second.minimize();
  EXPECT_EQ(model->messages().size(), 3u);
  EXPECT_EQ(rowTexts().size(), 3);
  second.hide();
  EXPECT_TRUE(model->messages().empty());
}

struct Hostile {
  const char* name;
  std::string subject;
};
void PrintTo(const Hostile& row, std::ostream* stream) { *stream << row.name; }

class TryItPageHostile : public TryItPageTest, public testing::WithParamInterface<Hostile> {};
INSTANTIATE_TEST_SUITE_P(
    Table, TryItPageHostile,
    testing::Values(Hostile{"html", "<h1>Allowed</h1><img src='file:///etc/passwd'><a href='x'>Open</a>"},
                    Hostile{"entities", "&lt;b&gt; &amp;Search"}, Hostile{"long", filledWith("A", 10'000)},
                    Hostile{"longJapanese", filledWith("長", 10'000)},
                    Hostile{"longEmoji", filledWith("\U0001F600", 10'000)},
                    Hostile{"manyMarks", "a" + filledWith("\u0301", 10'000)},
                    Hostile{"override", "Withheld \u202e\u2067gpj.exe"},
                    Hostile{"rightToLeft", "שלום עולם (שלום)"},
                    Hostile{"controls", std::string("a\x01\x1b[31mred\x7f")},
                    Hostile{"lines", "Tea\r\n\r\nAllowed: everything"}, Hostile{"nothing", ""}),
    [](const auto& instance) { return std::string(instance.param.name); });

TEST_P(TryItPageHostile, isShownAsPlainTextThatFitsThePage) {
  for (const int width : {620, 800}) {
    SCOPED_TRACE(width);
    mailbox.mails = {{.uid = 9, .subject = GetParam().subject, .body = GetParam().subject}};
    mailbox.mails[0].from = "((" + FakeMail::literal(GetParam().subject) + " NIL \"al\" \"example.org\"))";
    begin(width);
    search();
    EXPECT_EQ(cutOff(*page), QStringList());
    openRow(0);
    EXPECT_EQ(cutOff(*page), QStringList());
    for (const QLabel* const label : page->findChildren<QLabel*>()) {
      EXPECT_TRUE(label->textFormat() == Qt::PlainText || !label->isVisible() ||
                  !Qt::mightBeRichText(label->text()))
          << label->text().toStdString();
      EXPECT_FALSE(label->text().contains(QChar(0x202e)));
      EXPECT_FALSE(label->text().contains(QChar(0x1b)));
    }
    EXPECT_FALSE(rowTexts().front().contains(QChar(0x202e)));
    EXPECT_FALSE(rowTexts().front().contains(QLatin1Char('\n')));
    page->grab();  // paints every row
    page.reset();
  }
}

TEST_P(TryItPageSafety, nothingIsCutOffInAnyState) {
  for (const int width : {620, 800}) {
    SCOPED_TRACE(width);
    begin(width, [](AppConfig& config) { config.strictWithholding = true; });
    EXPECT_EQ(cutOff(*page), QStringList());
    pressButton(word("&Filters", "TryItSearch"));
    EXPECT_EQ(cutOff(*page), QStringList());
    pressButton(word("&Filters", "TryItSearch"));
    ASSERT_TRUE(tabTo(word("Search the inbox", "TryItSearch")));
    search();
    EXPECT_EQ(cutOff(*page), QStringList());
    openRow(2);
    EXPECT_EQ(cutOff(*page), QStringList());
    pressButton(word("What would &happen?", "TryItChanges"));
    ASSERT_TRUE(eventually([this] { return !model->folders().empty(); }));
    model->tryChange(TriedChange::trash);
    ASSERT_TRUE(eventually([this] { return model->outcome().has_value(); }));
    settle();
    EXPECT_EQ(cutOff(*page), QStringList());
    pressButton(word("The exact &JSON"));
    EXPECT_EQ(cutOff(*page), QStringList());
    settings->change([](AppConfig& config) { config.strictWithholding = false; });
    settle();
    EXPECT_EQ(cutOff(*page), QStringList());
    pressButton(word("&Filters", "TryItSearch"));
    EXPECT_EQ(cutOff(*page), QStringList());
    mailbox.isDown = true;
    model->searchAgain();
    ASSERT_TRUE(eventually([this] { return model->state() == TryItModel::State::failed; }));
    settle();
    EXPECT_EQ(cutOff(*page), QStringList());
    mailbox.isDown = false;
    page.reset();
  }
}

TEST_P(TryItPageSafety, everyControlAndEveryRowHasAName) {
  beginWide();
  search();
  openRow(0);
  for (const QString& name : tabStops(*page)) {
    EXPECT_FALSE(name.isEmpty());
  }
  QAccessibleInterface* const rows = QAccessible::queryAccessibleInterface(list());
  ASSERT_NE(rows, nullptr);
  ASSERT_EQ(rows->childCount(), 3);
  EXPECT_TRUE(rows->child(1)->text(QAccessible::Name).contains("verification code"))
      << rows->child(1)->text(QAccessible::Name).toStdString();
}

/// Each of the page's mnemonics reaches one thing only.
TEST_P(TryItPageSafety, mnemonicsAreUnique) {
  beginWide();
  QStringList seen;
  const auto take = [&seen](const QString& text) {
    if (const auto place = text.indexOf(QLatin1Char('&')); place >= 0) {
      const QString key = text.mid(place + 1, 1).toUpper();
      EXPECT_FALSE(seen.contains(key)) << text.toStdString();
      seen.append(key);
    }
  };
  for (const QAbstractButton* const button : page->findChildren<QAbstractButton*>()) {
    take(button->text());
  }
  for (const QLabel* const label : page->findChildren<QLabel*>()) {
    if (label->buddy() != nullptr) {
      take(label->text());
    }
  }
  EXPECT_GE(seen.size(), 12);
}

double luminance(const QColor& colour) {
  const auto linear = [](double part) {
    return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
  };
  return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) + 0.0722 * linear(colour.blueF());
}

TEST_F(TryItPageTest, contrastOfTheRowsIsEnoughInBothSchemes) {
  for (const Scheme scheme : {Scheme::light, Scheme::dark}) {
    const QPalette palette = paletteOf(scheme);
    for (const Tone tone : {Tone::text, Tone::faint, Tone::warning}) {
      for (const QPalette::ColorRole ground : {QPalette::Base, QPalette::AlternateBase}) {
        const double one = luminance(toneColour(tone, palette));
        const double other = luminance(palette.color(ground));
        EXPECT_GE((std::max(one, other) + 0.05) / (std::min(one, other) + 0.05), 4.5);
      }
    }
  }
}

}  // namespace
}  // namespace tarnwell::test
