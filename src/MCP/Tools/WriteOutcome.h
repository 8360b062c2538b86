#pragma once

/// What a write tool reports: the same seven keys whatever became of the call.
///
/// A refusal by the safety settings is an ordinary result, so that an assistant reads it as information
/// and not as a failure.

#include <optional>
#include <string>
#include <string_view>

#include "Core/SafetyPolicy.h"
#include "IMAP/MoveOutcome.h"
#include "MCP/JSON/JSONValue.h"

namespace tarnwell {

/// The wish for a preview under "dryRun": absent, a boolean, or an integer that is not 0.
/// Deliberate: a value of any other type means a preview; when it is unclear what was meant, nothing is
/// changed.
std::optional<bool> requestedDryRun(const JSONValue& arguments);

JSONValue blockedOutcome(std::string_view operation, SafetyMode mode, std::string_view reason);
JSONValue dryRunOutcome(std::string_view operation, SafetyMode mode, JSONObject detail);
JSONValue executedOutcome(std::string_view operation, SafetyMode mode, JSONObject detail);
/// The detail also tells how the move was carried out.
JSONValue executedMoveOutcome(std::string_view operation, SafetyMode mode, JSONObject detail,
                              MoveOutcome outcome);

/// Logs what was decided, without the reason's text.
void logDecision(std::string_view operation, const WriteDecision& decision);

}  // namespace tarnwell
