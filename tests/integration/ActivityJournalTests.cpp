/// The activity page with a real journal and two programs that serve.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QApplication>
#include <QLabel>
#include <QProcess>
#include <QTest>
#include <algorithm>
#include <regex>
#include <set>
#include <sstream>

#include "App/Models/Language.h"
#include "App/Pages/ActivityPage.h"
#include "App/Pages/ActivityTexts.h"
#include "support/ForkedProcess.h"
#include "support/RealJournal.h"
#include "support/TemporaryDirectory.h"

namespace tarnwell::test {
namespace {

class NoFileChoice : public FileChoice {
 public:
  void askWhereToSave(QWidget* /*parent*/, const QString& /*title*/, const QString& /*name*/,
                      std::function<void(const QString&)> /*chosen*/) override {}
};

/// A `tarnwell serve` whose client this is.
class Helper {
 public:
  explicit Helper(const TemporaryDirectory& home) {
    process_.setProcessEnvironment([&] {
      QProcessEnvironment environment;
      environment.insert("HOME", QString::fromStdString(home.path().string()));
      return environment;
    }());
    process_.start(TARNWELL_PROGRAM, {"serve"});
    process_.waitForStarted();
  }

  qint64 processID() const { return process_.processId(); }

  /// Returns when the answer is there. The journal's socket holds few entries, so the journal must keep up.
  void ask(const RealJournal& journal, const char* request) {
    process_.write(request);
    process_.write("\n");
    while (!process_.canReadLine() && process_.waitForReadyRead()) {
    }
    process_.readLine();
    journal.sync();
  }
  void sayGoodbye(const RealJournal& journal) {
    process_.closeWriteChannel();
    process_.waitForFinished();
    journal.sync();
  }

 private:
  QProcess process_;
};

constexpr const char* initialize =
    R"({"jsonrpc": "2.0", "id": 1, "method": "initialize", "params": {"protocolVersion": "2025-06-18",
 "capabilities": {}, "clientInfo": {"name": "test", "version": "1"}}})";
constexpr const char* getStatus =
    R"({"jsonrpc": "2.0", "id": 2, "method": "tools/call", "params": {"name": "get_status", "arguments": {}}})";

std::string oneLine(std::string text) {
  text.erase(std::remove(text.begin(), text.end(), '\n'), text.end());
  return text;
}

/// All rows as "level text", one a line.
std::string rowsOf(const ActivityModel& model) {
  std::string rows;
  for (int row = 0; row < model.rowCount(); ++row) {
    for (const ActivityColumn column : {ActivityColumn::level, ActivityColumn::text}) {
      rows += model.index(row, static_cast<int>(column)).data().toString().toStdString() + " ";
    }
    rows.back() = '\n';
  }
  return rows;
}

std::string shownFrom(const std::function<std::string(ActivityModel&, ActivityPage&)>& story) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  int count = 1;
  char name[] = "test";
  char* arguments[] = {name, nullptr};
  const QApplication application(count, arguments);
  Language language;
  language.choose(AppLanguage::english);
  const ActivityTexts texts;
  NoFileChoice files;
  ActivityModel model(LogBuffer::shared(), texts);
  ActivityPage page(model, files);
  page.show();
  return story(model, page);
}

std::string twoHelpers() {
  const RealJournal journal;
  const TemporaryDirectory home;
  std::set<qint64> processes;
  return shownFrom([&](ActivityModel& model, ActivityPage& page) {
    Helper before(home);
    before.ask(journal, oneLine(initialize).c_str());
    Helper meanwhile(home);
    meanwhile.ask(journal, oneLine(initialize).c_str());
    AppLogger::notice(AppLogger::Category::app, "from the app itself");
    meanwhile.ask(journal, getStatus);
    processes = {before.processID(), meanwhile.processID(), QCoreApplication::applicationPid()};
    before.sayGoodbye(journal);
    meanwhile.sayGoodbye(journal);
    (void)QTest::qWaitFor([&] { return model.rowCount() >= 13; }, 20'000);
    std::string shown = rowsOf(model);
    for (int row = 0; row < model.rowCount(); ++row) {
      processes.erase(model.entry(row).processID);
    }
    shown += std::to_string(processes.size()) + " processes without an entry\n";
    page.activateWindow();
    (void)QTest::qWaitForWindowActive(&page);
    QTest::keyClick(&page, Qt::Key_F, Qt::ControlModifier);
    QTest::keyClicks(QApplication::focusWidget(), "goodbye");
    return shown + "found:\n" + rowsOf(model);
  });
}

TEST(ActivityJournal, showsTwoHelpersAndTheAppItself) {
  const std::string shown = inForkedProcess(twoHelpers);
  std::multiset<std::string> lines;
  std::istringstream rows(shown);
  for (std::string line; std::getline(rows, line) && line != "found:";) {
    lines.insert(std::regex_replace(line, std::regex(R"(\(\d+\.\d s\))"), "(TIME)"));
  }
  const std::multiset<std::string> expected{
      "Info A helper starts for an assistant.",
      "Info A helper starts for an assistant.",
      "Info The helper is ready.",
      "Info The helper is ready.",
      "Info An assistant connected (protocol 2025-06-18).",
      "Info An assistant connected (protocol 2025-06-18).",
      "Notice from the app itself",
      "Info The assistant calls get_status.",
      "Info get_status answered that no account is set up (TIME).",
      "Info The assistant said goodbye.",
      "Info The assistant said goodbye.",
      "Info The helper stopped.",
      "Info The helper stopped.",
      "0 processes without an entry",
  };
  EXPECT_EQ(lines, expected) << shown;
  EXPECT_TRUE(shown.ends_with("found:\nInfo The assistant said goodbye.\nInfo The assistant said goodbye.\n"))
      << shown;
}

std::string noticesWithoutAJournal() {
  enterMountNamespace({"/run", "/var/log"});
  return shownFrom([](ActivityModel& model, ActivityPage& page) {
    (void)QTest::qWaitFor([&] { return model.access().has_value(); }, 20'000);
    std::string shown;
    for (const QLabel* const label : page.findChildren<QLabel*>()) {
      shown += label->isVisible() ? label->text().toStdString() + "\n" : "";
    }
    return shown;
  });
}

TEST(ActivityJournal, saysThatThereIsNone) {
  EXPECT_THAT(inForkedProcess(noticesWithoutAJournal),
              testing::HasSubstr("No system journal runs on this computer"));
}

}  // namespace
}  // namespace tarnwell::test
