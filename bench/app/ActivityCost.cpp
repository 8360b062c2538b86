/// What the activity page takes while 10,000 entries arrive from another thread: how long until all are
/// shown, and how long the thread of the window was busy with one event, so that no frame could be drawn.
/// Then what a search, every line instead of the calls, one process, a change of the language and copying
/// take.
///
///     activity_cost [ROUNDS]

#include <QApplication>
#include <QClipboard>
#include <QElapsedTimer>
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <ctime>
#include <fstream>
#include <string>
#include <thread>
#include <vector>

#include "App/Models/Language.h"
#include "App/Pages/ActivityPage.h"
#include "App/Pages/ActivityTexts.h"
#include "App/Widgets/Theme.h"

namespace tarnwell {
namespace {

constexpr int entryCount = 10'000;
/// Of five lines, three make one call.
constexpr int shownCount = entryCount / 5 * 3;
constexpr int roundCount = 15;

/// Measures each event that the event loop hands out, with all that it leads to.
class TimedApplication : public QApplication {
 public:
  using QApplication::QApplication;

  bool notify(QObject* receiver, QEvent* event) override {
    if (depth_ > 0) {
      return QApplication::notify(receiver, event);
    }
    ++depth_;
    QElapsedTimer timer;
    timer.start();
    const double before = processorTime();
    const bool result = QApplication::notify(receiver, event);
    longest_ = std::max(longest_, static_cast<double>(timer.nsecsElapsed()) / 1e6);
    busiest_ = std::max(busiest_, processorTime() - before);
    --depth_;
    return result;
  }

  /// In milliseconds, since the last call.
  double longest() { return std::exchange(longest_, 0); }
  /// The same in processor time, which other programs do not disturb.
  double busiest() { return std::exchange(busiest_, 0); }

 private:
  static double processorTime() {
    timespec time{};
    ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
  }

  int depth_ = 0;
  double longest_ = 0;
  double busiest_ = 0;
};

class NoFileChoice : public FileChoice {
 public:
  void askWhereToSave(QWidget* /*parent*/, const QString& /*title*/, const QString& /*name*/,
                      std::function<void(const QString&)> /*chosen*/) override {}
};

/// Texts as a helper logs them, most of them recognised.
std::string message(int number) {
  switch (number % 5) {
    case 0:
      return "tool call: search_inbox";
    case 1:
      return "Authenticated to IMAP for us***@example.org";
    case 2:
      return "tool search_inbox: " + std::to_string(number % 50) + " messages, 5 withheld (247 ms)";
    case 3:
      return "tool move_message failed: Folder not found: Attic " + std::to_string(number);
    default:
      return "a text from elsewhere, number " + std::to_string(number);
  }
}

void fill(LogBuffer& own) {
  for (int number = 0; number < entryCount; ++number) {
    own.append({{}, std::chrono::system_clock::now(), LogLevel::info, "tool", message(number)});
  }
}

struct Page {
  explicit Page(LogBuffer& own)
      : model(own, texts, [this](const LogFollower::Query&, LogFollower::Heard function) {
          heard = std::move(function);
          return std::make_shared<int>();
        }) {
    page.resize(800, 700);
    page.show();
    settle();
  }
  static void settle() {
    for (int turn = 0; turn < 20; ++turn) {
      QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
    }
  }

  ActivityTexts texts;
  NoFileChoice files;
  LogFollower::Heard heard;
  ActivityModel model;
  ActivityPage page{model, files};
};

struct Figures {
  double shown;
  double longest;
  double busiest;
};

/// Runs `feed` on another thread until all entries are there and painted.
template <class Feed>
Figures measure(TimedApplication& application, Page& page, const Feed& feed) {
  application.longest();
  application.busiest();
  QElapsedTimer timer;
  timer.start();
  std::thread writer(feed);
  while (page.model.rowCount() < shownCount) {
    QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
  }
  page.page.repaint();
  const double shown = static_cast<double>(timer.nsecsElapsed()) / 1e6;
  writer.join();
  return {shown, application.longest(), application.busiest()};
}

Figures ownEntries(TimedApplication& application) {
  LogBuffer own;
  Page page(own);
  return measure(application, page, [&] { fill(own); });
}

/// Oldest first in batches, as from the journal, each process after the other, while the app's own entries
/// are there already and newer.
Figures followedEntries(TimedApplication& application, int linesOfAProcess) {
  LogBuffer own;
  Page page(own);
  const auto now = std::chrono::system_clock::now();
  return measure(application, page, [&] {
    constexpr int batch = 250;
    for (int number = 0; number < entryCount; number += batch) {
      std::vector<FollowedEntry> entries;
      for (int each = number; each < number + batch; ++each) {
        entries.push_back({now - std::chrono::hours(30) + std::chrono::seconds(10 * each),
                           SystemLogType::info, "tool", message(each), 4711 + each / linesOfAProcess});
      }
      page.heard({.entries = std::move(entries)});
    }
  });
}

template <class Work>
double milliseconds(const Work& work) {
  QElapsedTimer timer;
  timer.start();
  work();
  return static_cast<double>(timer.nsecsElapsed()) / 1e6;
}

void measureUse(TimedApplication& application, Language& language) {
  LogBuffer own;
  Page page(own);
  measure(application, page, [&] { fill(own); });
  const double search = milliseconds([&] {
    page.model.search("attic");
    page.page.repaint();
  });
  const double back = milliseconds([&] {
    page.model.search("");
    page.page.repaint();
  });
  const double everyLine = milliseconds([&] {
    page.model.showDetail(ActivityDetail::everyLine);
    page.page.repaint();
  });
  const double process = milliseconds([&] {
    page.model.showProcess(ActivityProcesses::thisApp);
    page.page.repaint();
  });
  const double otherLanguage = milliseconds([&] {
    language.choose(AppLanguage::japanese);
    QCoreApplication::sendPostedEvents();
    page.page.repaint();
  });
  const double copy = milliseconds([&] { QApplication::clipboard()->setText(page.model.allLines()); });
  std::printf(
      "\nOver all of them a search takes %.0f ms, taking it back %.0f, every line instead of the calls %.0f, "
      "one process %.0f, another language %.0f, copying %.0f.\n",
      search, back, everyLine, process, otherLanguage, copy);
  language.choose(AppLanguage::english);
}

/// The resident memory in MB.
double memory() {
  std::ifstream file("/proc/self/statm");
  double total = 0;
  double resident = 0;
  file >> total >> resident;
  return resident * 4096 / 1e6;
}

/// Comes first, while nothing lies ready for reuse.
double memoryOfTheEntries(TimedApplication& application) {
  LogBuffer own;
  Page page(own);
  const double before = memory();
  measure(application, page, [&] { fill(own); });
  return memory() - before;
}

/// Median and worst.
std::string column(std::vector<Figures> rounds, double Figures::* field) {
  std::sort(rounds.begin(), rounds.end(), [=](auto& one, auto& other) { return one.*field < other.*field; });
  char text[80];
  std::snprintf(text, sizeof text, " %.0f, %.0f |", rounds[rounds.size() / 2].*field, rounds.back().*field);
  return text;
}

void print(const char* name, const std::vector<Figures>& rounds) {
  std::string row = std::string("| ") + name + " |";
  for (const auto field : {&Figures::shown, &Figures::longest, &Figures::busiest}) {
    row += column(rounds, field);
  }
  std::puts(row.c_str());
}

int run(int count, char** arguments) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  TimedApplication application(count, arguments);
  applyTheme(application, Scheme::light);
  Language language;
  language.choose(AppLanguage::english);
  const double entries = memoryOfTheEntries(application);
  std::vector<Figures> own;
  std::vector<Figures> followed;
  std::vector<Figures> ofManyProcesses;
  for (int round = 0; round < roundCount; ++round) {
    own.push_back(ownEntries(application));
    followed.push_back(followedEntries(application, entryCount));
    ofManyProcesses.push_back(followedEntries(application, 5));
  }
  std::printf(
      "\n%d log entries from another thread (goals: all shown after 1000 ms, no event above 50 ms). Median "
      "and "
      "worst of %d rounds:\n\n",
      entryCount, roundCount);
  std::puts("| | all shown after, ms | longest event, ms | its processor time, ms |\n|---|---|---|---|");
  print("the app's own log", own);
  print("the system's log, of two days", followed);
  print("the same of 2000 processes", ofManyProcesses);
  measureUse(application, language);
  std::printf("The entries take %.0f MB.\n", entries);
  return 0;
}

}  // namespace
}  // namespace tarnwell

int main(int count, char** arguments) { return tarnwell::run(count, arguments); }
