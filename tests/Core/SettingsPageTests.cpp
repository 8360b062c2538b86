/// docs/settings.md lists every key of the settings file with its type and its default.

#include <fstream>
#include <map>
#include <nlohmann/json.hpp>

#include "Core/AppConfig.h"

namespace tarnwell::test {
namespace {

using nlohmann::json;

struct PageRow {
  std::string type;
  std::string defaultValue;

  bool operator==(const PageRow&) const = default;
};

void PrintTo(const PageRow& row, std::ostream* out) { *out << row.type << ", default " << row.defaultValue; }

using Page = std::map<std::string, PageRow>;

/// The rows "| `key` | type | `default` | meaning |" of a table that has such columns. `number` counts these
/// tables from 1.
Page tableOfThePage(int number) {
  std::ifstream file(TARNWELL_SETTINGS_PAGE);
  Page rows;
  for (std::string line; std::getline(file, line);) {
    number -= line == "| Key | Type | Default | Meaning |" ? 1 : 0;
    if (number != 0 || !line.starts_with("| `")) {
      continue;
    }
    std::vector<std::string> cells;
    for (std::size_t begin = 2; begin < line.size() && cells.size() < 3;) {
      const std::size_t end = line.find(" | ", begin);
      cells.push_back(line.substr(begin, end - begin));
      begin = end + 3;
    }
    rows[cells.at(0)] = {cells.at(1), cells.at(2)};
  }
  return rows;
}

std::string inBackticks(const std::string& text) { return "`" + text + "`"; }

PageRow rowOf(const json& value) {
  const std::string type = value.is_boolean() ? "true or false" : value.is_string() ? "text" : "integer";
  return {type, inBackticks(value.dump())};
}

TEST(SettingsPage, tellsOfTheSafetySettings) {
  Page expected;
  const json defaults = SafetySettings();
  for (const auto& [key, value] : defaults.items()) {
    expected[inBackticks(key)] = rowOf(value);
  }
  EXPECT_EQ(expected.size(), 9u);
  EXPECT_EQ(tableOfThePage(2), expected);
}

TEST(SettingsPage, tellsOfTheOtherKeys) {
  AppConfig everything;
  everything.strictWithholding = true;
  everything.lastConnectionTestDate = currentInstant();
  everything.lastConnectionTestSuccess = true;
  everything.language = AppLanguage::english;
  Page expected{
      {"`safety`", {"object", "see below"}},
      {"`strictWithholding`",
       {"true or false", inBackticks(AppConfig().strictWithholding ? "true" : "false")}},
      {"`lastConnectionTestDate`", {"ISO 8601 date and time", "absent"}},
      {"`lastConnectionTestSuccess`", {"true or false", "absent"}},
      {"`language`", {"`\"en\"` or `\"ja\"`", "absent"}},
  };
  const json written = everything;
  for (const auto& [key, value] : written.items()) {
    expected.try_emplace(inBackticks(key), rowOf(value));
  }
  EXPECT_EQ(tableOfThePage(1), expected);
}

}  // namespace
}  // namespace tarnwell::test
