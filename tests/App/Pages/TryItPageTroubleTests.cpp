/// What the page "Try it" says when it does not get what it asked for.

#include <gtest/gtest.h>

#include <QComboBox>
#include <QSignalSpy>
#include <vector>

#include "App/Pages/TryItPageFixture.h"

namespace tarnwell::test {
namespace {

TEST_F(TryItPageTest, tickStandsOnlyBesideATextThatIsHandedOut) {
  beginWide();
  search();
  const auto marks = [this] {
    std::vector<Mark> seen;
    for (const MarkLabel* const label : page->findChildren<MarkLabel*>()) {
      if (label->isVisible()) {
        seen.push_back(label->mark());
      }
    }
    return seen;
  };
  mailbox.hold("UID FETCH 9 (BODY");
  model->choose(0);
  settle();
  EXPECT_EQ(marks(), std::vector<Mark>()) << "not before the text is there";
  mailbox.release();
  ASSERT_TRUE(eventually([this] { return model->text().has_value(); }));
  EXPECT_EQ(marks(), std::vector{Mark::tick});
  openRow(1);
  EXPECT_EQ(marks(), std::vector{Mark::shield});
  mailbox.isDown = true;
  openRow(0);
  EXPECT_TRUE(everything().contains("The text could not be read."));
  EXPECT_EQ(marks(), std::vector<Mark>());
}

TEST_F(TryItPageTest, openingTheSameRowAgainReadsATextThatFailed) {
  beginWide();
  search();
  mailbox.isDown = true;
  openRow(0);
  ASSERT_EQ(model->text()->kind, TriedText::Kind::failed);
  mailbox.isDown = false;
  press(Qt::Key_Return);
  ASSERT_TRUE(eventually([this] { return model->text().has_value(); }));
  EXPECT_EQ(model->text()->kind, TriedText::Kind::returned);
}

TEST_F(TryItPageTest, mailboxWithoutAnotherFolderIsSaid) {
  mailbox.folders = "* LIST () \"/\" INBOX\r\n";
  begin();
  search();
  openRow(0);
  mailbox.hold("LIST");
  pressButton("What would &happen?");
  const auto* const folders = page->findChild<TryItChanges*>()->findChild<QComboBox*>();
  EXPECT_EQ(folders->currentText(), "Reading the folders…");
  mailbox.release();
  ASSERT_TRUE(eventually([this] { return !model->isListing(); }));
  EXPECT_EQ(folders->currentText(), "There is no other folder.");
}

TEST_F(TryItPageTest, troubleThatTheAccountDoesNotMendLeadsNowhere) {
  begin();
  mailbox.isDown = true;
  search();
  EXPECT_TRUE(tabStops(*page).contains("Open “&Account”"));
  mailbox.isDown = false;
  mailbox.isSlow = true;
  model->searchAgain();
  ASSERT_TRUE(eventually([this] { return model->state() == TryItModel::State::failed; }));
  ASSERT_EQ(model->failure()->kind, TriedFailure::Kind::tooSlow);
  EXPECT_FALSE(tabStops(*page).contains("Open “&Account”"));
}

TEST_F(TryItPageTest, troubleSaysWhatToDoAndLeadsToTheAccount) {
  mailbox.hasPassword = false;
  begin();
  QSignalSpy wanted(&*page, &TryItPage::accountWanted);
  search();
  EXPECT_TRUE(
      shown(*page).contains("No password is stored for your account. Type it on the page “Account” and "
                            "save it.\nAn assistant reads: “\u2068No iCloud account is configured. Open "
                            "the app and save your email + app password.\u2069”"))
      << shown(*page).toStdString();
  pressButton("Open “&Account”");
  EXPECT_EQ(wanted.count(), 1);
}

}  // namespace
}  // namespace tarnwell::test
