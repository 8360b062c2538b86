#pragma once

/// Maps the answers of the freedesktop Secret Service to the status codes of `SecretItems`. Linux only.
///
/// Threads: pure functions.

#include <cstdint>
#include <optional>
#include <string_view>

namespace tarnwell {

/// The status for an error of D-Bus, of the service, or of the connection to the bus, whose name is empty.
/// Other errors give `SecretStatus::internalError`.
std::int32_t secretServiceStatus(std::string_view errorName);

/// The sentence for a status. Absent for an unknown status.
std::optional<std::string_view> secretStatusMessage(std::int32_t status);

}  // namespace tarnwell
