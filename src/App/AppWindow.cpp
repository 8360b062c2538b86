#include "App/AppWindow.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QThread>

#include "App/Pages/AboutPage.h"
#include "App/Pages/AccountPage.h"
#include "App/Pages/ActivityPage.h"
#include "App/Pages/AssistantsPage.h"
#include "App/Pages/EndpointPage.h"
#include "App/Pages/EndpointTexts.h"
#include "App/Pages/SafetyPage.h"
#include "App/Pages/TryItPage.h"
#include "Core/LogBuffer.h"
#include "MCP/Tools/MCPTools.h"

namespace tarnwell {

AppWindow::AppWindow(SettingsFile& settings, const KeychainStore& passwords, const Machine& machine)
    : settings_(settings),
      account_(settings, passwords),
      safety_(settings),
      assistants_(settings, AssistantWork::on(machine)),
      tryIt_(settings, ReadOnlyTools(MCPTools::over(settings.store(), passwords))),
      endpoint_(settings, passwords, MCPTools::over(settings.store(), passwords)),
      activity_(LogBuffer::shared(), activityTexts_),
      about_(settings, passwords) {
  addPages();
  window_.askBeforeClosing([this] { return mayClose(); });
  // The person may have unlocked the keyring, or changed something else, in another program.
  QObject::connect(&window_, &MainWindow::activated, &settings, &SettingsFile::reload);
  QObject::connect(&window_, &MainWindow::activated, &account_, &AccountModel::refreshKeyring);
  QObject::connect(&window_, &MainWindow::activated, &assistants_, &AssistantsModel::lookAgain);
  QObject::connect(&window_, &MainWindow::activated, &endpoint_, [this] {
    if (window_.chosen() == static_cast<int>(PageName::endpoint)) {
      endpoint_.refresh();
    }
  });
}

void AppWindow::addPages() {
  window_.addPage(&AccountPage::name, [this] { return new AccountPage(account_, questions_); });
  window_.addPage(&SafetyPage::name, [this] { return new SafetyPage(safety_, questions_); });
  window_.addPage(&AssistantsPage::name, [this] { return new AssistantsPage(assistants_); });
  window_.addPage(&TryItPage::name, [this] {
    auto* const page = new TryItPage(tryIt_);
    QObject::connect(page, &TryItPage::accountWanted, &window_, [this] { choose(PageName::account); });
    return page;
  });
  window_.addPage(&EndpointPage::name, [this] { return new EndpointPage(endpoint_, questions_); });
  window_.addPage(&ActivityPage::name, [this] { return new ActivityPage(activity_, files_); });
  window_.addPage(&AboutPage::name, [this] { return new AboutPage(about_); });
}

/// Whoever uses the endpoint loses it with the window, unless it ends anyway.
bool AppWindow::mayClose() {
  if (!endpoint_.isRunning() || endpoint_.state() == EndpointModel::State::stopping) {
    return true;
  }
  questions_.ask(&window_, EndpointTexts::closing(), [this](bool isAgreed) {
    if (isAgreed) {
      endpoint_.stop();
      window_.closeUnasked();
    }
  });
  return false;
}

bool AppWindow::isWorking() const {
  return settings_.isSaving() || account_.activity() == AccountModel::Activity::saving ||
         account_.activity() == AccountModel::Activity::removing || assistants_.isWriting() ||
         endpoint_.isRunning() || endpoint_.isRenewing() || activity_.isSaving();
}

void AppWindow::finishWork(std::chrono::milliseconds longest) {
  endpoint_.stop();
  QElapsedTimer timer;
  timer.start();
  while (assistants_.isWriting() || (isWorking() && timer.elapsed() < longest.count())) {
    QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents, 50);
    QThread::msleep(1);
  }
}

}  // namespace tarnwell
