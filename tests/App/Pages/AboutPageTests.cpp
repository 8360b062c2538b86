#include "App/Pages/AboutPage.h"

#include <QClipboard>
#include <fstream>
#include <optional>
#include <string>

#include "App/Widgets/Theme.h"
#include "App/support/PageFixture.h"
#include "support/InMemorySecretItems.h"

namespace tarnwell::test {
namespace {

constexpr char email[] = "anna.lindqvist@meadow.example";

class AboutPageTest : public PageTest {
 protected:
  void begin() {
    settings_.emplace(store_);
    about_.emplace(*settings_, KeychainStore("app.tarnwell.Tarnwell", std::nullopt, items_));
    page_.emplace(*about_);
    // As the window does.
    QObject::connect(&*settings_, &SettingsFile::changed, &language_, [this] {
      language_.choose(settings_->config().language.value_or(AppLanguage::english));
    });
    open(*page_);
  }
  AppConfig saved() { return PageTest::saved(*settings_); }

  /// The notice that is shown.
  const Notice* notice() const {
    for (const Notice* const notice : page_->findChildren<Notice*>()) {
      if (notice->isVisible()) {
        return notice;
      }
    }
    return nullptr;
  }

  InMemorySecretItems& items_ = InMemorySecretItems::kept();
  std::optional<SettingsFile> settings_;
  std::optional<AboutModel> about_;
  std::optional<AboutPage> page_;
};

class AboutPageIn : public AboutPageTest, public testing::WithParamInterface<AppLanguage> {
 protected:
  AboutPageIn() {
    store_.update([](AppConfig& config) { config.email = email, config.language = GetParam(); });
    language_.choose(GetParam());
  }
};
INSTANTIATE_TEST_SUITE_P(Table, AboutPageIn, testing::ValuesIn(AppLanguages::allCases), languageName);

TEST_F(AboutPageTest, keysChooseTheLanguageAtOnce) {
  begin();
  ASSERT_TRUE(tabTo("Language of this window"));
  press(Qt::Key_Down);
  EXPECT_EQ(saved().language, AppLanguage::english);
  press(Qt::Key_Down);
  EXPECT_EQ(saved().language, AppLanguage::japanese);
  EXPECT_EQ(page_->title(), "このアプリについて");
  EXPECT_EQ(QApplication::focusWidget()->accessibleName(), "このウィンドウの言語");
  press(Qt::Key_Home);
  EXPECT_EQ(saved().language, std::nullopt);
  EXPECT_EQ(page_->title(), "About");
}

TEST_F(AboutPageTest, languageFromOutsideShowsByItself) {
  begin();
  store_.update([](AppConfig& config) { config.language = AppLanguage::japanese; });
  EXPECT_TRUE(eventually([&] { return page_->findChild<QComboBox*>()->currentText() == "日本語"; }));
}

/// A folder that nothing can be written into, also not by root: it is a file.
TEST_F(AboutPageTest, languageThatIsNotSavedGoesBack) {
  store_ = ConfigStore(directory_ / "folder");
  std::ofstream(directory_ / "folder") << "in the way";
  begin();
  ASSERT_TRUE(tabTo("Language of this window"));
  press(Qt::Key_Down);
  press(Qt::Key_Down);
  const auto isTold = [&] {
    return notice() && notice()->text() == "The settings could not be saved. The page shows what holds.";
  };
  ASSERT_TRUE(eventually([&] { return isTold() && page_->findChild<QComboBox*>()->currentIndex() == 0; }));
  EXPECT_TRUE(notice()->details().contains("folder"));
}

TEST_P(AboutPageIn, keysReachAndCopyWhereThingsAre) {
  begin();
  QStringList places;
  for (const QString& stop : tabStops(*page_)) {
    EXPECT_FALSE(stop.isEmpty());
    ASSERT_TRUE(tabTo(stop));
    if (qobject_cast<QLineEdit*>(QApplication::focusWidget())) {
      press(Qt::Key_A, Qt::ControlModifier);
      press(Qt::Key_C, Qt::ControlModifier);
      places.append(QApplication::clipboard()->text());
      type("x");  // it cannot be changed
      EXPECT_EQ(qobject_cast<QLineEdit*>(QApplication::focusWidget())->text(), places.back());
    }
  }
  EXPECT_EQ(places, QStringList({about_->settingsPath(), about_->secretService(), about_->logCommand()}));
}

TEST_P(AboutPageIn, keyCopiesTheDiagnosticsAndShowsThem) {
  begin();
  QApplication::clipboard()->clear();
  press(Qt::Key_C, Qt::AltModifier);
  ASSERT_TRUE(eventually([&] { return notice() != nullptr; }));
  const QString text = QApplication::clipboard()->text();
  EXPECT_TRUE(text.startsWith("Tarnwell: " + about_->version()));
  EXPECT_TRUE(text.contains("platform " + QApplication::platformName()));
  EXPECT_FALSE(text.contains("anna"));
  EXPECT_EQ(notice()->details(), text);
}

TEST_F(AboutPageTest, diagnosticsNameTheSchemeThatIsShown) {
  auto& application = *qobject_cast<QApplication*>(QCoreApplication::instance());
  applyTheme(application, Scheme::dark);
  begin();
  press(Qt::Key_C, Qt::AltModifier);
  EXPECT_TRUE(eventually([&] { return QApplication::clipboard()->text().contains(", dark\n"); }));
  applyTheme(application, Scheme::light);
  press(Qt::Key_C, Qt::AltModifier);
  EXPECT_TRUE(eventually([&] { return QApplication::clipboard()->text().contains(", light\n"); }));
}

TEST_P(AboutPageIn, showsVersionLinksAndLicence) {
  begin();
  const QString texts = shown(*page_);
  EXPECT_TRUE(texts.contains("Tarnwell " + about_->version()));
  EXPECT_TRUE(texts.contains("<a href=\"https://modelcontextprotocol.io\">Model Context Protocol</a>"));
  EXPECT_TRUE(texts.contains("<a href=\"https://opensource.org/license/mit\">MIT "));
  EXPECT_TRUE(texts.contains("MIT License\n\nCopyright (c) "));
  EXPECT_TRUE(texts.endsWith("OR OTHER DEALINGS IN THE SOFTWARE."));
}

TEST_P(AboutPageIn, nothingIsCutOff) {
  applyTheme(*qobject_cast<QApplication*>(QCoreApplication::instance()), Scheme::light);
  begin();
  press(Qt::Key_C, Qt::AltModifier);
  ASSERT_TRUE(eventually([&] { return notice() != nullptr; }));
  for (const QSize size : {QSize(620, 600), QSize(400, 300), QSize(1200, 900)}) {
    page_->resize(size);
    QCoreApplication::sendPostedEvents();
    EXPECT_EQ(cutOff(*page_), QStringList()) << size.width();
  }
}

}  // namespace
}  // namespace tarnwell::test
