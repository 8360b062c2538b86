#include "Core/AppConfig.h"

#include <algorithm>
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
  // The parser stores integers from 0 on as unsigned. Of these, the largest do not fit.
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

template <class Value>
void write(json& object, const char* key, const Value& value) {
  object[key] = value;
}

void write(json& object, const char* key, Instant instant) { object[key] = formatISO8601(instant); }

void write(json& object, const char* key, AppLanguage language) { object[key] = rawValue(language); }

template <class Value>
void write(json& object, const char* key, const std::optional<Value>& value) {
  if (value) {
    write(object, key, *value);
  }
}

/// Calls `use(key, field)` for each key of the file.
template <class Config, class Use>
void forEachField(Config& config, const Use& use) {
  use("email", config.email);
  use("imapHost", config.imapHost);
  use("imapPort", config.imapPort);
  use("safety", config.safety);
  use("strictWithholding", config.strictWithholding);
  use("httpPort", config.httpPort);
  use("lastConnectionTestDate", config.lastConnectionTestDate);
  use("lastConnectionTestSuccess", config.lastConnectionTestSuccess);
  use("language", config.language);
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
  return *std::ranges::find(languages, language, &LanguageRow::language);
}

}  // namespace

std::string_view rawValue(AppLanguage language) { return rowOf(language).rawValue; }

std::string_view displayName(AppLanguage language) { return rowOf(language).displayName; }

std::optional<AppLanguage> appLanguage(std::string_view rawValue) {
  const auto* const row = std::ranges::find(languages, rawValue, &LanguageRow::rawValue);
  return row == std::end(languages) ? std::nullopt : std::optional(row->language);
}

AppLanguage systemDefaultLanguage() {
  std::vector<std::string> wanted = preferredLanguages();
  std::string_view first = wanted.empty() ? std::string_view("en") : wanted.front();
  // Language tags are ASCII, and letter case does not count in them (RFC 5646, section 2.1.1).
  return startsWithIgnoringASCIICase(first, "ja") ? AppLanguage::japanese : AppLanguage::english;
}

void to_json(json& object, const SafetySettings& settings) {
  object = json::object();
  forEachSafetySetting(settings, [&](const char* key, const auto& field) { write(object, key, field); });
}

void from_json(const json& object, SafetySettings& settings) {
  requireObject(object, "safety");
  SafetySettings fresh;
  forEachSafetySetting(fresh, [&](const char* key, auto& field) { readIfPresent(object, key, field); });
  settings = fresh;
}

void to_json(json& object, const AppConfig& config) {
  object = json::object();
  forEachField(config, [&](const char* key, const auto& field) { write(object, key, field); });
  if (!config.strictWithholding) {
    object.erase("strictWithholding");
  }
}

void from_json(const json& object, AppConfig& config) {
  requireObject(object, "settings");
  AppConfig fresh;
  forEachField(fresh, [&](const char* key, auto& field) { readIfPresent(object, key, field); });
  config = std::move(fresh);
}

}  // namespace tarnwell
