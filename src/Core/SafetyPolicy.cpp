#include "Core/SafetyPolicy.h"

#include <algorithm>

namespace tarnwell {
namespace {

/// All that the policy knows about one operation.
struct OperationRow {
  WriteOperation operation;
  std::string_view rawValue;
  bool SafetySettings::* allowed;
  std::string_view disabledText;
  std::string_view readOnlyText;
};

constexpr OperationRow operations[] = {
    {WriteOperation::move, "move", &SafetySettings::allowMove,
     "Folder moves are disabled in Safety settings.", "Read-only mode is on; no message was moved."},
    {WriteOperation::markRead, "markRead", &SafetySettings::allowMarkRead,
     "Mark-as-read is disabled in Safety settings.",
     "Read-only mode is on; the message was not marked as read."},
    {WriteOperation::trash, "trash", &SafetySettings::allowTrash, "Trash is disabled in Safety settings.",
     "Read-only mode is on; the message was not moved to Trash."},
};

const OperationRow& rowOf(WriteOperation operation) {
  return *std::ranges::find(operations, operation, &OperationRow::operation);
}

}  // namespace

std::string_view rawValue(SafetyMode mode) {
  return mode == SafetyMode::readOnly ? "read-only" : "write-enabled";
}

std::string_view rawValue(WriteOperation operation) { return rowOf(operation).rawValue; }

std::optional<WriteOperation> writeOperation(std::string_view rawValue) {
  const auto* const row = std::ranges::find(operations, rawValue, &OperationRow::rawValue);
  return row == std::end(operations) ? std::nullopt : std::optional(row->operation);
}

std::string_view disabledRefusal(WriteOperation operation) { return rowOf(operation).disabledText; }

std::string_view readOnlyRefusal(WriteOperation operation) { return rowOf(operation).readOnlyText; }

SafetyMode SafetyPolicy::mode() const {
  return settings_.readOnly ? SafetyMode::readOnly : SafetyMode::writeEnabled;
}

WriteDecision SafetyPolicy::decide(WriteOperation operation, std::optional<bool> requestedDryRun) const {
  // Deliberate: read-only also refuses previews. It means the same for every request.
  if (settings_.readOnly) {
    return {WriteDecision::Kind::blockedReadOnly, ""};
  }
  // Deliberate: a disabled operation gets no preview, because the preview would promise a write that is
  // refused.
  const OperationRow& row = rowOf(operation);
  if (!(settings_.*row.allowed)) {
    return {WriteDecision::Kind::blockedDisabled, std::string(row.disabledText)};
  }
  if (requestedDryRun.value_or(false)) {
    return {WriteDecision::Kind::dryRun, ""};
  }
  return {WriteDecision::Kind::execute, ""};
}

std::int64_t SafetyPolicy::clampBodyChars(std::optional<std::int64_t> requested) const {
  std::int64_t cap = std::min<std::int64_t>(settings_.maxBodyChars, BridgeConstants::bodyHardMaxChars);
  // Deliberate: without a request the cap is returned unchanged, even when it is 0 or less. Such a setting
  // means no text unless a request asks for it. Only a request is raised to 1.
  if (!requested) {
    return cap;
  }
  return std::max<std::int64_t>(1, std::min(cap, *requested));
}

std::int64_t SafetyPolicy::clampLimit(std::optional<std::int64_t> requested, std::int64_t hardMax) const {
  // Deliberate: the default is applied before the caps. A lower cap therefore wins.
  std::int64_t wanted = requested.value_or(BridgeConstants::searchLimitDefault);
  std::int64_t perCallCap = std::min(settings_.maxFetch, settings_.maxMessagesPerCall);
  return std::max<std::int64_t>(1, std::min({hardMax, perCallCap, wanted}));
}

}  // namespace tarnwell
