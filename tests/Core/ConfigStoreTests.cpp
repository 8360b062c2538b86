#include "Core/ConfigStore.h"

#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <fstream>
#include <thread>

#include "Core/AppLogger.h"
#include "Core/LogBuffer.h"
#include "support/Files.h"
#include "support/ScopedEnvironment.h"
#include "support/TemporaryDirectory.h"

namespace tarnwell::test {
namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;

class ConfigStoreTest : public testing::Test {
 protected:
  ConfigStoreTest() { LogBuffer::shared().clear(); }

  void write(const std::string& text) {
    fs::create_directories(store.configURL().parent_path());
    std::ofstream(store.configURL(), std::ios::binary) << text;
  }

  std::string contents() const { return fileContents(store.configURL()); }

  /// The messages logged since the test began, each with level and category.
  static std::vector<std::string> logged() {
    std::vector<std::string> lines;
    for (const LogEntry& entry : LogBuffer::shared().snapshot()) {
      lines.push_back(std::string(rawValue(entry.level)) + " " + entry.category + ": " + entry.message);
    }
    return lines;
  }

  TemporaryDirectory directory;
  ConfigStore store{directory / "settings"};
};

constexpr const char* errorLine = "error app: Config file unreadable; using defaults";

// Before the first set-up there is no file. That is not an error.
TEST_F(ConfigStoreTest, missingFileGivesTheDefaultsWithoutALogLine) {
  EXPECT_EQ(store.load(), AppConfig());
  EXPECT_THAT(logged(), testing::IsEmpty());
}

TEST_F(ConfigStoreTest, unreadableFileGivesTheDefaultsWithoutALogLine) {
  fs::create_directories(store.configURL());
  EXPECT_EQ(store.load(), AppConfig());
  fs::remove(store.configURL());
  ASSERT_EQ(::mkfifo(store.configURL().c_str(), 0600), 0);
  EXPECT_EQ(store.load(), AppConfig());
  EXPECT_THAT(logged(), testing::IsEmpty());
}

/// The text of a file that nobody can read may be worth something.
TEST_F(ConfigStoreTest, unreadableFileIsNotReplaced) {
  fs::create_directories(store.configURL());
  EXPECT_EQ(store.inspect().state, ConfigStore::FileState::untrusted);
  EXPECT_EQ(store.inspect().reason, "it cannot be read");
  EXPECT_THROW(store.update([](AppConfig& config) { config.email = "x"; }), std::runtime_error);
  EXPECT_TRUE(fs::is_directory(store.configURL()));
}

TEST_F(ConfigStoreTest, damagedFileBeginsAgainWithTheSafeValues) {
  write("{");
  store.update([](AppConfig& config) { config.email = "anna@example.org"; });
  EXPECT_TRUE(store.load().strictWithholding);
  EXPECT_EQ(store.load().safety, SafetySettings());
}

/// Each process adds one to the same number. Without a lock some of the additions are lost.
TEST_F(ConfigStoreTest, changesOfSeveralProcessesAreAllKept) {
  constexpr int processes = 4;
  constexpr int additions = 25;
  store.update([](AppConfig& config) { config.httpPort = 0; });
  std::vector<pid_t> children;
  for (int child = 0; child < processes; ++child) {
    if (const pid_t id = ::fork(); id != 0) {
      children.push_back(id);
      continue;
    }
    for (int addition = 0; addition < additions; ++addition) {
      store.update([](AppConfig& config) { ++config.httpPort; });
    }
    ::_exit(0);
  }
  for (const pid_t id : children) {
    int status = 0;
    ASSERT_EQ(::waitpid(id, &status, 0), id);
    EXPECT_EQ(status, 0);
  }
  EXPECT_EQ(store.load().httpPort, processes * additions);
}

TEST_F(ConfigStoreTest, fileIsReadAfreshEachTime) {
  write(R"({"email": "one@example.org"})");
  EXPECT_EQ(store.load().email, "one@example.org");
  write(R"({"email": "two@example.org"})");
  EXPECT_EQ(store.load().email, "two@example.org");
  EXPECT_THAT(logged(), testing::IsEmpty());
}

struct MalformedRow {
  const char* name;
  std::string text;
};

TEST_F(ConfigStoreTest, malformedFileGivesTheDefaultsWithAnErrorLine) {
  const std::string valid = R"({"email": "user@example.org"})";
  std::string nested;
  for (int depth = 0; depth < 400'000; ++depth) {
    nested.push_back('[');
  }
  const MalformedRow rows[] = {
      {"empty", ""},
      {"blank", " \n"},
      {"cut", valid.substr(0, valid.size() - 1)},
      {"trailing garbage", valid + "x"},
      {"two objects", valid + valid},
      {"trailing comma", R"({"email": "a@b",})"},
      {"comment", "// settings\n" + valid},
      {"single quotes", "{'email': 'a@b'}"},
      {"array", "[" + valid + "]"},
      {"null", "null"},
      {"zero byte at the end", valid + std::string(1, '\0')},
      {"garbage after a zero byte", valid + std::string("\0x", 2)},
      {"UTF-16", std::string("\xFF\xFE{\0}\0", 6)},
      {"invalid UTF-8 in a value", "{\"email\": \"caf\xE9\"}"},
      {"invalid UTF-8 in an unknown key", "{\"caf\xE9\": 1}"},
      {"overlong UTF-8", "{\"email\": \"\xC0\xAF\"}"},
      {"encoded surrogate", "{\"email\": \"\xED\xA0\x80\"}"},
      {"lone surrogate escape", R"({"email": "\ud800"})"},
      {"control character in a text", "{\"email\": \"a\nb\"}"},
      {"NaN", R"({"imapPort": NaN})"},
      {"leading zero", R"({"imapPort": 0993})"},
      {"number out of any range", R"({"imapPort": 1e999})"},
      {"port as a text", R"({"email": "a@b", "imapPort": "993"})"},
      {"port as a fraction", R"({"email": "a@b", "imapPort": 993.0})"},
      {"unknown language", R"({"email": "a@b", "language": "de"})"},
      {"bad safety key", R"({"email": "a@b", "safety": {"readOnly": "no"}})"},
      {"deep nesting without an end", nested},
      {"over a megabyte", valid + std::string(1024 * 1024, ' ')},
  };
  for (const MalformedRow& row : rows) {
    LogBuffer::shared().clear();
    write(row.text);
    EXPECT_EQ(store.load(), AppConfig()) << row.name;
    EXPECT_THAT(logged(), testing::ElementsAre(errorLine)) << row.name;
  }
}

TEST_F(ConfigStoreTest, fileThatEverybodyMayWriteGivesTheDefaultsWithAnErrorLine) {
  const struct {
    const char* name;
    unsigned file, folder;
    std::vector<std::string> lines;
  } rows[] = {
      {"the file", 0666, 0700, {"error app: Config file set aside: everybody may write it; using defaults"}},
      {"its folder",
       0600,
       0777,
       {"error app: Config file set aside: everybody may write in its folder; using defaults"}},
      {"nothing", 0600, 0700, {}},
  };
  write(R"({"email": "user@example.org"})");
  for (const auto& row : rows) {
    LogBuffer::shared().clear();
    fs::permissions(store.configURL(), fs::perms(row.file));
    fs::permissions(store.configURL().parent_path(), fs::perms(row.folder));
    EXPECT_EQ(store.load().email, row.lines.empty() ? "user@example.org" : "") << row.name;
    EXPECT_EQ(logged(), row.lines) << row.name;
  }
}

/// Root can write to the user's files anyway, so root does not count as another user.
TEST_F(ConfigStoreTest, fileOfRootIsNoOtherUsers) {
  fs::create_directories(store.configURL().parent_path());
  fs::create_symlink("/etc/passwd", store.configURL());
  EXPECT_EQ(store.load(), AppConfig());
  EXPECT_THAT(logged(), testing::ElementsAre(errorLine)) << "which is that of a malformed file";
}

TEST_F(ConfigStoreTest, fileOfAMegabyteIsRead) {
  std::string text = R"({"email": "user@example.org"})";
  text.append(1024 * 1024 - text.size(), ' ');
  write(text);
  EXPECT_EQ(store.load().email, "user@example.org");
  write(text + " ");
  EXPECT_EQ(store.load(), AppConfig());
}

TEST_F(ConfigStoreTest, deepNestingInAnUnknownKeyIsIgnored) {
  std::string deep = std::string(400'000, '[') + std::string(400'000, ']');
  write(R"({"email": "user@example.org", "unknown": )" + deep + "}");
  EXPECT_EQ(store.load().email, "user@example.org");
}

TEST_F(ConfigStoreTest, everyTruncationGivesTheDefaults) {
  AppConfig config;
  config.email = "user@example.org";
  store.save(config);
  std::string text = contents();
  for (std::size_t size = 0; size + 2 < text.size(); ++size) {
    write(text.substr(0, size));
    ASSERT_EQ(store.load(), AppConfig()) << size;
  }
}

TEST_F(ConfigStoreTest, savedFileIsPrettyPrintedWithSortedKeys) {
  AppConfig config;
  config.email = "山田@example.org";
  config.lastConnectionTestDate = std::chrono::sys_days(2024y / 5 / 1) + 9h + 30min;
  config.lastConnectionTestSuccess = true;
  config.language = AppLanguage::japanese;
  store.save(config);
  EXPECT_EQ(contents(), R"({
  "email": "山田@example.org",
  "httpPort": 8765,
  "imapHost": "imap.mail.me.com",
  "imapPort": 993,
  "language": "ja",
  "lastConnectionTestDate": "2024-05-01T09:30:00Z",
  "lastConnectionTestSuccess": true,
  "safety": {
    "allowCopyMoveFallback": false,
    "allowMarkRead": true,
    "allowMove": true,
    "allowTrash": false,
    "blockAuthCodeBodies": true,
    "maxBodyChars": 4000,
    "maxFetch": 50,
    "maxMessagesPerCall": 20,
    "readOnly": true
  }
}
)");
}

TEST_F(ConfigStoreTest, whatWasSavedIsLoaded) {
  AppConfig config;
  config.email = "a\"b\\c\n\x7F@example.org";
  config.imapHost = "";
  config.imapPort = INT64_MIN;
  config.httpPort = INT64_MAX;
  config.safety = {false, -1, true, false, false, 0, 7, false, true};
  config.lastConnectionTestDate = currentInstant();
  config.lastConnectionTestSuccess = false;
  config.language = AppLanguage::english;
  for (const AppConfig& saved : {AppConfig(), config}) {
    store.save(saved);
    EXPECT_EQ(store.load(), saved);
  }
  EXPECT_THAT(logged(), testing::IsEmpty());
}

TEST_F(ConfigStoreTest, directoryAndFileBelongToTheUserAlone) {
  mode_t former = ::umask(0);
  ConfigStore deep(directory / "one" / "two");
  deep.save(AppConfig());
  deep.save(AppConfig());
  ::umask(former);
  EXPECT_EQ(fileMode(directory / "one"), 0700U);
  EXPECT_EQ(fileMode(directory / "one" / "two"), 0700U);
  EXPECT_EQ(fileMode(deep.configURL()), 0600U);
}

TEST_F(ConfigStoreTest, textThatIsNoUTF8FailsAndLeavesTheOldFile) {
  write("old text");
  AppConfig config;
  config.email = "caf\xE9";
  EXPECT_THROW(store.save(config), std::exception);
  EXPECT_EQ(contents(), "old text");
}

TEST_F(ConfigStoreTest, failureToWriteNamesThePath) {
  std::ofstream(directory / "settings") << "in the way";
  try {
    store.save(AppConfig());
    FAIL() << "no error";
  } catch (const fs::filesystem_error& error) {
    EXPECT_EQ(error.path1(), directory / "settings");
  }
}

struct SharedRow {
  const char* name;
  std::optional<std::string> dataHome, home;
  std::string expected;
};

TEST(SharedConfigStore, liesInTheUsersDirectory) {
  const SharedRow rows[] = {
      {"data home", "/data", "/home/u", "/data/app.tarnwell.Tarnwell/config.json"},
      {"home", std::nullopt, "/home/u", "/home/u/.local/share/app.tarnwell.Tarnwell/config.json"},
  };
  for (const SharedRow& row : rows) {
    ScopedEnvironment environment({{"XDG_DATA_HOME", row.dataHome}, {"HOME", row.home}});
    EXPECT_EQ(ConfigStore::shared().configURL(), row.expected) << row.name;
  }
}

TEST(SharedConfigStore, withoutThatDirectoryItLiesInTheHomeOfTheUserDatabase) {
  ScopedEnvironment environment({{"XDG_DATA_HOME", std::optional<std::string>()}, {"HOME", std::nullopt}});
  fs::path path = ConfigStore::shared().configURL();
  EXPECT_TRUE(path.is_absolute());
  EXPECT_TRUE(path.string().ends_with("/Library/Application Support/app.tarnwell.Tarnwell/config.json"))
      << path;
}

// The account and the safety settings are written by different threads.
TEST_F(ConfigStoreTest, changesAtTheSameTimeAreAllKept) {
  constexpr int rounds = 20;
  std::thread first([this] {
    for (int round = 0; round < rounds; ++round) {
      store.update([](AppConfig& config) { ++config.httpPort; });
    }
  });
  for (int round = 0; round < rounds; ++round) {
    store.update([](AppConfig& config) { ++config.safety.maxFetch; });
  }
  first.join();
  EXPECT_EQ(store.load().httpPort, AppConfig().httpPort + rounds);
  EXPECT_EQ(store.load().safety.maxFetch, SafetySettings().maxFetch + rounds);
}

}  // namespace
}  // namespace tarnwell::test
