#include "Core/ConfigStore.h"

#include <nlohmann/json.hpp>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>

#include "Core/AppLogger.h"
#include "Core/BridgeConstants.h"
#include "Platform/FolderLock.h"
#include "Platform/PrivateFiles.h"
#include "Platform/UserDirectories.h"

namespace tarnwell {
namespace {

/// The program reads the file again for each request, so the time must not depend on the file's size. A
/// settings file has about a kilobyte. A file over one megabyte is another file, or broken.
constexpr std::size_t maxFileBytes = std::size_t{1024} * 1024;

/// The file as it stands: its JSON, which is null unless the file is good, and what it says.
struct Contents {
  nlohmann::json json;
  ConfigStore::Inspection inspection;
};

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

Contents damaged(std::string reason) {
  return {nullptr, {{}, ConfigStore::FileState::damaged, std::move(reason)}};
}

Contents contentsOf(const std::filesystem::path& path) {
  // One byte over the limit shows that the file is too large.
  const std::optional<FilePrefix> file = readFilePrefix(path, maxFileBytes + 1);
  if (!file) {
    return {};
  }
  if (const std::string_view why = objection(file->otherWriter); !why.empty()) {
    return {nullptr, {{}, ConfigStore::FileState::untrusted, std::string(why)}};
  }
  if (file->text.size() > maxFileBytes) {
    return damaged("larger than a mebibyte");
  }
  // The parser ends the text at a zero byte and would ignore the rest.
  if (file->text.find('\0') != std::string::npos) {
    return damaged("holds a zero byte");
  }
  try {
    nlohmann::json json = nlohmann::json::parse(file->text);
    auto config = json.get<AppConfig>();
    return {std::move(json), {std::move(config), ConfigStore::FileState::good, {}}};
  } catch (const nlohmann::json::parse_error& error) {
    return damaged("not JSON, at byte " + std::to_string(error.byte));
  } catch (const std::exception& error) {
    return damaged(error.what());
  }
}

/// The same. A file that is there and cannot be read is no missing one: it must not be replaced.
Contents contentsOrObjection(const std::filesystem::path& path) {
  Contents contents = contentsOf(path);
  std::error_code ignored;
  const bool isThere =
      std::filesystem::symlink_status(path, ignored).type() != std::filesystem::file_type::not_found;
  if (contents.inspection.state == ConfigStore::FileState::missing && isThere) {
    contents.inspection = {{}, ConfigStore::FileState::untrusted, "it cannot be read"};
  }
  return contents;
}

/// Puts the keys of the record into the file's object. What is neither known nor a record stays.
void merge(nlohmann::json& object, const AppConfig& config) {
  // The keys of an empty record are those that are always written; the others are written when they are set.
  for (const char* optional :
       {"strictWithholding", "lastConnectionTestDate", "lastConnectionTestSuccess", "language"}) {
    object.erase(optional);
  }
  object.merge_patch(nlohmann::json(config));
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

ConfigStore::Inspection ConfigStore::inspect() const { return contentsOrObjection(configURL()).inspection; }

AppConfig ConfigStore::load() const {
  Inspection file = contentsOf(configURL()).inspection;
  switch (file.state) {
    case FileState::missing:  // Deliberate: no log line, also for a file that cannot be read.
    case FileState::good:
      break;
    case FileState::damaged:
      AppLogger::error(AppLogger::Category::app, "Config file unreadable; using defaults");
      break;
    case FileState::untrusted:
      AppLogger::error(AppLogger::Category::app,
                       "Config file set aside: " + file.reason + "; using defaults");
      break;
  }
  return std::move(file.config);
}

void ConfigStore::update(const std::function<void(AppConfig&)>& edit) const {
  createPrivateDirectories(directory_);
  const FolderLock oneAtATime(directory_);  // else of two changes at the same time the first would be lost
  auto [json, file] = contentsOrObjection(configURL());
  if (file.state == FileState::untrusted) {
    throw std::runtime_error(configURL().string() + " is set aside: " + file.reason);
  }
  if (file.state == FileState::damaged) {
    keepCopy();
    file.config.strictWithholding = true;
  }
  if (!json.is_object()) {
    json = nlohmann::json::object();
  }
  edit(file.config);
  merge(json, file.config);
  write(json.dump(2) + "\n");
}

/// A copy of the same second is not overwritten: it gets a number.
void ConfigStore::keepCopy() const {
  const std::string name = configURL().string() + ".damaged-" + formatISO8601(currentInstant());
  std::filesystem::path copy = name;
  for (int number = 2; std::filesystem::exists(copy); ++number) {
    copy = name + "-" + std::to_string(number);
  }
  std::filesystem::copy_file(configURL(), copy);
}

void ConfigStore::save(const AppConfig& config) const { write(nlohmann::json(config).dump(2) + "\n"); }

void ConfigStore::write(const std::string& text) const {
  createPrivateDirectories(directory_);
  replacePrivateFile(configURL(), text);
}

}  // namespace tarnwell
