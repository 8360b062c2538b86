#include "Platform/SystemLog.h"

#include <thread>

#include "support/ChildProgram.h"
#include "support/DatagramSocket.h"
#include "support/ForkedProcess.h"
#include "support/RealJournal.h"
#include "support/TemporaryDirectory.h"

namespace tarnwell::test {
namespace {

using Fields = std::multimap<std::string, std::string>;

struct Journal {
  TemporaryDirectory directory;
  std::string address = (directory / "socket").string();
  DatagramSocket socket{address};
  SystemLog log{"app.tarnwell.Tarnwell", address};

  Fields receive() {
    auto datagram = socket.receive();
    return datagram ? journalFields(*datagram) : Fields{};
  }
};

Fields expected(const std::string& message, const std::string& priority,
                const std::string& category = "imap") {
  return {{"MESSAGE", message},
          {"PRIORITY", priority},
          {"SYSLOG_IDENTIFIER", "tarnwell"},
          {"SUBSYSTEM", "app.tarnwell.Tarnwell"},
          {"CATEGORY", category}};
}

TEST(SystemLogLinux, entryIsOneDatagramOfNamedFields) {
  Journal journal;
  journal.log.write(SystemLogType::info, "imap", "Connected");
  EXPECT_EQ(journal.socket.receive(),
            "MESSAGE=Connected\nPRIORITY=6\nSYSLOG_IDENTIFIER=tarnwell\nSUBSYSTEM=app.tarnwell.Tarnwell\n"
            "CATEGORY=imap\n");
  EXPECT_EQ(journal.socket.receive(), std::nullopt);
}

struct TypeRow {
  SystemLogType type;
  const char* priority;
};

TEST(SystemLogLinux, typesHaveThePrioritiesOfSyslog) {
  Journal journal;
  for (auto [type, priority] : {TypeRow{SystemLogType::debug, "7"}, TypeRow{SystemLogType::info, "6"},
                                TypeRow{SystemLogType::standard, "5"}, TypeRow{SystemLogType::error, "3"}}) {
    EXPECT_TRUE(journal.log.isEnabled(type, "imap"));
    journal.log.write(type, "imap", "x");
    EXPECT_EQ(journal.receive(), expected("x", priority));
  }
}

struct MessageRow {
  const char* name;
  std::string message;
};

TEST(SystemLogLinux, noMessageInjectsAField) {
  const MessageRow rows[] = {
      {"empty", ""},
      {"line feed and a field", "text\nPRIORITY=0"},
      {"only a line feed", "\n"},
      {"line feed at the end", "text\n"},
      {"carriage return", "text\rPRIORITY=0"},
      {"equals sign", "a=b=c"},
      {"zero byte", std::string("a\0b", 3)},
      {"no UTF-8", "caf\xE9 \xFF"},
      {"a length of its own", std::string("\n\x01\0\0\0\0\0\0\0x\nPRIORITY=0\n", 21)},
      {"japanese", "日本語\n日本語"},
      {"longer than 255 bytes in two lines", std::string(300, 'x') + "\n" + std::string(7'000, 'y')},
  };
  Journal journal;
  for (const MessageRow& row : rows) {
    journal.log.write(SystemLogType::error, "imap", row.message);
    EXPECT_EQ(journal.receive(), expected(row.message, "3")) << row.name;
  }
  journal.log.write(SystemLogType::error, "imap\nPRIORITY=0", "x");
  EXPECT_EQ(journal.receive(), expected("x", "3", "imap\nPRIORITY=0"));
}

struct LengthRow {
  const char* name;
  std::string message;
  std::size_t kept;
};

TEST(SystemLogLinux, longMessagesAreCutAtACharacter) {
  constexpr std::size_t limit = 32 * 1024;
  const LengthRow rows[] = {
      {"of the limit", std::string(limit, 'x'), limit},
      {"one byte longer", std::string(limit + 1, 'x'), limit},
      {"two-byte character across the limit", std::string(limit - 1, 'x') + "é", limit - 1},
      {"four-byte character with one byte inside", std::string(limit - 1, 'x') + "\U0001F600", limit - 1},
      {"four-byte character with three bytes inside", std::string(limit - 3, 'x') + "\U0001F600", limit - 3},
      {"three-byte character that ends at the limit", std::string(limit - 3, 'x') + "語x", limit},
      {"nothing but continuation bytes", std::string(limit + 9, '\x80'), limit - 3},
      {"a megabyte", std::string(1 << 20, 'x'), limit},
  };
  Journal journal;
  for (const LengthRow& row : rows) {
    journal.log.write(SystemLogType::info, "imap", row.message);
    EXPECT_EQ(journal.receive(), expected(row.message.substr(0, row.kept), "6")) << row.name;
  }
}

TEST(SystemLogLinux, withoutAJournalEntriesAreLostAndNothingElse) {
  TemporaryDirectory directory;
  std::string regularFile = (directory / "file").string();
  std::ofstream(regularFile) << "no socket";
  for (const std::string& address : {(directory / "missing").string(), regularFile, std::string(),
                                     std::string("/"), std::string(200, 'x')}) {
    SystemLog log("app.tarnwell.Tarnwell", address);
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    log.write(SystemLogType::error, "imap", "x");
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
  }
}

TEST(SystemLogLinux, journalThatComesLaterIsFound) {
  TemporaryDirectory directory;
  std::string address = (directory / "socket").string();
  SystemLog log("app.tarnwell.Tarnwell", address);
  log.write(SystemLogType::info, "imap", "lost");
  {
    DatagramSocket first(address);
    log.write(SystemLogType::info, "imap", "first");
    EXPECT_EQ(journalFields(first.receive().value_or("")), expected("first", "6"));
  }
  std::filesystem::remove(address);
  log.write(SystemLogType::info, "imap", "lost");
  DatagramSocket second(address);
  log.write(SystemLogType::info, "imap", "second");
  EXPECT_EQ(journalFields(second.receive().value_or("")), expected("second", "6"));
}

TEST(SystemLogLinux, journalThatDoesNotReadHoldsNothingUp) {
  Journal journal;
  for (int count = 0; count < 5000; ++count) {
    journal.log.write(SystemLogType::info, "imap", "message");
  }
  int received = 0;
  while (journal.socket.receive()) {
    ++received;
  }
  EXPECT_GT(received, 0);
  EXPECT_LT(received, 5000);
  journal.log.write(SystemLogType::info, "imap", "afterwards");
  EXPECT_EQ(journal.receive(), expected("afterwards", "6"));
}

TEST(SystemLogLinux, threadsWriteAtTheSameTime) {
  Journal journal;
  std::vector<std::thread> threads;
  for (int thread = 0; thread < 4; ++thread) {
    threads.emplace_back([&] { journal.log.write(SystemLogType::info, "imap", "one\ntwo"); });
  }
  for (std::thread& thread : threads) {
    thread.join();
  }
  for (std::size_t count = 0; count < threads.size(); ++count) {
    EXPECT_EQ(journal.receive(), expected("one\ntwo", "6"));
  }
}

/// For a forked process in a namespace: a real journal that is up, what this writes to it, and what
/// journalctl finds of it.
std::string roundTripThroughTheJournal() {
  RealJournal journal;
  SystemLog log("app.tarnwell.Tarnwell");
  log.write(SystemLogType::standard, "imap", "one line");
  log.write(SystemLogType::error, "app", "two\nPRIORITY=0");
  journal.sync();
  ChildProgram query(
      {"journalctl", "-o", "json", "--no-pager",
       "--output-fields=MESSAGE,PRIORITY,CATEGORY,SYSLOG_IDENTIFIER", "SUBSYSTEM=app.tarnwell.Tarnwell"},
      {"PATH=/usr/bin:/bin", "LC_ALL=C.UTF-8"});
  return query.readAll();
}

TEST(SystemLogLinux, realJournalHasTheEntries) {
  std::string output = inForkedProcess(roundTripThroughTheJournal);
  ASSERT_EQ(std::count(output.begin(), output.end(), '\n'), 2) << output;
  std::string first = output.substr(0, output.find('\n'));
  std::string second = output.substr(first.size());
  for (const char* part : {R"("MESSAGE":"one line")", R"("PRIORITY":"5")", R"("CATEGORY":"imap")",
                           R"("SYSLOG_IDENTIFIER":"tarnwell")"}) {
    EXPECT_THAT(first, testing::HasSubstr(part));
  }
  for (const char* part : {R"("MESSAGE":"two\nPRIORITY=0")", R"("PRIORITY":"3")", R"("CATEGORY":"app")"}) {
    EXPECT_THAT(second, testing::HasSubstr(part));
  }
}

}  // namespace
}  // namespace tarnwell::test
