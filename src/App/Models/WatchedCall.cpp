#include "App/Models/WatchedCall.h"

#include <string>
#include <utility>

namespace tarnwell {

namespace {

/// For what `MCPTools` does not turn into a result, such as a lack of memory.
ToolCall failed(ToolName tool) {
  ToolCall call{
      .tool = tool,
      .result = ToolCallResult::error("Internal error while running " + std::string(rawValue(tool)) + ".")};
  call.answer = call.result.text();
  return call;
}

}  // namespace

WatchedCall::WatchedCall(const SettingsFile& settings) : settings_(settings) {
  QObject::connect(&settings_, &SettingsFile::settled, &receiver_, [this] {
    if (const auto begin = std::exchange(waiting_, {})) {
      begin();
    }
  });
}

void WatchedCall::begin(const ReadOnlyTools& tools, ToolName tool, JSONObject arguments,
                        std::function<void(ToolCall)> done, Progressed progressed) {
  giveUp();
  cancellation_ = Cancellation();
  CallWatch watch{.cancellation = cancellation_};
  if (progressed) {
    using Step = std::pair<std::int64_t, std::int64_t>;
    watch.progressed = [report = task_.reporter<Step>([progressed = std::move(progressed)](Step step) {
      progressed(step.first, step.second);
    })](std::int64_t read, std::int64_t total) { report({read, total}); };
  }
  waiting_ = [=, this, arguments = std::move(arguments), watch = std::move(watch), done = std::move(done)] {
    task_.run(
        [=] { return tools.call(tool, arguments, watch); },
        [=](Outcome<ToolCall> outcome) { done(outcome.value ? *std::move(outcome.value) : failed(tool)); });
  };
  if (!settings_.isSaving()) {
    std::exchange(waiting_, {})();
  }
}

void WatchedCall::giveUp() {
  waiting_ = {};
  cancellation_.cancel();
  task_.abandon();
}

}  // namespace tarnwell
