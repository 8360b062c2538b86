/// tarnwell-app-pictures DIRECTORY ADDRESS HOST PORT: draws every page into DIRECTORY. Reads the password of
/// the account from standard input. Makes the account with the same keys as a person would; so give it a home
/// and a keyring of its own.

#include <QApplication>
#include <QElapsedTimer>
#include <QLineEdit>
#include <cstdlib>
#include <iostream>
#include <string>

#include "App/Pictures/PictureBook.h"
#include "Core/AppLogger.h"

namespace {

using namespace tarnwell;

bool wait(const std::function<bool()>& condition) {
  QElapsedTimer timer;
  timer.start();
  while (!condition() && timer.elapsed() < 20'000) {
    QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 50);
  }
  return condition();
}

/// Saves the account and tests it: the pages then show something.
bool setUp(AccountModel& account, char** words) {
  std::string password;
  std::getline(std::cin, password);
  account.setEmail(QString::fromUtf8(words[2]));
  account.setHost(QString::fromUtf8(words[3]));
  account.setPort(QString::fromUtf8(words[4]));
  const auto isIdle = [&] { return account.activity() == AccountModel::Activity::none; };
  account.setPasswordTyped(true);
  account.save(Secret(password));
  if (!wait([&] { return isIdle() && account.isConfigured(); })) {
    return false;
  }
  account.setPasswordTyped(false);
  account.test(Secret());
  return wait([&] {
    return isIdle() && account.stages() && account.stages()->back() == AccountModel::StageState::done;
  });
}

int drawAll(int count, char** words) {
  QApplication application(count, words);
  SettingsFile settings(ConfigStore::shared());
  Language language;
  language.choose(AppLanguage::english);
  applyTheme(application, Scheme::light);
  AppWindow app(settings, KeychainStore::shared());
  app.window().show();
  if (count != 5 || !setUp(app.account(), words)) {
    std::cerr
        << "usage: tarnwell-app-pictures DIRECTORY ADDRESS HOST PORT <PASSWORD, and the account must work\n";
    return 1;
  }
  PictureBook book(app, language, QString::fromUtf8(words[1]));
  const bool areDrawn = book.draw(AppWindow::PageName::account, "account") &&
                        book.draw(AppWindow::PageName::safety, "safety") &&
                        book.draw(AppWindow::PageName::activity, "activity") &&
                        book.draw(AppWindow::PageName::about, "about");
  if (!areDrawn) {
    std::cerr << "cannot write into " << words[1] << "\n";
  }
  return areDrawn ? 0 : 1;
}

}  // namespace

int main(int count, char** words) { std::_Exit(drawAll(count, words)); }
