/// What the activity page takes while 10,000 entries arrive from another thread: how long until all are
/// shown, and how long the thread of the window was busy with one event, so that no frame could be drawn.
/// Then what a search, a change of the language, copying and saving take.
///
///     activity_cost [ROUNDS]

#include <QApplication>
#include <QClipboard>
#include <QElapsedTimer>
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
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
  while (page.model.rowCount() < entryCount) {
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

/// Oldest first in batches, as from the journal, while the app's own entries are there already and newer.
Figures followedEntries(TimedApplication& application) {
  LogBuffer own;
  Page page(own);
  const auto now = std::chrono::system_clock::now();
  return measure(application, page, [&] {
    constexpr int batch = 250;
    for (int number = 0; number < entryCount; number += batch) {
      std::vector<FollowedEntry> entries;
      for (int each = number; each < number + batch; ++each) {
        entries.push_back({now - std::chrono::hours(30) + std::chrono::seconds(10 * each),
                           SystemLogType::info, "tool", message(each), 4711});
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
  const auto say = [](const char* what, double time) { std::printf("%-44s %7.1f ms\n", what, time); };
  say("search that finds a fifth", milliseconds([&] { page.model.search("attic"), page.page.repaint(); }));
  say("search that finds nothing", milliseconds([&] { page.model.search("nowhere"), page.page.repaint(); }));
  say("search taken back", milliseconds([&] { page.model.search(""), page.page.repaint(); }));
  say("another language", milliseconds([&] {
        language.choose(AppLanguage::japanese);
        QCoreApplication::sendPostedEvents();
        page.page.repaint();
      }));
  say("copy all", milliseconds([&] { QApplication::clipboard()->setText(page.model.allLines()); }));
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

void print(const char* name, std::vector<Figures> rounds) {
  const auto by = [&](double Figures::* field) {
    std::sort(rounds.begin(), rounds.end(),
              [=](auto& one, auto& other) { return one.*field < other.*field; });
    std::printf(" %7.1f %7.1f %7.1f |", rounds.front().*field, rounds[rounds.size() / 2].*field,
                rounds.back().*field);
  };
  std::printf("%-22s |", name);
  by(&Figures::shown);
  by(&Figures::longest);
  by(&Figures::busiest);
  std::printf("\n");
}

int run(int count, char** arguments) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  TimedApplication application(count, arguments);
  applyTheme(application, Scheme::light);
  Language language;
  language.choose(AppLanguage::english);
  const int rounds = count > 1 ? std::max(1, std::atoi(arguments[1])) : 15;
  const double entries = memoryOfTheEntries(application);
  std::vector<Figures> own;
  std::vector<Figures> followed;
  for (int round = 0; round < rounds; ++round) {
    own.push_back(ownEntries(application));
    followed.push_back(followedEntries(application));
  }
  std::printf("%d entries, %d rounds; ms: best, median, worst\n", entryCount, rounds);
  std::printf("%-22s | %23s | %23s | %23s |\n", "", "all shown after", "longest event", "its processor time");
  print("own log", own);
  print("system log, two days", followed);
  measureUse(application, language);
  std::printf("%-44s %7.1f MB\n", "memory of the entries", entries);
  return 0;
}

}  // namespace
}  // namespace tarnwell

int main(int count, char** arguments) { return tarnwell::run(count, arguments); }
