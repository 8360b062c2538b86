/// tarnwell-app-pictures DIRECTORY ADDRESS HOST PORT HELPER: draws every page into DIRECTORY. Reads the
/// password of the account from standard input. Makes the account with the same keys as a person would; so
/// give it a home and a keyring of its own.

#include <QApplication>
#include <QElapsedTimer>
#include <QProcess>
#include <cstdlib>
#include <filesystem>
#include <fstream>
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
    QCoreApplication::processEvents(QEventLoop::AllEvents, 50);
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

/// What an assistant might do on a morning.
bool work(const QString& helper) {
  QProcess process;
  process.setStandardErrorFile(QProcess::nullDevice());
  process.start(helper, {QStringLiteral("serve")});
  int number = 0;
  const auto call = [&](const char* tool, const char* arguments) {
    process.write(QStringLiteral(R"({"jsonrpc":"2.0","id":%1,"method":"tools/call",)"
                                 R"("params":{"name":"%2","arguments":%3}})")
                      .arg(++number)
                      .arg(QLatin1String(tool), QLatin1String(arguments))
                      .toUtf8() +
                  '\n');
  };
  call("get_status", "{}");
  call("list_folders", "{}");
  call("search_inbox", "{}");
  call("get_message_body", R"({"uid": 1})");
  call("move_message", R"({"uid": 1, "targetFolder": "Archive"})");
  call("propose_inbox_cleanup", "{}");
  process.closeWriteChannel();
  return process.waitForFinished() && process.exitCode() == 0;
}

/// Two assistants that are here, one of them with settings of its own, and the plan to connect it.
bool planToConnect(AssistantsModel& assistants) {
  const std::filesystem::path home = Machine::thisOne().home;
  std::filesystem::create_directories(home / ".cursor");
  std::filesystem::create_directories(home / ".lmstudio");
  std::filesystem::create_directories(home / ".codex");
  std::ofstream(home / ".cursor/mcp.json") << "{\n"
                                              "  \"mcpServers\": {\n"
                                              "    \"weather\": {\n"
                                              "      \"command\": \"/usr/local/bin/weather\"\n"
                                              "    }\n"
                                              "  }\n"
                                              "}\n";
  assistants.look();
  if (!wait([&] { return !assistants.isLooking() && !assistants.assistants().empty(); })) {
    return false;
  }
  assistants.act(AssistantID::cursor);
  return wait([&] { return assistants.progress(AssistantID::cursor).plan.has_value(); });
}

/// A message that may be read, among some that may not.
bool search(TryItModel& tryIt) {
  tryIt.search({});
  if (!wait([&] { return tryIt.state() == TryItModel::State::found && tryIt.messages().size() > 3; })) {
    return false;
  }
  for (std::size_t index = 0; index < tryIt.messages().size(); ++index) {
    if (tryIt.messages()[index].isWithheld) {
      tryIt.choose(index);
      return wait([&] { return tryIt.text().has_value(); });
    }
  }
  return false;
}

int drawAll(int count, char** words) {
  if (count != 6) {
    std::cerr << "usage: tarnwell-app-pictures DIRECTORY ADDRESS HOST PORT HELPER\n";
    return 1;
  }
  QApplication application(count, words);
  SettingsFile settings(ConfigStore::shared());
  Language language;
  language.choose(AppLanguage::english);
  applyTheme(application, Scheme::light);
  Machine machine = Machine::thisOne();
  machine.helper = words[5];
  AppWindow app(settings, KeychainStore::shared(), machine);
  app.window().show();
  if (!setUp(app.account(), words) || !work(QString::fromUtf8(words[5]))) {
    std::cerr << "the account or the helper does not work\n";
    return 1;
  }
  app.choose(AppWindow::PageName::activity);  // which reads the journal from now on
  constexpr int enough = 9;  // six calls, the sign-in of the test, and the helper's coming and going
  wait([&] { return app.activity().rowCount() >= enough; });
  PictureBook book(app, language, QString::fromUtf8(words[1]));
  app.endpoint().start();
  const bool areReady = wait([&] { return app.endpoint().state() == EndpointModel::State::running; }) &&
                        planToConnect(app.assistants());
  app.choose(AppWindow::PageName::tryIt);  // which forgets everything when it is left
  const bool areDrawn = areReady && search(app.tryIt()) && book.draw(AppWindow::PageName::tryIt, "try-it") &&
                        book.draw(AppWindow::PageName::account, "account") &&
                        book.draw(AppWindow::PageName::safety, "safety") &&
                        book.draw(AppWindow::PageName::assistants, "assistants") &&
                        book.draw(AppWindow::PageName::endpoint, "endpoint") &&
                        book.draw(AppWindow::PageName::activity, "activity") &&
                        book.draw(AppWindow::PageName::about, "about");
  if (!areDrawn) {
    std::cerr << "a page has nothing to show, or cannot be written into " << words[1] << "\n";
  }
  return areDrawn ? 0 : 1;
}

}  // namespace

int main(int count, char** words) { std::_Exit(drawAll(count, words)); }
