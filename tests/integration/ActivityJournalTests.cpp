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
constexpr const char* markAsRead =
    R"({"jsonrpc": "2.0", "id": 3, "method": "tools/call", "params": {"name": "mark_as_read",
 "arguments": {"uid": 1}}})";
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
    before.ask(journal, oneLine(markAsRead).c_str());
    processes = {before.processID(), meanwhile.processID(), QCoreApplication::applicationPid()};
    // Who started a helper can only be told while it runs.
    const auto named = [](const ActivityProcess& process) { return !process.program.isEmpty(); };
    (void)QTest::qWaitFor([&] { return std::ranges::count_if(model.otherProcesses(), named) == 2; }, 20'000);
    before.sayGoodbye(journal);
    meanwhile.sayGoodbye(journal);
    constexpr int allCalls = 7;
    (void)QTest::qWaitFor([&] { return model.rowCount() >= allCalls; }, 20'000);
    std::string shown = "calls:\n" + rowsOf(model);
    ChoiceBox& process = *page.findChild<ChoiceBox*>();
    for (int choice = 1; choice < process.count(); ++choice) {
      process.setCurrentIndex(choice);
      // Without what tells two of one name apart.
      const QString name = process.currentText().section(',', 0, 0).section(" (process", 0, 0);
      shown += "choice " + std::to_string(choice) + ", " + name.toStdString() + ":\n" + rowsOf(model);
    }
    process.setCurrentIndex(0);
    model.showDetail(ActivityDetail::everyLine);
    constexpr int allLines = 16;
    (void)QTest::qWaitFor([&] { return model.rowCount() >= allLines; }, 20'000);
    shown += "lines:\n" + rowsOf(model);
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

/// What stands between the two headings, with a word in place of each duration.
std::vector<std::string> part(const std::string& shown, const std::string& heading, const std::string& next) {
  const std::size_t begin = shown.find(heading + "\n");
  const std::size_t end = shown.find(next + "\n", begin);
  if (begin == shown.npos || end == shown.npos) {
    return {"without " + heading};
  }
  std::vector<std::string> lines;
  std::istringstream rows(shown.substr(begin + heading.size() + 1, end - begin - heading.size() - 1));
  for (std::string line; std::getline(rows, line);) {
    lines.push_back(std::regex_replace(line, std::regex(R"((under )?\d+\.\d s)"), "TIME"));
  }
  return lines;
}

TEST(ActivityJournal, showsTwoHelpersAndTheAppItself) {
  using testing::ElementsAre;
  using testing::UnorderedElementsAre;
  const std::string shown = inForkedProcess(twoHelpers);
  SCOPED_TRACE(shown);
  const std::string status = "Info Gave the status: no account is set up, TIME";
  const std::string refusal = "Notice Marking as read refused: read-only mode is on";
  const std::string start = "Info A helper starts for an assistant.";
  const std::string goodbye = "Info The assistant said goodbye.";
  EXPECT_THAT(
      part(shown, "calls:", "choice 1, This app:"),
      UnorderedElementsAre(start, start, goodbye, goodbye, status, refusal, "Notice from the app itself"));
  // Both were started by this test, whose file gives them their name.
  const std::string newer = "choice 2, activity_journal_integration_tests:";
  const std::string older = "choice 3, activity_journal_integration_tests:";
  EXPECT_THAT(part(shown, "choice 1, This app:", newer), ElementsAre("Notice from the app itself"));
  EXPECT_THAT(part(shown, newer, older), ElementsAre(start, status, goodbye));
  EXPECT_THAT(part(shown, older, "lines:"), ElementsAre(start, refusal, goodbye));
  EXPECT_THAT(part(shown, "lines:", "found:"),
              UnorderedElementsAre(
                  start, start, "Info The helper is ready.", "Info The helper is ready.",
                  "Info An assistant connected (protocol 2025-06-18).",
                  "Info An assistant connected (protocol 2025-06-18).", "Notice from the app itself",
                  "Info get_status is called.", "Info get_status answered that no account is set up (TIME).",
                  "Info mark_as_read is called.", "Notice mark_as_read is refused: read-only mode is on.",
                  "Info mark_as_read was refused and changed nothing (TIME).", goodbye, goodbye,
                  "Info The helper stopped.", "Info The helper stopped.", "0 processes without an entry"));
  EXPECT_TRUE(shown.ends_with("found:\n" + goodbye + "\n" + goodbye + "\n"));
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
