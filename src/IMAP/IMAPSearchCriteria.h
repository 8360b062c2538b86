#pragma once

/// The criteria of a search of the inbox. A field that is absent or an empty text sets no condition.
/// Threads: plain values.

#include <optional>
#include <string>

#include "Core/ISO8601.h"

namespace tarnwell {

struct IMAPSearchCriteria {
  /// Anywhere in the message, in header or body.
  std::optional<std::string> freeText{};
  bool unreadOnly = false;
  /// On or after the UTC day of this instant.
  std::optional<Instant> since{};
  /// Before the UTC day of this instant.
  std::optional<Instant> before{};
  /// In the From field.
  std::optional<std::string> from{};
  /// In the Subject field.
  std::optional<std::string> subject{};

  bool operator==(const IMAPSearchCriteria&) const = default;
};

}  // namespace tarnwell
