#pragma once

/// The model of the page "Assistants" over a machine in memory.

#include <gtest/gtest.h>

#include <QTest>
#include <optional>

#include "App/Models/AssistantsModel.h"
#include "App/support/FakeAssistants.h"
#include "support/TemporaryDirectory.h"

namespace tarnwell::test {

class AssistantsModelTest : public testing::Test {
 protected:
  using Step = AssistantsModel::Step;
  using Offer = AssistantsModel::Offer;

  AssistantsModelTest() { model.emplace(settings, machine.work()); }
  ~AssistantsModelTest() override { machine->release(); }

  template <class Condition>
  static bool until(Condition condition) {
    return QTest::qWaitFor(condition, 10'000);
  }
  bool look() {
    model->look();
    return untilSeen();
  }
  /// Everything has its answer, that to looking too.
  bool untilSeen() {
    return until([this] {
      for (const AssistantState& assistant : model->assistants()) {
        if (const Step now = step(assistant.id); now != Step::idle && now != Step::planned) {
          return false;
        }
      }
      return !model->isLooking();
    });
  }
  bool act(AssistantID id) {
    model->act(id);
    return untilSeen();
  }
  bool carryOut() {
    model->carryOut();
    return untilSeen();
  }
  bool undo(AssistantID id) {
    model->undo(id);
    return untilSeen();
  }

  const AssistantProgress& progress(AssistantID id) const { return model->progress(id); }
  Step step(AssistantID id) const { return progress(id).step; }
  AssistantNews::Kind news(AssistantID id) const { return progress(id).news.kind; }
  Connection connection(AssistantID id) const {
    return std::ranges::find(model->assistants(), id, &AssistantState::id)->connection;
  }

  TemporaryDirectory directory;
  ConfigStore store{directory.path()};
  SettingsFile settings{store};
  FakeAssistants machine;
  std::optional<AssistantsModel> model;
};

}  // namespace tarnwell::test
