#pragma once

/// Decides every write and clamps every count. Pure: no input, no output, no state of its own.
///
///     SafetyPolicy policy(config.safety);
///     WriteDecision decision = policy.decide(WriteOperation::move, requestedDryRun);
///
/// Threads: an immutable value.

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

/// What becomes of one write.
struct WriteDecision {
  enum class Kind {
    blockedDisabled,  // the operation is switched off; `text` says which
    blockedReadOnly,  // the whole program is read-only
    dryRun,           // permitted, but only a preview was asked for
    execute,          // permitted and to be performed
  };

  Kind kind;
  std::string text;  // empty but for `blockedDisabled`

  bool executes() const { return kind == Kind::execute; }
  bool isBlocked() const { return kind == Kind::blockedDisabled || kind == Kind::blockedReadOnly; }

  bool operator==(const WriteDecision&) const = default;
};

class SafetyPolicy {
 public:
  explicit SafetyPolicy(SafetySettings settings) : settings_(settings) {}

  SafetyMode mode() const;

  /// Read-only beats the switches of the operations, which beat the request for a preview. An absent
  /// request means to execute.
  WriteDecision decide(WriteOperation operation, std::optional<bool> requestedDryRun) const;

  /// The user-perceived characters that a body may have. The cap is the smaller of the setting and
  /// `bodyHardMaxChars`; a request is brought between 1 and the cap. Without a request it is the cap as it
  /// is, which a setting of 0 or less makes 0 or less: no text then.
  std::int64_t clampBodyChars(std::optional<std::int64_t> requested) const;

  /// The messages that one call may handle: at least 1, at most the smallest of `hardMax`, `maxFetch`
  /// and `maxMessagesPerCall`; `searchLimitDefault` stands for an absent request.
  std::int64_t clampLimit(std::optional<std::int64_t> requested, std::int64_t hardMax) const;

 private:
  SafetySettings settings_;
};

}  // namespace tarnwell
