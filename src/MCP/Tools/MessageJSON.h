#pragma once

/// Parts of a result that several tools make from a message.

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Core/SecurityMail/EmailRiskDetector.h"
#include "IMAP/Responses/IMAPMessage.h"
#include "MCP/JSON/JSONValue.h"

namespace tarnwell {

/// Replaces a text that must not leave.
inline constexpr std::string_view withheldText = "[withheld: sensitive]";

/// An object with category, term and location for each signal.
JSONValue riskSignalsJSON(const std::vector<RiskSignal>& signals);

/// The display form of the first sender.
std::optional<std::string> senderText(const IMAPMessage& message);

}  // namespace tarnwell
