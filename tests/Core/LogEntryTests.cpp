#include <nlohmann/json.hpp>

#include "Core/AppLogger.h"
#include "Core/LogBuffer.h"

namespace tarnwell::test {
namespace {

using namespace std::chrono_literals;
using nlohmann::json;

TEST(LogLevel, hasItsRawValueAsJSON) {
  const struct {
    LogLevel level;
    const char* rawValue;
  } rows[] = {
      {LogLevel::debug, "debug"},
      {LogLevel::info, "info"},
      {LogLevel::notice, "notice"},
      {LogLevel::error, "error"},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(json(row.level), json(row.rawValue));
    EXPECT_EQ(json(row.rawValue).get<LogLevel>(), row.level);
    EXPECT_EQ(logLevel(row.rawValue), row.level);
  }
  for (const json& other : {json("Info"), json(""), json("default"), json(1), json(), json::object()}) {
    EXPECT_THROW(other.get<LogLevel>(), std::invalid_argument) << other;
  }
}

const LogEntry entry{
    .id = {0x0b, 0x4c, 0x3a, 0x9e, 0x5d, 0x0f, 0x4f, 0x5b, 0x9c, 0x36, 0x2d, 0x1f, 0, 0x7b, 0x8c, 0xff},
    .date = std::chrono::sys_days(std::chrono::year(2024) / 5 / 1) + 9h + 30min,
    .level = LogLevel::notice,
    .category = "tool",
    .message = "write \"日本\"\n: dry-run"};

const json entryJSON = {
    {"id", "0b4c3a9e-5d0f-4f5b-9c36-2d1f007b8cff"},
    {"date", "2024-05-01T09:30:00Z"},
    {"level", "notice"},
    {"category", "tool"},
    {"message", "write \"日本\"\n: dry-run"},
};

TEST(LogEntry, hasAJSONForm) {
  EXPECT_EQ(json(entry), entryJSON);
  EXPECT_EQ(entryJSON.get<LogEntry>(), entry);
  LogEntry withFraction = entry;
  withFraction.date += 999ms;
  EXPECT_EQ(json(withFraction), entryJSON) << "cut to whole seconds";
}

TEST(LogEntry, whatWasLoggedSurvives) {
  LogBuffer::shared().clear();
  AppLogger::error(AppLogger::Category::http, "a message");
  LogEntry logged = LogBuffer::shared().snapshot().front();
  logged.date = std::chrono::floor<std::chrono::seconds>(logged.date);
  EXPECT_EQ(json::parse(json(logged).dump()).get<LogEntry>(), logged);
}

TEST(LogEntry, identifierIsReadInAnyCaseAndUnknownKeysAreIgnored) {
  json other = entryJSON;
  other["id"] = "0B4C3A9E-5d0f-4F5B-9C36-2D1F007B8CFF";
  other["more"] = 1;
  EXPECT_EQ(other.get<LogEntry>(), entry);
}

TEST(LogEntry, whatIsMissingOrWrongIsNamed) {
  const std::string id = entryJSON["id"];
  const struct {
    const char* key;
    json value;
  } rows[] = {
      {"id", 5},
      {"id", ""},
      {"id", id + "0"},
      {"id", id.substr(1)},
      {"id", "0b4c3a9e-5d0f-4f5b-9c36-2d1f007b8cfg"},
      {"id", "0b4c3a9e05d0f-4f5b-9c36-2d1f007b8cff"},
      {"id", "0b4c3a9-e5d0f-4f5b-9c36-2d1f007b8cff"},
      {"date", 5},
      {"date", "2024-05-01"},
      {"date", ""},
      {"level", "warning"},
      {"level", 1},
      {"category", json::array()},
      {"message", nullptr},
  };
  for (const auto& row : rows) {
    for (const bool isMissing : {false, true}) {
      json wrong = entryJSON;
      wrong[row.key] = row.value;
      if (isMissing) {
        wrong.erase(row.key);
      }
      LogEntry read = entry;
      try {
        wrong.get_to(read);
        ADD_FAILURE() << "read: " << wrong;
      } catch (const std::invalid_argument& error) {
        EXPECT_THAT(error.what(), testing::StartsWith(std::string(row.key) + ": expected")) << wrong;
      }
      EXPECT_EQ(read, entry) << "as it was";
    }
  }
  EXPECT_THROW(json("text").get<LogEntry>(), std::invalid_argument);
}

}  // namespace
}  // namespace tarnwell::test
