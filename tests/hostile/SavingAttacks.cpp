/// Saving the settings where that is impossible or interrupted. Only the command `test-connection` saves: it
/// stores the date and the outcome of the test.

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>

#include "hostile/Launchers.h"
#include "hostile/ServerAttack.h"
#include "hostile/TracedProgram.h"
#include "support/ChildProgram.h"

namespace tarnwell::test {

namespace {

namespace fs = std::filesystem;

std::string bytesOf(const fs::path& file) {
  std::ifstream stream(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
}

std::set<std::string> namesIn(const fs::path& directory) {
  std::set<std::string> names;
  for (const auto& entry : fs::directory_iterator(directory)) {
    names.insert(entry.path().filename().string());
  }
  return names;
}

/// The output of a command on both streams, and its exit status.
struct Report {
  int status = 0;
  std::string text;

  bool operator==(const Report&) const = default;
};

Report run(const Home& home, const std::string& word, const Launcher& launcher = {}) {
  std::vector<std::string> command{"sh", "-c", "exec \"$@\" 2>&1", "sh"};
  command.insert(command.end(), launcher.begin(), launcher.end());
  command.insert(command.end(), {TARNWELL_PROGRAM, word});
  ChildProgram program(command, home.environmentList());
  Report report;
  report.text = program.readAll();
  report.status = program.wait();
  return report;
}

Dialogue testDialogue() {
  return loginDialogue() + Dialogue{expect("A0004 LOGOUT\r\n"), answer("A0004 OK bye\r\n")};
}

Report goodReport(const FakeIMAPServer& server) {
  return {0, "✅ Connected to localhost:" + std::to_string(server.port()) + " as " + testEmail +
                 "\n   INBOX selected OK · MOVE supported: yes\n   Capabilities: IMAP4REV1 MOVE UIDPLUS\n"};
}

/// The connection test succeeds and says so. The file is unchanged, and there is no other file beside it.
void expectOldFile(const Launcher& launcher, const std::function<void(const fs::path&)>& prepare) {
  FakeIMAPServer server(testDialogue());
  Home home;
  home.useServer(server.port());
  const std::string old = bytesOf(home.settingsFile());
  const fs::path directory = home.settingsFile().parent_path();
  prepare(directory);
  EXPECT_EQ(run(home, "test-connection", launcher), goodReport(server));
  EXPECT_EQ(server.mismatch(), "");
  fs::permissions(directory, fs::perms::owner_all);
  EXPECT_EQ(bytesOf(home.settingsFile()), old);
  EXPECT_EQ(namesIn(directory), std::set<std::string>{"config.json"});
  ServeProgram program(home);
  expectSound(home, program);
  expectQuietEnd(program);
}

/// A file system of two pages in place of the folder. The settings take one page and a filler the other. It
/// vanishes with its last process, so the shell reads it before that.
void fillTheDisk() {
  FakeIMAPServer server(testDialogue());
  Home home;
  home.useServer(server.port());
  const std::string old = bytesOf(home.settingsFile());
  const std::string directory = home.settingsFile().parent_path().string();
  const std::string saved = (home.path() / "saved").string();
  fs::copy_file(home.settingsFile(), saved);
  const std::string mount = "mount -t tmpfs -o size=8k tmpfs '" + directory + "'; cp '" + saved + "' '" +
                            directory + "/config.json'; head -c 1000000 /dev/zero 2>/dev/null > '" +
                            directory + "/filler' || true";
  Launcher launcher = inMountNamespace(mount);
  launcher.insert(launcher.end(), {"sh", "-c",
                                   "\"$@\"; status=$?; cat '" + directory + "/config.json' > '" + saved +
                                       "'; ls -A '" + directory + "'; exit $status",
                                   "sh"});
  Report expected = goodReport(server);
  expected.text += "config.json\nfiller\n";
  EXPECT_EQ(run(home, "test-connection", launcher), expected);
  EXPECT_EQ(server.mismatch(), "");
  EXPECT_EQ(bytesOf(saved), old);
}

/// The text without the date of the test, which differs from run to run.
JSONValue withoutDate(const std::string& text) {
  std::optional<JSONValue> settings = JSONValue::decode(text);
  if (!settings) {
    return "no JSON: " + text;
  }
  JSONObject* members = settings->objectValue();
  if (JSONValue* date = members ? members->find("lastConnectionTestDate") : nullptr) {
    *date = nullptr;
  }
  return *settings;
}

/// The settings that an undisturbed save leaves.
JSONValue savedSettings(const Home& home) {
  run(home, "test-connection");
  return withoutDate(bytesOf(home.settingsFile()));
}

void killAtEverySystemCall() {
  FakeIMAPServer server(testDialogue());
  Home home;
  // Leak detection must be off: it would trace the process, and a process has only one tracer.
  home.environment["ASAN_OPTIONS"] += ":detect_leaks=0";
  home.useServer(server.port());
  const std::string old = bytesOf(home.settingsFile());
  const JSONValue saved = savedSettings(home);
  ASSERT_EQ(saved["lastConnectionTestSuccess"], JSONValue(true)) << saved.serialized();

  int oldFiles = 0;
  int newFiles = 0;
  constexpr int tooMany = 500;
  for (int number = 1; number < tooMany; ++number) {
    home.writeSettings(old);
    const TracedEnd end =
        TracedProgram({TARNWELL_PROGRAM, "test-connection"}, home.environmentList()).runKilledAt(number);
    const std::string text = bytesOf(home.settingsFile());
    EXPECT_TRUE(text == old || withoutDate(text) == saved)
        << "killed at system call " << number << ": " << text;
    ++(text == old ? oldFiles : newFiles);
    if (!end.isKilled) {
      EXPECT_EQ(end.status, 0);
      EXPECT_NE(text, old);
      break;
    }
    const Report status = run(home, "status");
    EXPECT_EQ(status.status, 0);
    EXPECT_EQ(JSONValue::decode(status.text).value_or(nullptr)["configured"], JSONValue(true)) << status.text;
  }
  // Before the file is in place there are at least the calls that make, fill, sync and close it.
  EXPECT_GE(oldFiles, 5);
  EXPECT_GE(newFiles, 2);
  EXPECT_LT(oldFiles + newFiles, tooMany - 1) << "the program never ended by itself";
  ServeProgram program(home);
  expectSound(home, program);
  expectQuietEnd(program);
}

}  // namespace

std::vector<Attack> savingAttacks() {
  const std::string outcome = "reports the test's outcome; the old settings stay, byte for byte";
  return {
      {"fullDisk", "the disk is full", outcome, fillTheDisk},
      {"limitedFileSize", "a file may not grow beyond 64 bytes (RLIMIT_FSIZE)", outcome,
       [] { expectOldFile({"prlimit", "--fsize=64"}, [](const fs::path&) {}); }},
      {"readOnlyFolder", "the folder of the settings may not be written", outcome,
       [] {
         expectOldFile(withoutRightsOverFiles(), [](const fs::path& directory) {
           fs::permissions(directory, fs::perms::owner_read | fs::perms::owner_exec);
         });
       }},
      {"killedAtEverySystemCall", "`kill -9` during a save, at every system call in turn",
       "leaves the old settings or the new ones, in whole, and starts again with them",
       killAtEverySystemCall},
  };
}

}  // namespace tarnwell::test
