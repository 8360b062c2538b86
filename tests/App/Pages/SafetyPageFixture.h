#pragma once

/// The page with the safety settings over a real file.

#include <QLineEdit>
#include <functional>
#include <optional>
#include <string>

#include "App/Pages/SafetyPage.h"
#include "App/Pages/SafetyTexts.h"
#include "App/support/PageFixture.h"

namespace tarnwell::test {

class SafetyPageTest : public PageTest {
 protected:
  void begin(const std::function<void(AppConfig&)>& edit) {
    store_.update(edit);
    begin();
  }
  void begin() {
    settings_.emplace(store_);
    safety_.emplace(*settings_);
    page_.emplace(*safety_, questions_);
    open(*page_);
  }
  AppConfig saved() { return PageTest::saved(*settings_); }

  /// The control that has the focus, with what a screen reader says of it.
  static QWidget& focused() { return *QApplication::focusWidget(); }
  static bool isOn() { return qobject_cast<Switch*>(QApplication::focusWidget())->isChecked(); }
  static int number() { return qobject_cast<QSpinBox*>(QApplication::focusWidget())->value(); }
  static QString typed() { return focused().findChild<QLineEdit*>()->text(); }

  std::optional<SettingsFile> settings_;
  std::optional<SafetyModel> safety_;
  AnsweredQuestions questions_;
  std::optional<SafetyPage> page_;
};

class SafetyPageIn : public SafetyPageTest, public testing::WithParamInterface<AppLanguage> {
 protected:
  SafetyPageIn() { language_.choose(GetParam()); }
};
}  // namespace tarnwell::test
