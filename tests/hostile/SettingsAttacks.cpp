/// Things in the place of the settings file, and a file that changes while it is read.

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <atomic>
#include <filesystem>
#include <fstream>
#include <thread>

#include "hostile/Launchers.h"
#include "hostile/ProcessFacts.h"
#include "hostile/ServerAttack.h"

namespace tarnwell::test {

namespace {

namespace fs = std::filesystem;

constexpr const char* notConfigured =
    "No iCloud account is configured. Open the app and save your email + app password.";

struct SettingsRow {
  std::string name;
  std::string attack;
  std::string outcome = "acts as without settings: says that no account is configured";
  /// Replaces the settings file of `home` by something else.
  std::function<void(const fs::path& file)> spoil;
  Launcher launcher{};
};

void play(const SettingsRow& row) {
  Home home;
  const fs::path file = home.settingsFile();
  row.spoil(file);
  home.launcher = row.launcher;
  ServeProgram program(home);

  const ToolAnswer status = program.call("get_status");
  EXPECT_EQ(status.result["configured"], JSONValue(false));
  EXPECT_EQ(status.result["email"], JSONValue());
  EXPECT_EQ(status.result["mode"], JSONValue("read-only"));
  EXPECT_EQ(program.call("list_folders").error(), notConfigured);
  if (!isSanitized) {
    constexpr long fiftyMegabytes = 50 * 1000;
    EXPECT_LT(processFigure(program.processID(), "VmHWM"), fiftyMegabytes);
  }

  fs::permissions(file.parent_path(), fs::perms::owner_all);
  fs::remove_all(file);
  expectSound(home, program);
  expectQuietEnd(program);
}

Attack bySettings(SettingsRow row) {
  Attack attack{row.name, row.attack, row.outcome, {}};
  attack.play = [row = std::move(row)] { play(row); };
  return attack;
}

/// Settings whose first and last members contain the same number. The text between them is too long to be
/// read with one read.
std::string longSettings(int number) {
  const std::string digits = std::to_string(number);
  return R"({"email":"user)" + digits + R"(@example.org","filling":")" + std::string(200 * 1000, '.') +
         R"(","imapHost":"localhost","imapPort":)" + digits + "}";
}

/// Replaces the file as an editor and the companion app do.
void replaceWhole(const fs::path& file, const std::string& text) {
  const fs::path next = file.string() + ".next";
  std::ofstream(next, std::ios::binary) << text;
  fs::rename(next, file);
}

void replaceWhileReading() {
  Home home;
  const fs::path file = home.settingsFile();
  replaceWhole(file, longSettings(1));
  std::atomic<bool> isEnough = false;
  std::thread replacing([&] {
    for (int number = 1; !isEnough; number = 3 - number) {
      replaceWhole(file, longSettings(number));
    }
  });
  int seen[3] = {};
  {
    ServeProgram program(home);
    for (int call = 0; call < 100; ++call) {
      const JSONValue result = program.call("get_status").result;
      const std::optional<std::string> email = result["email"].stringValue();
      const int number = email == "user1@example.org" ? 1 : email == "user2@example.org" ? 2 : 0;
      EXPECT_NE(number, 0) << result.serialized();
      EXPECT_EQ(result["imapPort"], JSONValue(number)) << result.serialized();
      ++seen[number];
    }
    isEnough = true;
    replacing.join();
    expectSound(home, program);
    expectQuietEnd(program);
  }
  EXPECT_GT(seen[1], 0);
  EXPECT_GT(seen[2], 0);
}

}  // namespace

std::vector<Attack> settingsAttacks() {
  std::vector<Attack> attacks;
  SettingsRow rows[] = {
      {.name = "fileMayNotBeRead",
       .attack = "the settings file may not be read",
       .spoil = [](const fs::path& file) { fs::permissions(file, fs::perms::none); },
       .launcher = withoutRightsOverFiles()},
      {.name = "folderMayNotBeEntered",
       .attack = "the folder of the settings may not be entered",
       .spoil = [](const fs::path& file) { fs::permissions(file.parent_path(), fs::perms::none); },
       .launcher = withoutRightsOverFiles()},
      {.name = "fileOpenToEverybody",
       .attack = "a settings file that everybody may write",
       .spoil = [](const fs::path& file) { fs::permissions(file, fs::perms(0666)); }},
      {.name = "folderOpenToEverybody",
       .attack = "a folder of the settings in which everybody may write",
       .spoil = [](const fs::path& file) { fs::permissions(file.parent_path(), fs::perms(0777)); }},
      {.name = "linkIntoAFolderOpenToEverybody",
       .attack = "a link to a file in a folder in which everybody may write",
       .spoil =
           [](const fs::path& file) {
             const fs::path open = file.parent_path() / "open";
             fs::create_directory(open);
             fs::permissions(open, fs::perms(0777));
             fs::rename(file, open / "config.json");
             fs::create_symlink(open / "config.json", file);
           }},
      {.name = "directory",
       .attack = "a directory in place of the settings file",
       .spoil =
           [](const fs::path& file) {
             fs::remove(file);
             fs::create_directory(file);
           }},
      {.name = "gigabyte",
       .attack = "a settings file of 1 GB",
       .outcome = "reads one megabyte and acts as without settings",
       .spoil = [](const fs::path& file) { fs::resize_file(file, 1000 * 1000 * 1000); }},
      {.name = "pipeWithoutWriter",
       .attack = "a pipe into which nobody writes",
       .spoil =
           [](const fs::path& file) {
             fs::remove(file);
             ASSERT_EQ(::mkfifo(file.c_str(), S_IRUSR | S_IWUSR), 0);
           }},
      {.name = "endlessDevice",
       .attack = "a link to `/dev/zero`",
       .spoil =
           [](const fs::path& file) {
             fs::remove(file);
             fs::create_symlink("/dev/zero", file);
           }},
      {.name = "linkToItself",
       .attack = "a symbolic link to itself",
       .spoil =
           [](const fs::path& file) {
             fs::remove(file);
             fs::create_symlink(file.filename(), file);
           }},
      {.name = "deepJSON",
       .attack = "JSON 400,000 lists deep",
       .spoil =
           [](const fs::path& file) {
             std::ofstream(file) << R"({"safety":)" << std::string(400 * 1000, '[')
                                 << std::string(400 * 1000, ']') << "}";
           }},
      {.name = "halfAFile",
       .attack = "a settings file that was cut off",
       .spoil = [](const fs::path& file) { fs::resize_file(file, fs::file_size(file) / 2); }},
  };
  for (SettingsRow& row : rows) {
    attacks.push_back(bySettings(std::move(row)));
  }
  attacks.push_back({"replacedWhileRead", "the settings file is replaced again and again while it is read",
                     "acts by the old file or by the new one, each in whole", replaceWhileReading});
  return attacks;
}

}  // namespace tarnwell::test
