#pragma once

/// The parts that several tools' results are made of.

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Core/AppConfig.h"
#include "Core/SecurityMail/EmailRiskDetector.h"
#include "IMAP/Responses/IMAPMessage.h"
#include "MCP/JSON/JSONValue.h"

namespace tarnwell {

/// Stands in a result for a text that must not leave.
inline constexpr std::string_view withheldText = "[withheld: sensitive]";

/// The nine safety settings under their own names.
JSONValue safetyJSON(const SafetySettings& settings);

/// An object with category, term and location for each signal.
JSONValue riskSignalsJSON(const std::vector<RiskSignal>& signals);

/// An object with name, email and display for each address.
JSONValue addressesJSON(const std::vector<IMAPAddress>& addresses);

/// The display form of the first sender.
std::optional<std::string> senderText(const IMAPMessage& message);

/// The short form of a message in a list of results. An absent snippet means that it is withheld.
JSONValue messageHeaderJSON(const IMAPMessage& message, const std::optional<std::string>& snippet,
                            const std::vector<RiskSignal>& signals);

}  // namespace tarnwell
