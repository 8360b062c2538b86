#pragma once

/// What a search of the inbox asks for. An absent field, and an empty text, asks for nothing.
/// Threads: plain values.

#include <optional>
#include <string>

#include "Core/ISO8601.h"

namespace tarnwell {

struct IMAPSearchCriteria {
  /// Anywhere in the message, header and body.
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
