#pragma once

/// Reads and writes optional fields of a record in its JSON form.
/// Threads: all functions are pure.

#include <nlohmann/json.hpp>
#include <optional>
#include <string>

namespace tarnwell {

inline void writeOptional(nlohmann::json& json, const char* key, const std::optional<std::string>& text) {
  if (text) {
    json[key] = *text;
  }
}

/// Absent when the key is missing or null.
inline std::optional<std::string> readOptional(const nlohmann::json& json, const char* key) {
  const auto found = json.find(key);
  return found == json.end() || found->is_null() ? std::nullopt : std::optional(found->get<std::string>());
}

}  // namespace tarnwell
