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

/// The program reads the file again for each request, so the time must not depend on the file's size. A
/// settings file has about a kilobyte. A file over one megabyte is another file, or broken.
constexpr std::size_t maxFileBytes = std::size_t{1024} * 1024;

/// Absent when the text is not a JSON object with values of the right types.
std::optional<AppConfig> decode(const std::string& text) {
  // The parser ends the text at a zero byte and would ignore the rest.
  if (text.size() > maxFileBytes || text.find('\0') != std::string::npos) {
    return std::nullopt;
  }
  try {
    return nlohmann::json::parse(text).get<AppConfig>();
  } catch (const std::exception&) {
    return std::nullopt;
  }
}

/// How somebody else may have written the file. Empty when nobody may have.
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
    // Deliberate: this place is the same on every system. The file has a place even without an environment.
    support = homeDirectory() / "Library" / "Application Support";
  }
  return ConfigStore(*support / BridgeConstants::bundleIdentifier);
}

AppConfig ConfigStore::load() const {
  // One byte over the limit shows that the file is too large.
  const std::optional<FilePrefix> file = readFilePrefix(configURL(), maxFileBytes + 1);
  if (!file) {
    // Deliberate: no log line. Before the first set-up it is normal that there is no file.
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
