#include "Core/AppConfig.h"

#include <nlohmann/json.hpp>

#include "support/ScopedEnvironment.h"

namespace tarnwell::test {
namespace {

using nlohmann::json;
using namespace std::chrono_literals;

/// The decoded record. When the decoding fails it is absent, and `error` has the text of the error.
std::optional<AppConfig> decoded(const std::string& text, std::string* error = nullptr) {
  try {
    return json::parse(text).get<AppConfig>();
  } catch (const std::exception& exception) {
    if (error != nullptr) {
      *error = exception.what();
    }
    return std::nullopt;
  }
}

AppConfig with(void (*change)(AppConfig&)) {
  AppConfig config;
  change(config);
  return config;
}

TEST(AppConfigDefaults, areTheCautiousOnes) {
  AppConfig config;
  EXPECT_EQ(config.email, "");
  EXPECT_EQ(config.imapHost, BridgeConstants::defaultIMAPHost);
  EXPECT_EQ(config.imapPort, 993);
  EXPECT_EQ(config.httpPort, 8765);
  EXPECT_EQ(config.lastConnectionTestDate, std::nullopt);
  EXPECT_EQ(config.lastConnectionTestSuccess, std::nullopt);
  EXPECT_EQ(config.language, std::nullopt);
  EXPECT_FALSE(config.strictWithholding);
  EXPECT_FALSE(config.isConfigured());
  EXPECT_TRUE(config.safety.readOnly);
  EXPECT_EQ(config.safety.maxFetch, 50);
  EXPECT_FALSE(config.safety.allowTrash);
  EXPECT_TRUE(config.safety.allowMove);
  EXPECT_TRUE(config.safety.allowMarkRead);
  EXPECT_EQ(config.safety.maxBodyChars, 4000);
  EXPECT_EQ(config.safety.maxMessagesPerCall, 20);
  EXPECT_TRUE(config.safety.blockAuthCodeBodies);
  EXPECT_FALSE(config.safety.allowCopyMoveFallback);
}

struct Row {
  const char* name;
  const char* text;
  AppConfig expected;
};

TEST(AppConfigDecoding, eachKeyReplacesItsOwnField) {
  const Row rows[] = {
      {"empty object", "{}", AppConfig()},
      {"email alone", R"({"email": "user@example.org"})",
       with([](AppConfig& c) { c.email = "user@example.org"; })},
      {"host", R"({"imapHost": "mail.example.org"})",
       with([](AppConfig& c) { c.imapHost = "mail.example.org"; })},
      {"port", R"({"imapPort": 1993})", with([](AppConfig& c) { c.imapPort = 1993; })},
      {"no range of ports", R"({"imapPort": -1, "httpPort": 70000})", with([](AppConfig& c) {
         c.imapPort = -1;
         c.httpPort = 70000;
       })},
      {"largest integer", R"({"imapPort": 9223372036854775807})",
       with([](AppConfig& c) { c.imapPort = INT64_MAX; })},
      {"smallest integer", R"({"imapPort": -9223372036854775808})",
       with([](AppConfig& c) { c.imapPort = INT64_MIN; })},
      {"test date", R"({"lastConnectionTestDate": "2024-05-01T09:30:00Z"})", with([](AppConfig& c) {
         c.lastConnectionTestDate = std::chrono::sys_days(2024y / 5 / 1) + 9h + 30min;
       })},
      {"strict", R"({"strictWithholding": true})", with([](AppConfig& c) { c.strictWithholding = true; })},
      {"not strict", R"({"strictWithholding": false})", AppConfig()},
      {"strict as null", R"({"strictWithholding": null})", AppConfig()},
      {"strict among the safety settings", R"({"safety": {"strictWithholding": true}})", AppConfig()},
      {"test outcome", R"({"lastConnectionTestSuccess": false})",
       with([](AppConfig& c) { c.lastConnectionTestSuccess = false; })},
      {"english", R"({"language": "en"})", with([](AppConfig& c) { c.language = AppLanguage::english; })},
      {"japanese", R"({"language": "ja"})", with([](AppConfig& c) { c.language = AppLanguage::japanese; })},
      {"unknown keys", R"({"theme": {"dark": [1, null]}, "email": "a@b"})",
       with([](AppConfig& c) { c.email = "a@b"; })},
      {"null is a missing key",
       R"({"email": null, "imapHost": null, "imapPort": null, "safety": null, "httpPort": null,
           "lastConnectionTestDate": null, "lastConnectionTestSuccess": null, "language": null})",
       AppConfig()},
      {"last of two keys", R"({"email": "first@example.org", "email": "last@example.org"})",
       with([](AppConfig& c) { c.email = "last@example.org"; })},
      {"last of two keys, the first of a wrong type", R"({"imapPort": "x", "imapPort": 1})",
       with([](AppConfig& c) { c.imapPort = 1; })},
      {"last of two objects as a whole", R"({"safety": {"allowTrash": true}, "safety": {"maxFetch": 9}})",
       with([](AppConfig& c) { c.safety.maxFetch = 9; })},
      {"null at last", R"({"email": "a@b", "email": null})", AppConfig()},
      {"escapes", R"({"email": "\u0075ser\u0040example.org"})",
       with([](AppConfig& c) { c.email = "user@example.org"; })},
      {"empty safety", R"({"safety": {}})", AppConfig()},
      {"safety with readOnly alone", R"({"safety": {"readOnly": false}})",
       with([](AppConfig& c) { c.safety.readOnly = false; })},
      {"every safety key",
       R"({"safety": {"readOnly": false, "maxFetch": 1, "allowTrash": true, "allowMove": false,
           "allowMarkRead": false, "maxBodyChars": 2, "maxMessagesPerCall": 3, "blockAuthCodeBodies": false,
           "allowCopyMoveFallback": true, "unknown": 1}})",
       with([](AppConfig& c) { c.safety = {false, 1, true, false, false, 2, 3, false, true}; })},
      {"null safety keys", R"({"safety": {"readOnly": null, "maxFetch": null}})", AppConfig()},
  };
  for (const Row& row : rows) {
    EXPECT_EQ(decoded(row.text), row.expected) << row.name;
  }
}

TEST(AppConfigDecoding, missingSafetyKeysHaveTheirDefaults) {
  auto config = decoded(R"({"safety": {"readOnly": false}})");
  ASSERT_TRUE(config);
  EXPECT_FALSE(config->safety.allowTrash);
  EXPECT_TRUE(config->safety.allowMove);
  EXPECT_TRUE(config->safety.allowMarkRead);
  EXPECT_EQ(config->safety.maxBodyChars, 4000);
  EXPECT_EQ(config->safety.maxMessagesPerCall, 20);
  EXPECT_EQ(config->safety.maxFetch, 50);
}

TEST(AppConfigDecoding, addressAloneMakesItConfigured) {
  EXPECT_TRUE(decoded(R"({"email": "user@example.org"})")->isConfigured());
  EXPECT_FALSE(decoded(R"({"email": "", "lastConnectionTestSuccess": true})")->isConfigured());
}

struct KeyType {
  const char* key;
  std::vector<const char*> wrong;
};

const char* const noText[] = {"1", "1.5", "true", "[]", "{}"};
const char* const noInteger[] = {"\"1\"",
                                 "1.5",
                                 "1.0",
                                 "1e2",
                                 "true",
                                 "[]",
                                 "{}",
                                 "9223372036854775808",
                                 "18446744073709551615",
                                 "99999999999999999999",
                                 "-9223372036854775809"};
const char* const noBoolean[] = {"0", "1", "\"true\"", "[]", "{}"};

TEST(AppConfigDecoding, oneKeyOfTheWrongTypeFailsTheWholeRecord) {
  std::vector<std::pair<std::string, std::vector<const char*>>> keys = {
      {"email", {std::begin(noText), std::end(noText)}},
      {"imapHost", {std::begin(noText), std::end(noText)}},
      {"imapPort", {std::begin(noInteger), std::end(noInteger)}},
      {"httpPort", {std::begin(noInteger), std::end(noInteger)}},
      {"safety", {"1", "true", "\"x\"", "[]"}},
      {"lastConnectionTestDate", {"1", "true", "{}", "\"\"", "\"2024-05-01\"", "\"2024-05-01T09:30:00.5Z\""}},
      {"lastConnectionTestSuccess", {std::begin(noBoolean), std::end(noBoolean)}},
      {"strictWithholding", {std::begin(noBoolean), std::end(noBoolean)}},
      {"language", {"1", "[]", "\"de\"", "\"\"", "\"EN\"", "\"en-GB\""}},
  };
  for (const auto& [key, values] : keys) {
    for (const char* value : values) {
      std::string text = R"({"email": "a@b", ")" + key + "\": " + value + "}";
      std::string error;
      EXPECT_EQ(decoded(text, &error), std::nullopt) << text;
      EXPECT_THAT(error, testing::StartsWith(key + ": ")) << text;
    }
  }
}

TEST(AppConfigDecoding, oneSafetyKeyOfTheWrongTypeFailsTheWholeRecord) {
  for (const char* key : {"maxFetch", "maxBodyChars", "maxMessagesPerCall"}) {
    for (const char* value : noInteger) {
      std::string text = std::string(R"({"safety": {")") + key + "\": " + value + "}}";
      EXPECT_EQ(decoded(text), std::nullopt) << text;
    }
  }
  for (const char* key : {"readOnly", "allowTrash", "allowMove", "allowMarkRead", "blockAuthCodeBodies",
                          "allowCopyMoveFallback"}) {
    for (const char* value : noBoolean) {
      std::string text = std::string(R"({"safety": {")") + key + "\": " + value + "}}";
      EXPECT_EQ(decoded(text), std::nullopt) << text;
    }
  }
}

TEST(AppConfigDecoding, rootMustBeAnObject) {
  for (const char* text : {"[]", "null", "1", "\"x\"", "true"}) {
    EXPECT_EQ(decoded(text), std::nullopt) << text;
  }
}

TEST(AppConfigEncoding, optionalFieldsAreWrittenOnlyWhenPresent) {
  EXPECT_EQ(json(AppConfig()), json::parse(R"({
    "email": "", "imapHost": "imap.mail.me.com", "imapPort": 993, "httpPort": 8765,
    "safety": {"readOnly": true, "maxFetch": 50, "allowTrash": false, "allowMove": true,
               "allowMarkRead": true, "maxBodyChars": 4000, "maxMessagesPerCall": 20,
               "blockAuthCodeBodies": true, "allowCopyMoveFallback": false}})"));
  AppConfig config;
  config.lastConnectionTestDate = std::chrono::sys_days(2024y / 5 / 1) + 9h + 30min;
  config.lastConnectionTestSuccess = false;
  config.language = AppLanguage::japanese;
  config.strictWithholding = true;
  json encoded = config;
  EXPECT_EQ(encoded["strictWithholding"], true);
  EXPECT_EQ(encoded["lastConnectionTestDate"], "2024-05-01T09:30:00Z");
  EXPECT_EQ(encoded["lastConnectionTestSuccess"], false);
  EXPECT_EQ(encoded["language"], "ja");
  EXPECT_EQ(encoded.get<AppConfig>(), config);
}

TEST(AppLanguageValues, goBothWays) {
  EXPECT_THAT(AppLanguages::allCases, testing::ElementsAre(AppLanguage::english, AppLanguage::japanese));
  EXPECT_EQ(rawValue(AppLanguage::english), "en");
  EXPECT_EQ(rawValue(AppLanguage::japanese), "ja");
  EXPECT_EQ(displayName(AppLanguage::english), "English");
  EXPECT_EQ(displayName(AppLanguage::japanese), "日本語");
  EXPECT_EQ(appLanguage("en"), AppLanguage::english);
  EXPECT_EQ(appLanguage("ja"), AppLanguage::japanese);
  for (const char* text : {"", "de", "EN", "ja-JP", "en "}) {
    EXPECT_EQ(appLanguage(text), std::nullopt) << text;
  }
}

struct LanguageRow {
  const char* wanted;
  AppLanguage expected;
};

TEST(SystemDefaultLanguage, isJapaneseForThoseWhoWantItFirst) {
  const LanguageRow rows[] = {
      {"ja_JP.UTF-8", AppLanguage::japanese},
      {"ja", AppLanguage::japanese},
      {"JA_JP", AppLanguage::japanese},
      {"jA", AppLanguage::japanese},
      {"en_GB", AppLanguage::english},
      {"fr", AppLanguage::english},
      {"zh_Hans", AppLanguage::english},
      {"j", AppLanguage::english},
      {"aja", AppLanguage::english},
      {"en_JA", AppLanguage::english},
      {"C", AppLanguage::english},
      {"", AppLanguage::english},
  };
  for (const LanguageRow& row : rows) {
    ScopedEnvironment environment({{"LC_ALL", std::optional<std::string>(row.wanted)},
                                   {"LANGUAGE", std::nullopt},
                                   {"LC_MESSAGES", std::nullopt},
                                   {"LANG", std::nullopt}});
    EXPECT_EQ(systemDefaultLanguage(), row.expected) << row.wanted;
  }
}

}  // namespace
}  // namespace tarnwell::test
