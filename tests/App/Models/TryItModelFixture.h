#pragma once

/// The model of the page "Try it" over a mailbox in memory.

#include <gtest/gtest.h>

#include <QSignalSpy>
#include <QTest>
#include <functional>
#include <optional>

#include "App/Models/TryItModel.h"
#include "App/support/FakeMailbox.h"
#include "support/TemporaryDirectory.h"

namespace tarnwell::test {

class TryItModelTest : public testing::Test {
 protected:
  void SetUp() override {
    mailbox.mails = {{.uid = 9},
                     {.uid = 8, .subject = "Your verification code", .body = "4711"},
                     {.uid = 7, .subject = "Welcome", .body = "4711 is your security code"}};
    store.update([](AppConfig& config) { config.email = testEmail; });
  }
  void edit(const std::function<void(AppConfig&)>& change) { store.update(change); }

  TryItModel& open() {
    settings.emplace(store);
    model.emplace(*settings, ReadOnlyTools(mailbox.tools(store)));
    return *model;
  }
  void change(const std::function<void(AppConfig&)>& edit) { settings->change(edit); }

  template <class Condition>
  static bool until(Condition condition) {
    return QTest::qWaitFor(condition, 10'000);
  }
  bool searched() {
    return until([this] { return model->state() != TryItModel::State::searching; });
  }
  void search(const TriedQuery& query = {}) {
    model->search(query);
    ASSERT_TRUE(searched());
    ASSERT_EQ(model->state(), TryItModel::State::found);
  }
  void choose(std::size_t index) {
    model->choose(index);
    ASSERT_TRUE(until([this] { return model->text().has_value(); }));
  }
  void tryChange(TriedChange change, const QString& folder = {}) {
    model->tryChange(change, folder);
    ASSERT_TRUE(until([this] { return !model->isTrying(); }));
    ASSERT_TRUE(model->outcome());
  }
  /// The arguments of the newest call of the tool.
  JSONValue argumentsOf(ToolName tool) {
    for (const ToolCall* const call : model->calls()) {
      if (call->tool == tool) {
        return (*JSONValue::decode(call->request))["arguments"];
      }
    }
    return {};
  }
  bool isEmpty() {
    return model->state() == TryItModel::State::empty && model->messages().empty() && !model->chosen() &&
           !model->text() && !model->outcome() && !model->failure() && model->folders().empty() &&
           !model->foldersFailure() && model->calls().empty() && !model->isFromBefore() &&
           model->progress().total == 0;
  }

  TemporaryDirectory directory;
  ConfigStore store{directory.path()};
  FakeMailbox mailbox;
  std::optional<SettingsFile> settings;
  std::optional<TryItModel> model;
};

}  // namespace tarnwell::test
