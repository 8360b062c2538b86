#include "Core/LogBuffer.h"

#include <atomic>
#include <thread>

namespace tarnwell {
namespace {

LogEntry entry(const std::string& message) {
  return {{}, std::chrono::system_clock::now(), LogLevel::info, "app", message};
}

std::vector<std::string> messages(const LogBuffer& buffer) {
  std::vector<std::string> result;
  for (const LogEntry& entry : buffer.snapshot()) {
    result.push_back(entry.message);
  }
  return result;
}

TEST(LogBufferTest, beginsEmptyAndWithoutACallback) {
  LogBuffer buffer;
  EXPECT_TRUE(buffer.snapshot().empty());
  EXPECT_FALSE(buffer.onAppend());
}

TEST(LogBufferTest, keepsTheNewest500InTheirOrder) {
  LogBuffer buffer;
  for (int number = 1; number <= 501; ++number) {
    buffer.append(entry(std::to_string(number)));
    if (number == 500) {
      EXPECT_EQ(messages(buffer).front(), "1");
    }
  }
  auto kept = messages(buffer);
  ASSERT_EQ(kept.size(), 500U);
  for (int number = 2; number <= 501; ++number) {
    EXPECT_EQ(kept[static_cast<std::size_t>(number - 2)], std::to_string(number));
  }
}

TEST(LogBufferTest, clearedBufferStartsAgain) {
  LogBuffer buffer;
  buffer.append(entry("before"));
  buffer.clear();
  EXPECT_TRUE(buffer.snapshot().empty());
  buffer.append(entry("after"));
  EXPECT_THAT(messages(buffer), testing::ElementsAre("after"));
}

TEST(LogBufferTest, callbackSeesItsEntryInTheSnapshot) {
  LogBuffer buffer;
  std::vector<std::string> seen;
  buffer.onAppend([&](const LogEntry& appended) {
    auto inside = messages(buffer);
    ASSERT_FALSE(inside.empty());
    EXPECT_EQ(inside.back(), appended.message);
    seen.push_back(appended.message);
  });
  buffer.append(entry("one"));
  buffer.append(entry("two"));
  EXPECT_THAT(seen, testing::ElementsAre("one", "two"));
  buffer.onAppend({});
  buffer.append(entry("three"));
  EXPECT_EQ(seen.size(), 2U);
}

TEST(LogBufferTest, callbackMayLogClearAndReplaceItself) {
  LogBuffer buffer;
  buffer.onAppend([&](const LogEntry&) {
    buffer.onAppend({});
    buffer.clear();
    buffer.append(entry("from the callback"));
  });
  buffer.append(entry("first"));
  EXPECT_THAT(messages(buffer), testing::ElementsAre("from the callback"));
}

// An object that a callback has captured may log when it is destroyed.
TEST(LogBufferTest, replacedCallbackDiesOutsideOfTheLock) {
  LogBuffer buffer;
  struct LogsAtItsEnd {
    LogBuffer* buffer;
    ~LogsAtItsEnd() { buffer->append(entry("the end")); }
  };
  auto captured = std::make_shared<LogsAtItsEnd>(LogsAtItsEnd{&buffer});
  buffer.clear();
  buffer.onAppend([captured = std::move(captured)](const LogEntry&) {});
  buffer.onAppend({});
  EXPECT_THAT(messages(buffer), testing::ElementsAre("the end"));
}

TEST(LogBufferTest, snapshotIsACopy) {
  LogBuffer buffer;
  buffer.append(entry("one"));
  auto copy = buffer.snapshot();
  buffer.clear();
  EXPECT_EQ(copy.size(), 1U);
}

TEST(LogBufferTest, anyThreadMayDoAnything) {
  LogBuffer buffer;
  std::atomic<int> called = 0;
  buffer.onAppend([&](const LogEntry&) { ++called; });
  std::vector<std::thread> threads;
  for (int thread = 0; thread < 4; ++thread) {
    threads.emplace_back([&, thread] {
      for (int count = 0; count < 500; ++count) {
        buffer.append(entry("x"));
        if (count % 50 == 0) {
          EXPECT_LE(buffer.snapshot().size(), LogBuffer::limit);
        }
        if (thread == 0 && count % 100 == 0) {
          buffer.onAppend(buffer.onAppend());
        }
      }
    });
  }
  for (std::thread& thread : threads) {
    thread.join();
  }
  EXPECT_EQ(called, 2000);
  EXPECT_EQ(buffer.snapshot().size(), 500U);
}

TEST(LogLevelValues, areLowerCaseWords) {
  EXPECT_EQ(rawValue(LogLevel::debug), "debug");
  EXPECT_EQ(rawValue(LogLevel::info), "info");
  EXPECT_EQ(rawValue(LogLevel::notice), "notice");
  EXPECT_EQ(rawValue(LogLevel::error), "error");
}

}  // namespace
}  // namespace tarnwell
