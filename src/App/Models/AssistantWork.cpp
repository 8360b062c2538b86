#include "App/Models/AssistantWork.h"

#include <memory>
#include <mutex>

namespace tarnwell {

AssistantWork AssistantWork::on(const Machine& machine) {
  // An answer that nobody waits for any more may still be on its way.
  const auto oneAtATime = std::make_shared<std::mutex>();
  return {.find =
              [machine, oneAtATime] {
                const std::lock_guard lock(*oneAtATime);
                return findAssistants(machine);
              },
          .plan =
              [machine, oneAtATime](AssistantID id, ConnectionPlan::Goal goal) {
                const std::lock_guard lock(*oneAtATime);
                return tarnwell::plan(machine, id, goal);
              },
          .carryOut =
              [machine, oneAtATime](const ConnectionPlan& planned) {
                const std::lock_guard lock(*oneAtATime);
                return tarnwell::carryOut(machine, planned);
              },
          .undo =
              [machine, oneAtATime](const ConnectionDone& done) {
                const std::lock_guard lock(*oneAtATime);
                tarnwell::undo(machine, done);
              },
          .helper = machine.helper};
}

}  // namespace tarnwell
