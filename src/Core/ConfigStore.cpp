#include "Core/ConfigStore.h"

#include <nlohmann/json.hpp>
#include <optional>
#include <string>

#include "Core/AppLogger.h"
#include "Core/BridgeConstants.h"
#include "Platform/PrivateFiles.h"
#include "Platform/UserDirectories.h"

namespace tarnwell {
namespace {

/// The file is read afresh for each request, so its size must not decide how long that takes. A settings
/// file has about a kilobyte; one of more than a megabyte is some other file, or a broken one.
constexpr std::size_t maxFileBytes = std::size_t{1024} * 1024;

/// Absent for what is not a JSON object with values of the right types.
std::optional<AppConfig> decode(const std::string& text) {
  // The parser takes a zero byte for the end of the text, whatever follows.
  if (text.size() > maxFileBytes || text.find('\0') != std::string::npos) {
    return std::nullopt;
  }
  try {
    return nlohmann::json::parse(text).get<AppConfig>();
  } catch (const std::exception&) {
    return std::nullopt;
  }
}

/// Why somebody else may have written the file; empty when nobody may.
std::string_view objection(OtherWriter otherWriter) {
  switch (otherWriter) {
    case OtherWriter::none:
      return "";
    case OtherWriter::owner:
      return "another user owns it";
    case OtherWriter::everybody:
      return "everybody may write it";
    case OtherWriter::everybodyInFolder:
      return "everybody may write in its folder";
  }
  return "";
}

}  // namespace

ConfigStore ConfigStore::shared() {
  auto support = applicationSupportDirectory();
  if (!support) {
    // Deliberate: the same on every system, so that the file has a place even without an environment.
    support = homeDirectory() / "Library" / "Application Support";
  }
  return ConfigStore(*support / BridgeConstants::bundleIdentifier);
}

AppConfig ConfigStore::load() const {
  // One byte more than allowed shows that a file is too large.
  const std::optional<FilePrefix> file = readFilePrefix(configURL(), maxFileBytes + 1);
  if (!file) {
    // Deliberate: no log line. Before the first set-up there is no file, and that is no error.
    return {};
  }
  if (const std::string_view why = objection(file->otherWriter); !why.empty()) {
    AppLogger::error(AppLogger::Category::app,
                     "Config file set aside: " + std::string(why) + "; using defaults");
    return {};
  }
  std::optional<AppConfig> config = decode(file->text);
  if (!config) {
    AppLogger::error(AppLogger::Category::app, "Config file unreadable; using defaults");
    return {};
  }
  return *std::move(config);
}

void ConfigStore::save(const AppConfig& config) const {
  createPrivateDirectories(directory_);
  replacePrivateFile(configURL(), nlohmann::json(config).dump(2) + "\n");
}

}  // namespace tarnwell
