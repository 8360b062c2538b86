#include "Core/AppConfig.h"

#include <limits>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <utility>
#include <vector>

#include "Platform/UserDirectories.h"
#include "Text/ASCIICase.h"

namespace tarnwell {
namespace {

using nlohmann::json;

[[noreturn]] void fail(const char* key, const char* expected) {
  throw std::invalid_argument(std::string(key) + ": expected " + expected);
}

void requireObject(const json& value, const char* name) {
  if (!value.is_object()) {
    fail(name, "an object");
  }
}

void read(const json& value, const char* key, bool& field) {
  if (!value.is_boolean()) {
    fail(key, "true or false");
  }
  field = value.get<bool>();
}

void read(const json& value, const char* key, std::int64_t& field) {
  // Only the positive numbers are kept unsigned, and of these only the larger ones do not fit.
  constexpr auto largest = static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max());
  if (!value.is_number_integer() || (value.is_number_unsigned() && value.get<std::uint64_t>() > largest)) {
    fail(key, "an integer of 64 bits");
  }
  field = value.get<std::int64_t>();
}

void read(const json& value, const char* key, std::string& field) {
  if (!value.is_string()) {
    fail(key, "a text");
  }
  field = value.get<std::string>();
}

void read(const json& value, const char* key, Instant& field) {
  std::string text;
  read(value, key, text);
  std::optional<Instant> instant = parseISO8601(text);
  if (!instant) {
    fail(key, "a date and time");
  }
  field = *instant;
}

void read(const json& value, const char* key, AppLanguage& field) {
  std::string text;
  read(value, key, text);
  std::optional<AppLanguage> language = appLanguage(text);
  if (!language) {
    fail(key, "a known language");
  }
  field = *language;
}

void read(const json& value, const char* /*key*/, SafetySettings& field) { from_json(value, field); }

template <class T>
void read(const json& value, const char* key, std::optional<T>& field) {
  read(value, key, field.emplace());
}

/// A key that is missing or null leaves the field as it is.
template <class Field>
void readIfPresent(const json& object, const char* key, Field& field) {
  if (auto found = object.find(key); found != object.end() && !found->is_null()) {
    read(*found, key, field);
  }
}

struct LanguageRow {
  AppLanguage language;
  std::string_view rawValue;
  std::string_view displayName;
};

constexpr LanguageRow languages[] = {
    {AppLanguage::english, "en", "English"},
    {AppLanguage::japanese, "ja", "日本語"},
};

const LanguageRow& rowOf(AppLanguage language) {
  return languages[language == AppLanguage::japanese ? 1 : 0];
}

}  // namespace

std::string_view rawValue(AppLanguage language) { return rowOf(language).rawValue; }

std::string_view displayName(AppLanguage language) { return rowOf(language).displayName; }

std::optional<AppLanguage> appLanguage(std::string_view rawValue) {
  for (const LanguageRow& row : languages) {
    if (row.rawValue == rawValue) {
      return row.language;
    }
  }
  return std::nullopt;
}

AppLanguage systemDefaultLanguage() {
  std::vector<std::string> wanted = preferredLanguages();
  std::string_view first = wanted.empty() ? std::string_view("en") : wanted.front();
  // Language tags are ASCII and know no letter case (RFC 5646, section 2.1.1).
  return startsWithIgnoringASCIICase(first, "ja") ? AppLanguage::japanese : AppLanguage::english;
}

void to_json(json& json, const SafetySettings& settings) {
  json = {
      {"readOnly", settings.readOnly},
      {"maxFetch", settings.maxFetch},
      {"allowTrash", settings.allowTrash},
      {"allowMove", settings.allowMove},
      {"allowMarkRead", settings.allowMarkRead},
      {"maxBodyChars", settings.maxBodyChars},
      {"maxMessagesPerCall", settings.maxMessagesPerCall},
      {"blockAuthCodeBodies", settings.blockAuthCodeBodies},
      {"allowCopyMoveFallback", settings.allowCopyMoveFallback},
  };
}

void from_json(const json& json, SafetySettings& settings) {
  requireObject(json, "safety");
  SafetySettings read;
  readIfPresent(json, "readOnly", read.readOnly);
  readIfPresent(json, "maxFetch", read.maxFetch);
  readIfPresent(json, "allowTrash", read.allowTrash);
  readIfPresent(json, "allowMove", read.allowMove);
  readIfPresent(json, "allowMarkRead", read.allowMarkRead);
  readIfPresent(json, "maxBodyChars", read.maxBodyChars);
  readIfPresent(json, "maxMessagesPerCall", read.maxMessagesPerCall);
  readIfPresent(json, "blockAuthCodeBodies", read.blockAuthCodeBodies);
  readIfPresent(json, "allowCopyMoveFallback", read.allowCopyMoveFallback);
  settings = read;
}

void to_json(json& json, const AppConfig& config) {
  json = {
      {"email", config.email},   {"imapHost", config.imapHost}, {"imapPort", config.imapPort},
      {"safety", config.safety}, {"httpPort", config.httpPort},
  };
  if (config.strictWithholding) {
    json["strictWithholding"] = true;
  }
  if (config.lastConnectionTestDate) {
    json["lastConnectionTestDate"] = formatISO8601(*config.lastConnectionTestDate);
  }
  if (config.lastConnectionTestSuccess) {
    json["lastConnectionTestSuccess"] = *config.lastConnectionTestSuccess;
  }
  if (config.language) {
    json["language"] = rawValue(*config.language);
  }
}

void from_json(const json& json, AppConfig& config) {
  requireObject(json, "settings");
  AppConfig read;
  readIfPresent(json, "email", read.email);
  readIfPresent(json, "imapHost", read.imapHost);
  readIfPresent(json, "imapPort", read.imapPort);
  readIfPresent(json, "safety", read.safety);
  readIfPresent(json, "strictWithholding", read.strictWithholding);
  readIfPresent(json, "httpPort", read.httpPort);
  readIfPresent(json, "lastConnectionTestDate", read.lastConnectionTestDate);
  readIfPresent(json, "lastConnectionTestSuccess", read.lastConnectionTestSuccess);
  readIfPresent(json, "language", read.language);
  config = std::move(read);
}

}  // namespace tarnwell
