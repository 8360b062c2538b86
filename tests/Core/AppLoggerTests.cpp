#include "Core/AppLogger.h"

#include <set>
#include <thread>

#include "Core/LogBuffer.h"
#include "support/Repeated.h"
#include "support/TemporaryDirectory.h"
#ifndef __APPLE__
#include "support/DatagramSocket.h"
#endif

namespace tarnwell::test {
namespace {

using AppLogger::Category;

struct CallRow {
  void (*call)(Category, std::string_view);
  LogLevel level;
  const char* priority;  // in the journal
};

const CallRow calls[] = {
    {&AppLogger::debug, LogLevel::debug, "7"},
    {&AppLogger::info, LogLevel::info, "6"},
    {&AppLogger::notice, LogLevel::notice, "5"},
    {&AppLogger::error, LogLevel::error, "3"},
};

struct CategoryRow {
  Category category;
  const char* rawValue;
};

const CategoryRow categories[] = {
    {Category::app, "app"},           {Category::mcp, "mcp"},   {Category::imap, "imap"},
    {Category::security, "security"}, {Category::tool, "tool"}, {Category::http, "http"},
};

TEST(AppLoggerTest, everyLevelInEveryCategoryIsBuffered) {
  for (const CategoryRow& row : categories) {
    EXPECT_EQ(AppLogger::rawValue(row.category), row.rawValue);
    for (const CallRow& call : calls) {
      LogBuffer::shared().clear();
      auto before = std::chrono::system_clock::now();
      call.call(row.category, "a message");
      auto entries = LogBuffer::shared().snapshot();
      ASSERT_EQ(entries.size(), 1U);
      EXPECT_EQ(entries[0].level, call.level);
      EXPECT_EQ(entries[0].category, row.rawValue);
      EXPECT_EQ(entries[0].message, "a message");
      EXPECT_LE(before, entries[0].date);
      EXPECT_LE(entries[0].date, std::chrono::system_clock::now());
    }
  }
}

TEST(AppLoggerTest, messageIsKeptAsItWasPassed) {
  for (const std::string& message :
       {std::string(), std::string("a\0b\n\xFF", 5), std::string(100'000, 'x')}) {
    AppLogger::notice(Category::http, message);
    EXPECT_EQ(LogBuffer::shared().snapshot().back().message, message);
  }
}

TEST(AppLoggerTest, identifiersAreFreshAndOfVersion4) {
  std::set<std::array<std::uint8_t, 16>> identifiers;
  LogBuffer::shared().clear();
  for (int count = 0; count < 400; ++count) {
    AppLogger::info(Category::app, "x");
  }
  for (const LogEntry& entry : LogBuffer::shared().snapshot()) {
    EXPECT_EQ(entry.id[6] & 0xF0, 0x40);
    EXPECT_EQ(entry.id[8] & 0xC0, 0x80);
    identifiers.insert(entry.id);
  }
  EXPECT_EQ(identifiers.size(), 400U);
}

TEST(AppLoggerTest, standardStreamsStayClean) {
  testing::internal::CaptureStdout();
  testing::internal::CaptureStderr();
  for (const CallRow& call : calls) {
    call.call(Category::app, "not to be seen");
  }
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

#ifndef __APPLE__
/// Replaces the system's log for one scope and receives its entries.
class ListenedSystemLog {
 public:
  ~ListenedSystemLog() { AppLogger::replaceSystemLog(former_); }

  std::multimap<std::string, std::string> receive() {
    auto datagram = socket_.receive();
    return datagram ? journalFields(*datagram) : std::multimap<std::string, std::string>{};
  }

 private:
  TemporaryDirectory directory_;
  DatagramSocket socket_{directory_ / "socket"};
  SystemLog log_{"app.tarnwell.Tarnwell", (directory_ / "socket").string()};
  const SystemLog& former_ = AppLogger::replaceSystemLog(log_);
};

TEST(AppLoggerTest, systemLogHasTheSameMessage) {
  ListenedSystemLog listened;
  for (const CategoryRow& row : categories) {
    for (const CallRow& call : calls) {
      call.call(row.category, "two\nlines");
      EXPECT_EQ(listened.receive(),
                (std::multimap<std::string, std::string>{{"MESSAGE", "two\nlines"},
                                                         {"PRIORITY", call.priority},
                                                         {"SYSLOG_IDENTIFIER", "tarnwell"},
                                                         {"SUBSYSTEM", "app.tarnwell.Tarnwell"},
                                                         {"CATEGORY", row.rawValue}}));
    }
  }
}

TEST(AppLoggerTest, anyThreadMayLog) {
  ListenedSystemLog listened;
  LogBuffer::shared().clear();
  std::vector<std::thread> threads;
  for (int thread = 0; thread < 4; ++thread) {
    threads.emplace_back([] {
      for (int count = 0; count < 100; ++count) {
        AppLogger::info(Category::imap, "x");
      }
    });
  }
  for (std::thread& thread : threads) {
    thread.join();
  }
  EXPECT_EQ(LogBuffer::shared().snapshot().size(), 400U);
}
#endif

struct RedactRow {
  const char* name;
  const char* email;
  const char* expected;
};

TEST(AppLoggerRedact, keepsAtMostTwoCharactersBeforeTheAtSign) {
  const RedactRow rows[] = {
      {"long local part", "john.doe@example.org", "jo***@example.org"},
      {"three characters", "abc@example.org", "ab***@example.org"},
      {"two characters", "ab@example.org", "ab***@example.org"},
      {"one character", "a@example.org", "a***@example.org"},
      {"no local part", "@example.org", "***@example.org"},
      {"no at sign", "john.doe", "***"},
      {"empty", "", "***"},
      {"only an at sign", "@", "***@"},
      {"two at signs", "john@home@example.org", "jo***@home@example.org"},
      {"japanese", "山田太郎@example.org", "山田***@example.org"},
      {"combining marks", "e\u0301e\u0301e@example.org", "e\u0301e\u0301***@example.org"},
      {"family emoji", "\U0001F468\u200D\U0001F469\u200D\U0001F467xy@b",
       "\U0001F468\u200D\U0001F469\u200D\U0001F467x***@b"},
  };
  for (const RedactRow& row : rows) {
    EXPECT_EQ(AppLogger::redact(row.email), row.expected) << row.name;
  }
}

TEST(AppLoggerRedactAddresses, masksWhateverLooksLikeAnAddress) {
  const RedactRow rows[] = {
      {"alone", "john.doe@example.org", "jo***@example.org"},
      {"no dot in the domain", "a@b", "a***@b"},
      {"two on a line", "from john@example.org to jane@example.net.",
       "from jo***@example.org to ja***@example.net."},
      {"plus address", "john+bank@example.org", "jo***@example.org"},
      {"apostrophe", "o'brien@example.org", "o'***@example.org"},
      {"in angle brackets", "John Doe <john.doe@example.org>", "John Doe <jo***@example.org>"},
      {"in brackets", "refused (john.doe@example.org)", "refused (jo***@example.org)"},
      {"in quotes", "no \"john.doe@example.org\" here", "no \"jo***@example.org\" here"},
      {"in single quotes", "no 'john.doe@example.org' here", "no 'jo***@example.org' here"},
      {"in the LOGIN command", "LOGIN \"john@example.org\" \"x\"", "LOGIN \"jo***@example.org\" \"x\""},
      {"quoted local part", "to \"john doe\"@example.org", "to \"j***@example.org"},
      {"quoted local part with an address", "\"john@home\"@example.org", "\"jo***@home\"@example.org"},
      {"of a list", "john@a,jane@b;jack@c", "jo***@a,ja***@b;ja***@c"},
      {"scheme", "mailto:john@example.org", "mailto:jo***@example.org"},
      {"line break", "user\njohn@example.org\nnext", "user\njo***@example.org\nnext"},
      {"address of a host", "john@[127.0.0.1]", "jo***@[127.0.0.1]"},
      {"two at signs", "john@home@example.org", "jo***@ho***@example.org"},
      {"japanese text before it", "宛先はjohn@example.orgです", "宛先はjo***@example.orgです"},
      {"japanese punctuation before it", "宛先：「john@example.org」", "宛先：「jo***@example.org」"},
      {"ideographic space before it", "宛先\u3000john@example.org", "宛先\u3000jo***@example.org"},
      {"japanese local part", "宛先: 山田太郎@example.org", "宛先: 山田***@example.org"},
      {"korean text before it", "받는사람john@example.org", "받는사람jo***@example.org"},
      {"accented local part", "à élodie@exämple.org", "à él***@exämple.org"},
      {"combining marks", "x e\u0301e\u0301e@b", "x e\u0301e\u0301***@b"},
      {"broken UTF-8 before it", "\xE3\x81 john@b \xFF", "\xE3\x81 jo***@b \xFF"},
      {"no local part", "@example.org and @ home", "@example.org and @ home"},
      {"no domain", "john@ home, jane@", "john@ home, jane@"},
      {"no address", "nothing at all", "nothing at all"},
      {"empty", "", ""},
  };
  for (const RedactRow& row : rows) {
    EXPECT_EQ(AppLogger::redactAddresses(row.email), row.expected) << row.name;
  }
}

/// A function that takes quadratic time would exceed the time limit of ctest.
TEST(AppLoggerRedactAddresses, repeatedBeginningsEnd) {
  constexpr std::size_t size = 2'000'000;
  for (const std::string_view piece : {"a", "@", "a@", "\"", "\"@", "\"a@", "山", "a@b ", "e\u0301"}) {
    EXPECT_NE(AppLogger::redactAddresses(repeated(piece, size / piece.size())), "") << piece;
  }
}

}  // namespace
}  // namespace tarnwell::test
