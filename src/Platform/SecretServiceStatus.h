#pragma once

/// What the freedesktop Secret Service answers, in the status codes of `SecretItems`. Linux only.
///
/// Threads: pure functions.

#include <cstdint>
#include <optional>
#include <string_view>

namespace tarnwell {

/// The status for an error of GLib, GDBus or libsecret, which is known by its domain and its code. An
/// error that is not in the table gives `SecretStatus::internalError`.
std::int32_t secretServiceStatus(std::string_view domain, int code);

/// The sentence for a status; absent for one that the table does not have.
std::optional<std::string_view> secretStatusMessage(std::int32_t status);

}  // namespace tarnwell
