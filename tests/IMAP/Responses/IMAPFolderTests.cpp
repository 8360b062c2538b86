#include "IMAP/Responses/IMAPFolder.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <unordered_set>

namespace tarnwell {
namespace {

TEST(SpecialUse, hasARawValueInBothDirections) {
  const std::vector<std::pair<SpecialUse, std::string>> rows{
      {SpecialUse::inbox, "\\Inbox"},     {SpecialUse::archive, "\\Archive"},
      {SpecialUse::drafts, "\\Drafts"},   {SpecialUse::sent, "\\Sent"},
      {SpecialUse::junk, "\\Junk"},       {SpecialUse::trash, "\\Trash"},
      {SpecialUse::flagged, "\\Flagged"}, {SpecialUse::all, "\\All"},
  };
  for (const auto& [use, raw] : rows) {
    SCOPED_TRACE(raw);
    EXPECT_EQ(rawValue(use), raw);
    EXPECT_EQ(specialUse(raw), use);
    EXPECT_EQ(nlohmann::json(use).dump(), nlohmann::json(raw).dump());
    EXPECT_EQ(nlohmann::json(raw).get<SpecialUse>(), use);
  }
}

TEST(SpecialUse, anyOtherTextIsNone) {
  for (const std::string raw : {"\\trash", "\\TRASH", "Trash", "\\Trash ", "\\", "", "\\Important"}) {
    EXPECT_EQ(specialUse(raw), std::nullopt) << raw;
    EXPECT_THROW(nlohmann::json(raw).get<SpecialUse>(), nlohmann::json::exception) << raw;
  }
  EXPECT_THROW(nlohmann::json(1).get<SpecialUse>(), nlohmann::json::exception);
}

TEST(SpecialUse, canBeAKey) {
  const std::unordered_set<SpecialUse> uses{SpecialUse::trash, SpecialUse::sent, SpecialUse::trash};
  EXPECT_EQ(uses.size(), 2U);
}

TEST(IMAPFolder, isReadLevelByLevel) {
  struct Row {
    std::string path, delimiter, readable;
  };
  const std::vector<Row> rows{
      {"Archive/&ZviYXg-", "/", "Archive/書類"},
      {"INBOX.&ZviYXg-.&MNcw7TC4MKcwrzDI-", ".", "INBOX.書類.プロジェクト"},
      {"&ZviYXg-/&bad/R&-D/", "/", "書類/&bad/R&D/"},
      {"&ZvgAJg-//&ZvgAJg-", "/", "&ZvgAJg-//&ZvgAJg-"},
      {"&ZvgAJg-", "g", "&ZvgAJg-"},  // a delimiter inside the shift leaves no valid level
      {"&ZvgweA-", "w", "&ZvgweA-"},
      {"&ZvgweA-", "", "書へ"},
      {"a::&ZvgweA-:::b", "::", "a::書へ:::b"},
      {"", "/", ""},
  };
  for (const Row& row : rows) {
    EXPECT_EQ(readablePath({"", row.path, row.delimiter, std::nullopt, true}), row.readable) << row.path;
  }
  EXPECT_EQ(readableName({"&ZvgweA-", "a/&ZvgweA-", "/", std::nullopt, true}), "書へ");
}

TEST(IMAPFolder, withoutSpecialUseHasFourKeys) {
  const IMAPFolder folder{"2024", "INBOX.2024", ".", std::nullopt, false};
  EXPECT_EQ(nlohmann::json(folder).dump(),
            R"({"delimiter":".","name":"2024","path":"INBOX.2024","selectable":false})");
}

TEST(IMAPFolder, comesBackFromItsJSON) {
  const IMAPFolder folder{"Trash", "a/Trash", "/", "\\Trash", true};
  const nlohmann::json json = folder;
  EXPECT_EQ(json.dump(),
            R"({"delimiter":"/","name":"Trash","path":"a/Trash","selectable":true,"specialUse":"\\Trash"})");
  EXPECT_TRUE(json.get<IMAPFolder>() == folder);
  const IMAPFolder plain{"a", "a", "", std::nullopt, false};
  EXPECT_TRUE(nlohmann::json(plain).get<IMAPFolder>() == plain);
}

TEST(IMAPFolder, nullSpecialUseIsAbsent) {
  const auto json = nlohmann::json::parse(
      R"({"name":"a","path":"a","delimiter":"/","selectable":true,"specialUse":null,"more":1})");
  EXPECT_EQ(json.get<IMAPFolder>().specialUse, std::nullopt);
}

TEST(IMAPFolder, missingOrWrongFieldThrows) {
  const nlohmann::json whole = IMAPFolder{"a", "a", "/", "\\Sent", true};
  for (const std::string key : {"name", "path", "delimiter", "selectable"}) {
    nlohmann::json json = whole;
    json.erase(key);
    EXPECT_THROW(json.get<IMAPFolder>(), nlohmann::json::exception) << key;
  }
  for (const std::string key : {"name", "path", "delimiter", "selectable", "specialUse"}) {
    nlohmann::json json = whole;
    json[key] = 1;
    EXPECT_THROW(json.get<IMAPFolder>(), nlohmann::json::exception) << key;
  }
  EXPECT_THROW(nlohmann::json(1).get<IMAPFolder>(), nlohmann::json::exception);
}

}  // namespace
}  // namespace tarnwell
