#pragma once

/// The frameworks that tests/apple/frameworks declares, in memory: what the system would answer, for a test
/// to set, and what it was asked, for a test to read. Thus the macOS files run where there is no macOS.
/// Whether the real frameworks answer so is a question that only a Mac can answer.
///
///     FrameworksInMemory& frameworks = frameworksInMemory();
///     frameworks = {};
///     frameworks.keychainStatus = errSecItemNotFound;
///     systemSecretItems().remove({"service", "account", std::nullopt});
///     frameworks.keychainCalls;                                // {"delete", {{"kSecClass", ...}, ...}}
///
/// Threads: one.

#include <cstdint>
#include <deque>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tarnwell::test {

struct KeychainCall {
  std::string name;
  /// The attributes by the names of their keys; constants by their names, "true", texts and data as they are.
  std::map<std::string, std::string> attributes;
  bool mayInteract = true;
  const void* dataBytes = nullptr;

  bool operator==(const KeychainCall&) const = default;
};

struct LogCall {
  std::string subsystem;
  std::string category;
  std::uint8_t type = 0;
  std::string format;
  std::string text;

  bool operator==(const LogCall&) const = default;
};

struct ProcessInMemory {
  int number = 0;
  std::uint32_t parent = 0;
  std::uint32_t user = 0;
  std::string shortName;
  std::string name;
  std::string path;
  /// It ends after it was listed.
  bool hasEnded = false;
};

struct FrameworksInMemory {
  enum class Found { nothing, data, text };

  std::int32_t keychainStatus = 0;
  Found found = Found::nothing;
  std::string foundBytes;
  std::map<std::int32_t, std::string> messages;
  std::vector<KeychainCall> keychainCalls;

  std::int32_t interactionStatus = 0;
  bool mayInteract = true;

  std::int32_t keychainStateStatus = 0;
  std::uint32_t keychainState = 0;
  std::int32_t unlockStatus = 0;
  int unlockRequests = 0;

  std::vector<std::pair<std::uint8_t, std::string>> disabledLogs;  // type and category
  std::vector<LogCall> logCalls;

  std::optional<std::vector<std::u16string>> languages;
  std::vector<std::string> applicationSupportDirectories;
  bool hasBundle = true;
  std::optional<std::string> bundleExecutable;
  std::vector<char*> arguments = {nullptr};

  std::vector<int> traceRequests;

  std::vector<ProcessInMemory> processes;

  /// Objects that were made and not released to the end, the constants among them. Assignment leaves it
  /// alone.
  static inline int liveObjects = 0;
};

/// The one that the frameworks' functions use.
FrameworksInMemory& frameworksInMemory();

}  // namespace tarnwell::test
