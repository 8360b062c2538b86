#include "Platform/Desktop/LogFollower.h"

#include <poll.h>
#include <sys/eventfd.h>
#include <systemd/sd-journal.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <ctime>
#include <filesystem>
#include <mutex>
#include <stdexcept>
#include <string_view>
#include <thread>
#include <utility>

namespace tarnwell {
namespace {

using Clock = std::chrono::system_clock;

int checked(int result) {
  if (result < 0) {
    throw std::runtime_error("the journal gave error " + std::to_string(-result));
  }
  return result;
}

/// The priorities of syslog (RFC 5424, section 6.2.1), as `SystemLog` writes them.
SystemLogType typeOf(std::string_view priority) {
  if (priority == "7") {
    return SystemLogType::debug;
  }
  if (priority == "6") {
    return SystemLogType::info;
  }
  return priority == "5" || priority == "4" ? SystemLogType::standard : SystemLogType::error;
}

/// The journal of one thread: sd-journal(3) wants the same thread for all calls.
class Journal {
 public:
  Journal(const LogFollower::Query& query) : query_(query) {
    checked(sd_journal_open(&journal_, SD_JOURNAL_LOCAL_ONLY));
    try {
      // Notification begins before the first entry is read, so nothing falls between the two.
      descriptor_ = checked(sd_journal_get_fd(journal_));
      match("SUBSYSTEM=" + query.subsystem);
      match("_UID=" + std::to_string(::getuid()));
      seekNewest();
    } catch (...) {
      sd_journal_close(journal_);
      throw;
    }
  }
  ~Journal() { sd_journal_close(journal_); }
  Journal(const Journal&) = delete;
  Journal& operator=(const Journal&) = delete;

  LogAccess access() const {
    std::error_code ignored;
    if (!std::filesystem::exists(SystemLog::defaultAddress(), ignored)) {
      return LogAccess::noJournal;
    }
    const bool hasFiles =
        sd_journal_has_runtime_files(journal_) > 0 || sd_journal_has_persistent_files(journal_) > 0;
    return hasFiles ? LogAccess::readable : LogAccess::notAllowed;
  }

  /// At most one batch. Empty when there is no more for now.
  std::vector<FollowedEntry> read() {
    std::vector<FollowedEntry> entries;
    while (entries.size() < query_.batch && (std::exchange(isOnEntry_, false) || step())) {
      if (FollowedEntry entry = current(); !isOwn(entry)) {
        entries.push_back(std::move(entry));
      }
    }
    return entries;
  }

  /// Waits for news of the journal. False when `interruption` became readable.
  bool wait(int interruption) {
    pollfd waited[] = {{descriptor_, POLLIN, 0}, {interruption, POLLIN, 0}};
    const bool isTimeOver = ::poll(waited, 2, milliseconds()) == 0;
    if (waited[1].revents != 0) {
      return false;
    }
    if (isTimeOver || waited[0].revents != 0) {
      checked(sd_journal_process(journal_));
    }
    return true;
  }

 private:
  void match(const std::string& field) {
    checked(sd_journal_add_match(journal_, field.data(), field.size()));
  }

  /// `sd_journal_previous_skip` from the tail stops on the first entry when there are fewer, and the next
  /// step would leave it out. Then reading begins at the head.
  void seekNewest() {
    checked(sd_journal_seek_tail(journal_));
    const auto skipped = static_cast<std::size_t>(checked(sd_journal_previous_skip(journal_, query_.newest)));
    isOnEntry_ = query_.newest > 0 && skipped == query_.newest;
    if (skipped < query_.newest) {
      checked(sd_journal_seek_head(journal_));
    }
  }

  bool step() { return checked(sd_journal_next(journal_)) > 0; }

  FollowedEntry current() {
    std::uint64_t microseconds = 0;
    checked(sd_journal_get_realtime_usec(journal_, &microseconds));
    FollowedEntry entry{Clock::time_point(std::chrono::duration_cast<Clock::duration>(
                            std::chrono::microseconds(microseconds))),
                        typeOf(field("PRIORITY")), field("CATEGORY"), field("MESSAGE")};
    const std::string process = field("_PID");
    std::from_chars(process.data(), process.data() + process.size(), entry.processID);
    return entry;
  }

  /// Empty when the entry has no such field.
  std::string field(const char* name) {
    const void* data = nullptr;
    std::size_t length = 0;
    if (sd_journal_get_data(journal_, name, &data, &length) < 0) {
      return {};
    }
    const std::string_view text(static_cast<const char*>(data), length);
    return std::string(text.substr(std::min(length, std::string_view(name).size() + 1)));  // after "NAME="
  }

  bool isOwn(const FollowedEntry& entry) const {
    return query_.withoutOwnSince && entry.processID == ::getpid() && entry.date >= *query_.withoutOwnSince;
  }

  /// How long poll(2) may wait: on file systems that do not tell of changes the journal wants to look itself.
  int milliseconds() const {
    std::uint64_t until = 0;
    if (sd_journal_get_timeout(journal_, &until) < 0 || until == UINT64_MAX) {
      return -1;
    }
    timespec now{};
    ::clock_gettime(CLOCK_MONOTONIC, &now);
    const auto past =
        static_cast<std::uint64_t>(now.tv_sec) * 1'000'000 + static_cast<std::uint64_t>(now.tv_nsec) / 1'000;
    return until > past ? static_cast<int>(std::min<std::uint64_t>((until - past) / 1'000 + 1, 60'000)) : 0;
  }

  LogFollower::Query query_;
  sd_journal* journal_ = nullptr;
  int descriptor_ = -1;
  /// The journal stands on an entry that is not read yet.
  bool isOnEntry_ = false;
};

}  // namespace

/// What the thread and its owner share.
struct LogFollower::Link {
  explicit Link(Heard function) : interruption(::eventfd(0, EFD_CLOEXEC)), heard(std::move(function)) {}
  ~Link() { ::close(interruption); }
  Link(const Link&) = delete;
  Link& operator=(const Link&) = delete;

  /// False when nobody listens any more.
  bool tell(News news) {
    const std::lock_guard lock(mutex);
    if (heard) {
      heard(std::move(news));
    }
    return static_cast<bool>(heard);
  }

  void follow(const Query& query) {
    try {
      Journal journal(query);
      LogAccess access = journal.access();
      if (!tell({.access = access})) {
        return;
      }
      do {
        const LogAccess before = std::exchange(access, journal.access());
        std::vector<FollowedEntry> entries = journal.read();
        for (bool isNews = access != before || !entries.empty(); isNews; isNews = !entries.empty()) {
          if (!tell({.access = access, .entries = std::move(entries)})) {
            return;
          }
          entries = journal.read();
        }
      } while (journal.wait(interruption));
    } catch (...) {
      tell({.access = LogAccess::broken});
    }
  }

  const int interruption;
  std::mutex mutex;
  Heard heard;
};

LogFollower::LogFollower(Query query, Heard heard) : link_(std::make_shared<Link>(std::move(heard))) {
  std::thread([link = link_, query = std::move(query)] { link->follow(query); }).detach();
}

LogFollower::~LogFollower() {
  {
    const std::lock_guard lock(link_->mutex);
    link_->heard = nullptr;
  }
  (void)::eventfd_write(link_->interruption, 1);
}

}  // namespace tarnwell
