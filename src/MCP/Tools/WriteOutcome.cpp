#include "MCP/Tools/WriteOutcome.h"

#include <utility>

#include "Core/AppLogger.h"

namespace tarnwell {

namespace {

enum class Fate { blocked, dryRun, executed };

JSONValue outcome(std::string_view operation, Fate fate, SafetyMode mode, std::string_view reason,
                  JSONObject detail) {
  return JSONObject{
      {"operation", operation},         {"executed", fate == Fate::executed},
      {"dryRun", fate == Fate::dryRun}, {"blocked", fate == Fate::blocked},
      {"mode", rawValue(mode)},         {"reason", reason},
      {"detail", std::move(detail)},
  };
}

std::string_view label(const WriteDecision& decision) {
  switch (decision.kind) {
    case WriteDecision::Kind::blockedDisabled:
      return "blocked(disabled)";
    case WriteDecision::Kind::blockedReadOnly:
      return "blocked(read-only)";
    case WriteDecision::Kind::dryRun:
      return "dry-run";
    case WriteDecision::Kind::execute:
      return "execute";
  }
  return {};
}

}  // namespace

std::optional<bool> requestedDryRun(const JSONValue& arguments) {
  const JSONValue& wish = arguments["dryRun"];
  if (wish.isNull()) {
    return std::nullopt;
  }
  return wish.boolValue().value_or(true);
}

JSONValue blockedOutcome(std::string_view operation, SafetyMode mode, std::string_view reason) {
  return outcome(operation, Fate::blocked, mode, reason, {});
}

JSONValue dryRunOutcome(std::string_view operation, SafetyMode mode, JSONObject detail) {
  return outcome(operation, Fate::dryRun, mode, "Dry-run: no change was made to the mailbox.",
                 std::move(detail));
}

JSONValue executedOutcome(std::string_view operation, SafetyMode mode, JSONObject detail) {
  return outcome(operation, Fate::executed, mode, "Executed.", std::move(detail));
}

JSONValue executedMoveOutcome(std::string_view operation, SafetyMode mode, JSONObject detail,
                              MoveOutcome moveOutcome) {
  if (moveOutcome == MoveOutcome::moved) {
    detail.emplace("method", "UID MOVE");
    return executedOutcome(operation, mode, std::move(detail));
  }
  detail.emplace("method", "COPY + flag \\Deleted (no EXPUNGE)");
  detail.emplace(
      "note",
      "The server does not support MOVE, so the message was copied to the target and the original was "
      "flagged for deletion (not erased). The original stays in INBOX, marked for deletion, until a mail "
      "client finalizes it.");
  return outcome(operation, Fate::executed, mode, "Executed via the COPY + mark-deleted fallback.",
                 std::move(detail));
}

void logDecision(std::string_view operation, const WriteDecision& decision) {
  AppLogger::notice(AppLogger::Category::tool,
                    "write " + std::string(operation) + ": " + std::string(label(decision)));
}

}  // namespace tarnwell
