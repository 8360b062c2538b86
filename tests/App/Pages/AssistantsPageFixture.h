#pragma once

/// The page "Assistants" over a machine in memory.

#include <optional>

#include "App/Pages/AssistantsPage.h"
#include "App/Pages/AssistantsTexts.h"
#include "App/support/FakeAssistants.h"
#include "App/support/PageFixture.h"

namespace tarnwell::test {

class AssistantsPageTest : public PageTest {
 protected:
  using Step = AssistantsModel::Step;

  AssistantsPageTest() { applyTheme(*qApp, Scheme::light); }
  ~AssistantsPageTest() override { machine_->release(); }

  /// Opens the page and waits until it has looked.
  void begin() {
    beginLooking();
    ASSERT_TRUE(untilSeen());
  }
  void beginLooking() {
    settings_.emplace(store_);
    model_.emplace(*settings_, machine_.work());
    page_.emplace(*model_);
    open(*page_);
  }
  bool untilSeen() {
    return eventually([this] {
      for (const AssistantState& assistant : model_->assistants()) {
        const Step step = model_->progress(assistant.id).step;
        if (step != Step::idle && step != Step::planned) {
          return false;
        }
      }
      return !model_->isLooking();
    });
  }
  /// Presses the button of this name with a key, and waits until all has its answer.
  bool press(const QString& button, Qt::Key key = Qt::Key_Return) {
    return tabTo(button) && (test::press(key), untilSeen());
  }
  /// In the language of the page: "Cursor: Connect".
  QString button(AssistantID id) const {
    const AssistantState& state = machine_[id];
    return AssistantsTexts::name(state) + ": " + AssistantsTexts::action(AssistantsModel::action(state));
  }
  QString confirm(AssistantID id) const { return AssistantsTexts::confirm(model_->progress(id)); }
  QString offer(AssistantID id) const {
    return AssistantsTexts::name(machine_[id]) + ": " + AssistantsTexts::offer(model_->progress(id));
  }

  static QString focused() { return nameOf(QApplication::focusWidget()); }
  /// Without the places where a path may be broken.
  QString shown() const { return test::shown(*page_).remove(QChar(0x200B)); }
  /// What stands in the block or the difference that has the focus.
  static QString code() {
    const auto* const text = qobject_cast<QPlainTextEdit*>(QApplication::focusWidget());
    return text ? text->toPlainText() : QString();
  }

  FakeAssistants machine_;
  std::optional<SettingsFile> settings_;
  std::optional<AssistantsModel> model_;
  std::optional<AssistantsPage> page_;
};

class AssistantsPageIn : public AssistantsPageTest, public testing::WithParamInterface<AppLanguage> {
 protected:
  AssistantsPageIn() { language_.choose(GetParam()); }
};

}  // namespace tarnwell::test
