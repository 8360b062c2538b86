#pragma once

/// Reads the arguments of a tool call. What is missing or has the wrong type is absent.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "Core/ISO8601.h"
#include "MCP/JSON/JSONValue.h"

namespace tarnwell {

/// The UID under "uid", which may also be a decimal text; absent when it is missing, below 1 or above
/// 32 bits.
std::optional<std::uint32_t> uidArg(const JSONValue& arguments);

/// What a tool says about a UID that `uidArg` does not read, and about one that is not in the inbox.
inline constexpr const char* invalidUIDText = "Missing or invalid 'uid'.";
std::string noMessageText(std::uint32_t uid);

/// A text that is not empty.
std::optional<std::string> textArg(const JSONValue& arguments, std::string_view key);

/// The wish for a preview under "dryRun": absent, a boolean, or an integer that is not 0.
/// Deliberate: a value of any other type means a preview; when it is unclear what was meant, nothing is
/// changed.
std::optional<bool> requestedDryRun(const JSONValue& arguments);

/// A date-time with time zone, or a date alone (midnight UTC); absent for any other text.
std::optional<Instant> parseISODate(std::string_view text);

}  // namespace tarnwell
