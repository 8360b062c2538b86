/// The names of the levels, and the JSON forms of levels and entries.

#include <algorithm>
#include <charconv>
#include <nlohmann/json.hpp>
#include <stdexcept>

#include "Core/ISO8601.h"
#include "Core/LogBuffer.h"

namespace tarnwell {
namespace {

using nlohmann::json;
using Identifier = std::array<std::uint8_t, 16>;

struct LevelRow {
  LogLevel level;
  std::string_view rawValue;
};

constexpr LevelRow levels[] = {
    {LogLevel::debug, "debug"},
    {LogLevel::info, "info"},
    {LogLevel::notice, "notice"},
    {LogLevel::error, "error"},
};

[[noreturn]] void refuse(const char* key, const char* expected) {
  throw std::invalid_argument(std::string(key) + ": expected " + expected);
}

const std::string& textOf(const json& object, const char* key) {
  const auto found = object.find(key);
  if (found == object.end() || !found->is_string()) {
    refuse(key, "a text");
  }
  return found->get_ref<const std::string&>();
}

/// The groups have 8, 4, 4, 4 and 12 digits.
constexpr bool beginsGroup(std::size_t byte) { return byte == 4 || byte == 6 || byte == 8 || byte == 10; }

std::string formatUUID(const Identifier& identifier) {
  constexpr std::string_view digits = "0123456789abcdef";
  std::string text;
  for (std::size_t byte = 0; byte < identifier.size(); ++byte) {
    if (beginsGroup(byte)) {
      text.push_back('-');
    }
    text.push_back(digits[identifier[byte] >> 4]);
    text.push_back(digits[identifier[byte] & 0x0F]);
  }
  return text;
}

std::optional<Identifier> parseUUID(std::string_view text) {
  constexpr std::size_t length = 36;
  if (text.size() != length) {
    return std::nullopt;
  }
  Identifier identifier;
  for (std::size_t byte = 0; byte < identifier.size(); ++byte) {
    if (beginsGroup(byte)) {
      if (text.front() != '-') {
        return std::nullopt;
      }
      text.remove_prefix(1);
    }
    const char* const pairEnd = text.data() + 2;
    if (std::from_chars(text.data(), pairEnd, identifier[byte], 16).ptr != pairEnd) {
      return std::nullopt;
    }
    text.remove_prefix(2);
  }
  return identifier;
}

}  // namespace

std::string_view rawValue(LogLevel level) {
  return std::ranges::find(levels, level, &LevelRow::level)->rawValue;
}

std::optional<LogLevel> logLevel(std::string_view rawValue) {
  const auto* const row = std::ranges::find(levels, rawValue, &LevelRow::rawValue);
  return row == std::end(levels) ? std::nullopt : std::optional(row->level);
}

void to_json(json& json, LogLevel level) { json = rawValue(level); }

void from_json(const json& json, LogLevel& level) {
  const std::optional<LogLevel> read =
      json.is_string() ? logLevel(json.get_ref<const std::string&>()) : std::nullopt;
  if (!read) {
    refuse("level", "a known level");
  }
  level = *read;
}

void to_json(json& json, const LogEntry& entry) {
  json = {
      {"id", formatUUID(entry.id)},
      {"date", formatISO8601(std::chrono::floor<std::chrono::seconds>(entry.date))},
      {"level", entry.level},
      {"category", entry.category},
      {"message", entry.message},
  };
}

void from_json(const json& json, LogEntry& entry) {
  if (!json.is_object()) {
    refuse("entry", "an object");
  }
  const std::optional<Identifier> id = parseUUID(textOf(json, "id"));
  if (!id) {
    refuse("id", "a UUID");
  }
  const std::optional<Instant> date = parseISO8601(textOf(json, "date"));
  if (!date) {
    refuse("date", "a date and time");
  }
  LogEntry read{.id = *id,
                .date = *date,
                .level = LogLevel::debug,
                .category = textOf(json, "category"),
                .message = textOf(json, "message")};
  textOf(json, "level");
  json["level"].get_to(read.level);
  entry = std::move(read);
}

}  // namespace tarnwell
