#include "App/AppWindow.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QThread>

#include "App/Pages/AboutPage.h"
#include "App/Pages/AccountPage.h"
#include "App/Pages/ActivityPage.h"
#include "App/Pages/SafetyPage.h"
#include "Core/LogBuffer.h"

namespace tarnwell {

AppWindow::AppWindow(SettingsFile& settings, const KeychainStore& passwords)
    : settings_(settings),
      account_(settings, passwords),
      safety_(settings),
      activity_(LogBuffer::shared(), activityTexts_),
      about_(settings, passwords) {
  window_.addPage(&AccountPage::name, [this] { return new AccountPage(account_, questions_); });
  window_.addPage(&SafetyPage::name, [this] { return new SafetyPage(safety_, questions_); });
  window_.addPage(&ActivityPage::name, [this] { return new ActivityPage(activity_, files_); });
  window_.addPage(&AboutPage::name, [this] { return new AboutPage(about_); });
  // The person may have unlocked the keyring, or changed the settings, in another program.
  QObject::connect(&window_, &MainWindow::activated, &settings, &SettingsFile::reload);
  QObject::connect(&window_, &MainWindow::activated, &account_, &AccountModel::refreshKeyring);
}

void AppWindow::finishSaving() {
  constexpr int longest = 10'000;  // milliseconds
  const auto isSaving = [this] {
    return settings_.isSaving() || account_.activity() == AccountModel::Activity::saving ||
           account_.activity() == AccountModel::Activity::removing;
  };
  QElapsedTimer timer;
  timer.start();
  while (isSaving() && timer.elapsed() < longest) {
    QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents | QEventLoop::ExcludeUserInputEvents, 50);
    QThread::msleep(1);
  }
}

}  // namespace tarnwell
