#pragma once

/// Turns JSON documents that the library read into values. Recursive, for small inputs only.

#include <algorithm>
#include <cstdint>
#include <nlohmann/json.hpp>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

#include "MCP/JSON/JSONValue.h"

namespace tarnwell::test {

inline std::size_t depthOf(const nlohmann::json& value) {
  std::size_t deepest = 0;
  if (value.is_structured()) {
    for (const nlohmann::json& part : value) {
      deepest = std::max(deepest, depthOf(part));
    }
    ++deepest;
  }
  return deepest;
}

inline JSONValue valueOf(const nlohmann::json& value) {
  switch (value.type()) {
    case nlohmann::json::value_t::object: {
      std::vector<JSONMember> members;
      for (const auto& [key, member] : value.items()) {
        members.emplace_back(key, valueOf(member));
      }
      return JSONObject(std::move(members));
    }
    case nlohmann::json::value_t::array: {
      JSONArray elements;
      for (const nlohmann::json& element : value) {
        elements.push_back(valueOf(element));
      }
      return elements;
    }
    case nlohmann::json::value_t::string:
      return value.get<std::string>();
    case nlohmann::json::value_t::boolean:
      return value.get<bool>();
    case nlohmann::json::value_t::number_integer:
      return value.get<std::int64_t>();
    case nlohmann::json::value_t::number_unsigned:
      return std::in_range<std::int64_t>(value.get<std::uint64_t>()) ? JSONValue(value.get<std::int64_t>())
                                                                     : JSONValue(value.get<double>());
    case nlohmann::json::value_t::number_float:
      return value.get<double>();
    default:
      return nullptr;
  }
}

/// The result that `JSONValue::decode` must have.
inline std::optional<JSONValue> decodedByLibrary(std::string_view data) {
  // The library ends the text at a zero byte and would ignore the rest.
  if (data.find('\0') != std::string_view::npos) {
    return std::nullopt;
  }
  const nlohmann::json document = nlohmann::json::parse(data, nullptr, false);
  if (document.is_discarded() || depthOf(document) > JSONValue::maximumDepth) {
    return std::nullopt;
  }
  return valueOf(document);
}

/// True when both are absent or the same value bit by bit. Equality alone treats -0.0 as 0.0.
inline bool areSameToTheBit(const std::optional<JSONValue>& a, const std::optional<JSONValue>& b) {
  return a == b && (!a || a->serialized() == b->serialized());
}

}  // namespace tarnwell::test
