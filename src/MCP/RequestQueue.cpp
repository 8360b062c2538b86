#include "MCP/RequestQueue.h"

#include <string>
#include <utility>
#include <variant>

#include "Core/AppLogger.h"
#include "MCP/CurrentRevision.h"
#include "MCP/Tools/LogText.h"
#include "MCP/Tools/ToolName.h"

namespace tarnwell {

namespace {

bool canNameARequest(const JSONValue& id) {
  return std::holds_alternative<std::string>(id.payload()) ||
         std::holds_alternative<std::int64_t>(id.payload()) || std::holds_alternative<double>(id.payload());
}

bool isWritingCall(const JSONRPCRequest& request) {
  if (request.method != "tools/call" || !request.params) {
    return false;
  }
  const std::optional<std::string> name = (*request.params)["name"].stringValue();
  const std::optional<ToolName> tool = name ? toolName(*name) : std::nullopt;
  return tool && changesMailbox(*tool);
}

bool isCurrent(const std::optional<JSONRPCRequest>& request) {
  return request && CurrentRevision::isClaimedBy(*request);
}

void logTakenOut(const JSONRPCRequest& request) {
  const std::optional<std::string> tool = request.params ? (*request.params)["name"].stringValue() : "";
  AppLogger::info(AppLogger::Category::mcp,
                  "cancelled by the client before it began: " + loggable(tool.value_or("")));
}

}  // namespace

void RequestQueue::awaitRoom(std::size_t bytes) {
  std::unique_lock lock(mutex_);
  changed_.wait(lock, [this, bytes] {
    return unfinishedBytes_ == 0 ||
           (waiting_.size() < bounds_.count && unfinishedBytes_ + bytes <= bounds_.bytes);
  });
}

void RequestQueue::push(std::optional<JSONRPCRequest> request, std::size_t bytes) {
  const std::lock_guard lock(mutex_);
  if (request && request->method == "notifications/cancelled") {
    return cancel(*request);
  }
  waiting_.push_back({.request = std::move(request), .bytes = bytes});
  unfinishedBytes_ += bytes;
  changed_.notify_all();
}

/// Deliberate: also with an id, which a notification should not have. The client does not want the change.
void RequestQueue::cancel(const JSONRPCRequest& cancellation) {
  const JSONValue* id = cancellation.params ? cancellation.params->member("requestId") : nullptr;
  if (!id || !canNameARequest(*id)) {
    return;
  }
  if (begun_.id == *id) {
    begun_.cancellation.cancel();
  }
  std::erase_if(waiting_, [this, id](const Message& message) {
    const bool isCancelled = message.request && message.request->id == *id &&
                             (isCurrent(message.request) || isWritingCall(*message.request));
    if (isCancelled) {
      unfinishedBytes_ -= message.bytes;
      logTakenOut(*message.request);
    }
    return isCancelled;
  });
}

void RequestQueue::end() {
  const std::lock_guard lock(mutex_);
  isEnded_ = true;
  if (begun_.id) {
    begun_.cancellation.cancel();
  }
  for (const Message& message : waiting_) {
    if (isCurrent(message.request)) {
      message.cancellation.cancel();
    }
  }
  changed_.notify_all();
}

std::optional<RequestQueue::Message> RequestQueue::next() {
  std::unique_lock lock(mutex_);
  unfinishedBytes_ -= std::exchange(begun_, {}).bytes;
  changed_.notify_all();
  changed_.wait(lock, [this] { return !waiting_.empty() || isEnded_; });
  if (waiting_.empty()) {
    return std::nullopt;
  }
  Message message = std::move(waiting_.front());
  waiting_.pop_front();
  begun_ = {.id = isCurrent(message.request) ? message.request->id : std::nullopt,
            .bytes = message.bytes,
            .cancellation = message.cancellation};
  changed_.notify_all();
  return message;
}

}  // namespace tarnwell
