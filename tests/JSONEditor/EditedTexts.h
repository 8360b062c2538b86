#pragma once

/// What holds for every text that is edited.

#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include "JSONEditor/JSONEditor.h"
#include "MarkedText.h"
#include "support/RowName.h"

namespace tarnwell::test {

inline const JSONValue helperEntry =
    JSONObject{{"command", "/opt/tarnwell"}, {"args", JSONValue::strings({"serve"})}};

/// Where most clients have the entry.
inline const JSONPath servers = {"mcpServers", "tarnwell"};

/// With CR LF for each LF.
inline std::string withCRLF(std::string_view text) {
  std::string result;
  for (const char byte : text) {
    result += byte == '\n' ? "\r" : "";
    result += byte;
  }
  return result;
}

struct TextRow {
  const char* name;
  JSONPath path;
  std::string text;  // marked
};

/// The value of a text that is plain JSON, with this member.
inline JSONValue withMember(JSONValue whole, const JSONPath& path, const JSONValue& value) {
  JSONValue* place = &whole;
  for (const std::string& key : path) {
    JSONObject* object = place->objectValue();
    object->emplace(key, JSONObject());
    place = object->find(key);
  }
  *place = value;
  return whole;
}

inline void expectAddedAndRemoved(const TextRow& row, const JSONValue& value) {
  const MarkedText texts(row.text);
  EXPECT_EQ(jsonMember(texts.without, row.path), std::nullopt);
  EXPECT_EQ(withoutJSONMember(texts.without, row.path), texts.without);

  const std::string with = withJSONMember(texts.without, row.path, value);
  EXPECT_EQ(with, texts.with);
  EXPECT_EQ(jsonMember(with, row.path), value);
  EXPECT_EQ(withJSONMember(with, row.path, value), with) << "twice is not the same as once";

  const std::string removed = withoutJSONMember(with, row.path);
  EXPECT_EQ(removed, texts.removed);
  EXPECT_EQ(jsonMember(removed, row.path), std::nullopt);
  EXPECT_EQ(withoutJSONMember(removed, row.path), removed) << "twice is not the same as once";

  if (const std::optional<JSONValue> whole = JSONValue::decode(texts.without)) {
    EXPECT_EQ(JSONValue::decode(with), withMember(*whole, row.path, value)) << "no longer plain JSON";
    EXPECT_TRUE(JSONValue::decode(removed)) << "no longer plain JSON";
  }
}

}  // namespace tarnwell::test
