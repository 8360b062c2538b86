#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <linux/capability.h>
#include <sys/syscall.h>

#include <condition_variable>
#include <mutex>

#include "Platform/Desktop/LogFollower.h"
#include "support/ForkedProcess.h"
#include "support/RealJournal.h"

namespace tarnwell::test {
namespace {

using std::chrono::system_clock;

constexpr const char* subsystem = "app.tarnwell.Tarnwell";

/// What a follower told, as a text such as "readable one two".
class Listener {
 public:
  LogFollower::Heard heard() {
    return [this](LogFollower::News news) {
      const std::lock_guard lock(mutex_);
      news_.push_back(std::move(news));
      changed_.notify_all();
    };
  }

  /// Waits until the text is `expected`. Returns the text, also when the wait was in vain.
  std::string textWhen(const std::string& expected) {
    std::unique_lock lock(mutex_);
    changed_.wait_for(lock, std::chrono::seconds(20), [&] { return text() == expected; });
    return text();
  }

  std::vector<LogFollower::News> news() {
    const std::lock_guard lock(mutex_);
    return news_;
  }

 private:
  std::string text() const {
    constexpr const char* names[] = {"readable", "noJournal", "notAllowed", "broken", "notSupported"};
    std::string result = news_.empty() ? "nothing" : names[static_cast<int>(news_.back().access)];
    for (const LogFollower::News& news : news_) {
      for (const FollowedEntry& entry : news.entries) {
        result += " " + entry.message;
      }
    }
    return result;
  }

  std::mutex mutex_;
  std::condition_variable changed_;
  std::vector<LogFollower::News> news_;
};

void write(const RealJournal& journal, std::string_view message, const char* category = "mcp") {
  SystemLog(subsystem).write(SystemLogType::info, category, message);
  journal.sync();
}

/// Lists the differences, one a line. Nothing when all is as expected.
class Differences {
 public:
  void compare(const std::string& name, const std::string& is, const std::string& expected) {
    if (is != expected) {
      text_ += name + ": " + is + ", not " + expected + "\n";
    }
  }
  std::string text() const { return text_; }

 private:
  std::string text_;
};

struct NewestRow {
  const char* name;
  std::size_t newest;
  const char* text;
};

TEST(LogFollowerLinux, beginsWithTheNewestAndGoesOn) {
  EXPECT_EQ(inForkedProcess([] {
              const NewestRow rows[] = {
                  {"none", 0, "readable later"},
                  {"one", 1, "readable five later"},
                  {"one less than there are", 4, "readable two three four five later"},
                  {"as many as there are", 5, "readable one two three four five later"},
                  {"one more than there are", 6, "readable one two three four five later"},
                  {"many", 1000, "readable one two three four five later"},
              };
              const RealJournal journal;
              for (const char* message : {"one", "two", "three", "four", "five"}) {
                write(journal, message);
              }
              Listener listeners[std::size(rows)];
              std::vector<std::unique_ptr<LogFollower>> followers;
              Differences differences;
              for (std::size_t row = 0; row < std::size(rows); ++row) {
                followers.push_back(std::make_unique<LogFollower>(
                    LogFollower::Query{.subsystem = subsystem, .newest = rows[row].newest},
                    listeners[row].heard()));
                const std::string atFirst(rows[row].text,
                                          std::strlen(rows[row].text) - std::strlen(" later"));
                differences.compare(rows[row].name, listeners[row].textWhen(atFirst), atFirst);
              }
              write(journal, "later");
              for (std::size_t row = 0; row < std::size(rows); ++row) {
                differences.compare(rows[row].name, listeners[row].textWhen(rows[row].text), rows[row].text);
              }
              return differences.text();
            }),
            "");
}

TEST(LogFollowerLinux, emptyJournalIsFollowedAlsoIntoItsNextFiles) {
  EXPECT_EQ(inForkedProcess([] {
              const RealJournal journal;
              Listener listener;
              const LogFollower follower({.subsystem = subsystem}, listener.heard());
              Differences differences;
              differences.compare("empty", listener.textWhen("readable"), "readable");
              write(journal, "one");
              differences.compare("first", listener.textWhen("readable one"), "readable one");
              journal.rotate();
              write(journal, "two");
              differences.compare("rotated", listener.textWhen("readable one two"), "readable one two");
              return differences.text();
            }),
            "");
}

TEST(LogFollowerLinux, entryHasItsFields) {
  EXPECT_EQ(inForkedProcess([] {
              const RealJournal journal;
              const auto before = system_clock::now() - std::chrono::seconds(1);
              const SystemLog log(subsystem);
              log.write(SystemLogType::debug, "imap", "a");
              log.write(SystemLogType::info, "tool", "b\nPRIORITY=0");
              log.write(SystemLogType::standard, "", "");
              log.write(SystemLogType::error, "日本語", "d=e");
              journal.sync();
              Listener listener;
              const LogFollower follower({.subsystem = subsystem}, listener.heard());
              listener.textWhen("readable a b\nPRIORITY=0  d=e");
              std::string fields;
              for (const LogFollower::News& news : listener.news()) {
                for (const FollowedEntry& entry : news.entries) {
                  fields += std::to_string(static_cast<int>(entry.type)) + entry.category + ":" +
                            entry.message + ";";
                  const bool isNow = entry.date > before && entry.date <= system_clock::now();
                  fields += isNow && entry.processID == ::getpid() ? "" : " wrong time or process";
                }
              }
              return fields;
            }),
            "0imap:a;1tool:b\nPRIORITY=0;2:;3日本語:d=e;");
}

/// Writes as another program, and as another user where this one is root.
void writeFromElsewhere(const RealJournal& journal, std::string_view message, uid_t user) {
  inForkedProcess([&] {
    if (::getuid() == 0 && ::setuid(user) != 0) {
      throw std::runtime_error("setuid");
    }
    SystemLog(subsystem).write(SystemLogType::info, "mcp", message);
    return std::string();
  });
  journal.sync();
}

TEST(LogFollowerLinux, othersAndOwnEntriesAreLeftOut) {
  EXPECT_EQ(inForkedProcess([] {
              const RealJournal journal;
              SystemLog("org.example.Other").write(SystemLogType::info, "mcp", "ofAnotherSubsystem");
              if (::getuid() == 0) {
                writeFromElsewhere(journal, "ofAnotherUser", 65534);
              }
              write(journal, "ownBefore");
              const auto since = system_clock::now();
              write(journal, "own");
              writeFromElsewhere(journal, "ofAnotherProcess", ::getuid());
              Listener listener;
              const LogFollower follower({.subsystem = subsystem, .withoutOwnSince = since},
                                         listener.heard());
              listener.textWhen("readable ownBefore ofAnotherProcess");
              write(journal, "ownLater");
              writeFromElsewhere(journal, "last", ::getuid());
              return listener.textWhen("readable ownBefore ofAnotherProcess last");
            }),
            "readable ownBefore ofAnotherProcess last");
}

TEST(LogFollowerLinux, manyEntriesComeInBatches) {
  EXPECT_EQ(inForkedProcess([] {
              const RealJournal journal;
              std::string expected = "readable";
              for (int number = 0; number < 25; ++number) {
                SystemLog(subsystem).write(SystemLogType::info, "mcp", std::to_string(number));
                expected += " " + std::to_string(number);
                if (number % 5 == 4) {
                  journal.sync();
                }
              }
              Listener listener;
              const LogFollower follower({.subsystem = subsystem, .batch = 10}, listener.heard());
              Differences differences;
              differences.compare("order", listener.textWhen(expected), expected);
              std::string sizes;
              for (const LogFollower::News& news : listener.news()) {
                sizes += std::to_string(news.entries.size()) + " ";
              }
              differences.compare("sizes", sizes, "0 10 10 5 ");
              return differences.text();
            }),
            "");
}

TEST(LogFollowerLinux, withoutAJournalItSaysSo) {
  EXPECT_EQ(inForkedProcess([] {
              enterMountNamespace({"/run", "/var/log"});
              Listener listener;
              const LogFollower follower({.subsystem = subsystem}, listener.heard());
              return listener.textWhen("noJournal");
            }),
            "noJournal");
}

/// Root may read every file by a capability, also in a namespace of its own.
void giveUpCapabilities() {
  __user_cap_header_struct header{_LINUX_CAPABILITY_VERSION_3, 0};
  __user_cap_data_struct none[2]{};
  if (::syscall(SYS_capset, &header, none) != 0) {
    throw std::runtime_error("capset");
  }
}

TEST(LogFollowerLinux, journalOfOthersIsNotAllowedUntilItIs) {
  EXPECT_EQ(inForkedProcess([] {
              const RealJournal journal;
              write(journal, "one");
              std::vector<std::filesystem::path> files;
              for (const auto& file : std::filesystem::recursive_directory_iterator("/run/log/journal")) {
                if (file.is_regular_file()) {
                  files.push_back(file.path());
                  std::filesystem::permissions(file.path(), std::filesystem::perms::none);
                }
              }
              giveUpCapabilities();
              Listener listener;
              const LogFollower follower({.subsystem = subsystem}, listener.heard());
              Differences differences;
              differences.compare("closed", listener.textWhen("notAllowed"), "notAllowed");
              for (const auto& file : files) {
                std::filesystem::permissions(file, std::filesystem::perms::owner_read);
              }
              differences.compare("opened", listener.textWhen("readable one"), "readable one");
              return differences.text();
            }),
            "");
}

std::size_t threadCount() {
  return static_cast<std::size_t>(std::distance(std::filesystem::directory_iterator("/proc/self/task"), {}));
}

TEST(LogFollowerLinux, afterItsEndNothingIsHeardAndItsThreadEnds) {
  EXPECT_EQ(inForkedProcess([] {
              const RealJournal journal;
              Listener listener;
              std::size_t during = 0;
              {
                const LogFollower follower({.subsystem = subsystem}, listener.heard());
                listener.textWhen("readable");
                during = threadCount();
              }
              write(journal, "one");
              for (int attempt = 0; threadCount() == during && attempt < 2000; ++attempt) {
                ::usleep(10'000);
              }
              return std::to_string(during - threadCount()) + " thread fewer, " +
                     listener.textWhen("readable");
            }),
            "1 thread fewer, readable");
}

}  // namespace
}  // namespace tarnwell::test
