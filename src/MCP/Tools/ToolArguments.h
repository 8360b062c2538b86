#pragma once

/// Reads the arguments of a tool call. An argument that is missing or has the wrong type is absent.
///
/// Threads: all functions are pure.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "Core/ISO8601.h"
#include "MCP/JSON/JSONValue.h"

namespace tarnwell {

/// The UID under "uid", which may also be a decimal text. Absent when it is missing, below 1 or above 32
/// bits.
std::optional<std::uint32_t> uidArg(const JSONValue& arguments);

/// The error texts for a UID that `uidArg` does not accept, and for a UID that is not in the inbox.
inline constexpr const char* invalidUIDText = "Missing or invalid 'uid'.";
std::string noMessageText(std::uint32_t uid);

/// A text that is not empty.
std::optional<std::string> textArg(const JSONValue& arguments, std::string_view key);

/// The request for a preview under "dryRun". Absent when it is missing or null. An integer means true unless
/// it is 0. Deliberate: a value of any other type means a preview, so an unclear request changes nothing.
std::optional<bool> requestedDryRun(const JSONValue& arguments);

/// A date-time with time zone, or a date alone (midnight UTC). Absent for any other text.
std::optional<Instant> parseISODate(std::string_view text);

}  // namespace tarnwell
