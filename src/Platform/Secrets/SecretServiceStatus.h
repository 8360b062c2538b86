#pragma once

/// What the freedesktop Secret Service answers, in the status codes of `SecretItems`. Linux only.
///
/// Threads: pure functions.

#include <cstdint>
#include <optional>
#include <string_view>

namespace tarnwell {

/// The status for an error of D-Bus, of the service, or of the connection to the bus, which has no name. An
/// error that is not in the table gives `SecretStatus::internalError`.
std::int32_t secretServiceStatus(std::string_view errorName);

/// The sentence for a status; absent for one that the table does not have.
std::optional<std::string_view> secretStatusMessage(std::int32_t status);

}  // namespace tarnwell
