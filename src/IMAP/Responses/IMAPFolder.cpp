#include "IMAP/Responses/IMAPFolder.h"

#include <algorithm>
#include <array>
#include <utility>

#include "IMAP/Decoding/ModifiedUTF7.h"
#include "IMAP/Responses/JSONFields.h"

namespace tarnwell {
namespace {

constexpr std::array<std::pair<SpecialUse, std::string_view>, 8> rawValues{{
    {SpecialUse::inbox, "\\Inbox"},
    {SpecialUse::archive, "\\Archive"},
    {SpecialUse::drafts, "\\Drafts"},
    {SpecialUse::sent, "\\Sent"},
    {SpecialUse::junk, "\\Junk"},
    {SpecialUse::trash, "\\Trash"},
    {SpecialUse::flagged, "\\Flagged"},
    {SpecialUse::all, "\\All"},
}};

}  // namespace

std::string_view rawValue(SpecialUse use) {
  const auto found =
      std::find_if(rawValues.begin(), rawValues.end(), [use](const auto& pair) { return pair.first == use; });
  return found->second;
}

std::optional<SpecialUse> specialUse(std::string_view rawValue) {
  const auto found = std::find_if(rawValues.begin(), rawValues.end(),
                                  [rawValue](const auto& pair) { return pair.second == rawValue; });
  return found == rawValues.end() ? std::nullopt : std::optional(found->first);
}

std::string readableName(const IMAPFolder& folder) { return ModifiedUTF7::readable(folder.name); }

std::string readablePath(const IMAPFolder& folder) {
  if (folder.delimiter.empty()) {
    return ModifiedUTF7::readable(folder.path);
  }
  const std::string_view path = folder.path;
  std::string readable;
  std::size_t begin = 0;
  for (std::size_t found; (found = path.find(folder.delimiter, begin)) != std::string_view::npos;) {
    readable += ModifiedUTF7::readable(path.substr(begin, found - begin)) + folder.delimiter;
    begin = found + folder.delimiter.size();
  }
  return readable + ModifiedUTF7::readable(path.substr(begin));
}

void to_json(nlohmann::json& json, SpecialUse use) { json = rawValue(use); }

void from_json(const nlohmann::json& json, SpecialUse& use) {
  const std::optional<SpecialUse> known = specialUse(json.get_ref<const std::string&>());
  if (!known) {
    throw nlohmann::json::other_error::create(501, "not a special use", &json);
  }
  use = *known;
}

void to_json(nlohmann::json& json, const IMAPFolder& folder) {
  json = {{"name", folder.name},
          {"path", folder.path},
          {"delimiter", folder.delimiter},
          {"selectable", folder.selectable}};
  writeOptional(json, "specialUse", folder.specialUse);
}

void from_json(const nlohmann::json& json, IMAPFolder& folder) {
  folder = {
      .name = json.at("name").get<std::string>(),
      .path = json.at("path").get<std::string>(),
      .delimiter = json.at("delimiter").get<std::string>(),
      .specialUse = readOptional(json, "specialUse"),
      .selectable = json.at("selectable").get<bool>(),
  };
}

}  // namespace tarnwell
