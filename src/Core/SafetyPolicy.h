#pragma once

/// Decides every write and limits every count. It only computes: no input or output.
///
///     SafetyPolicy policy(config.safety);
///     WriteDecision decision = policy.decide(WriteOperation::move, requestedDryRun);
///
/// Threads: an immutable value, any thread.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "Core/AppConfig.h"

namespace tarnwell {

enum class SafetyMode { readOnly, writeEnabled };

/// "read-only" or "write-enabled".
std::string_view rawValue(SafetyMode mode);

enum class WriteOperation { move, markRead, trash };

/// "move", "markRead" or "trash".
std::string_view rawValue(WriteOperation operation);
/// Absent for any other text.
std::optional<WriteOperation> writeOperation(std::string_view rawValue);

/// What an assistant reads when the operation is disabled.
std::string_view disabledRefusal(WriteOperation operation);
/// What an assistant reads when the whole program is read-only.
std::string_view readOnlyRefusal(WriteOperation operation);

/// The decision on one write.
struct WriteDecision {
  enum class Kind {
    blockedDisabled,  // the operation is disabled; `text` says so
    blockedReadOnly,  // the whole program is read-only
    dryRun,           // allowed, but only as a preview
    execute,          // allowed, to be performed
  };

  Kind kind;
  std::string text;  // only for `blockedDisabled`, else empty

  bool executes() const { return kind == Kind::execute; }
  bool isBlocked() const { return kind == Kind::blockedDisabled || kind == Kind::blockedReadOnly; }

  bool operator==(const WriteDecision&) const = default;
};

class SafetyPolicy {
 public:
  explicit SafetyPolicy(SafetySettings settings) : settings_(settings) {}

  SafetyMode mode() const;

  /// Checks read-only first, then the switch of the operation, then the request for a preview. Without a
  /// request the write is performed.
  WriteDecision decide(WriteOperation operation, std::optional<bool> requestedDryRun) const;

  /// The number of user-perceived characters that a body may have. The cap is the smaller of the setting and
  /// `bodyHardMaxChars`. A request is limited to the range from 1 to the cap. Without a request the result is
  /// the cap. A setting of 0 or less makes the cap 0 or less, which means no text.
  std::int64_t clampBodyChars(std::optional<std::int64_t> requested) const;

  /// The number of messages that one call may handle: at least 1, at most the smallest of `hardMax`,
  /// `maxFetch` and `maxMessagesPerCall`. An absent request counts as `searchLimitDefault`.
  std::int64_t clampLimit(std::optional<std::int64_t> requested, std::int64_t hardMax) const;

 private:
  SafetySettings settings_;
};

}  // namespace tarnwell
