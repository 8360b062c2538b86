#pragma once

/// One setting: its name, a sentence about it, and the control at the right.
///
///     auto* const row = new SettingRow(new Switch);
///     row->setTexts(tr("Allow moving"), tr("One message may be moved out of the inbox."), refusal);

#include <QWidget>

#include "App/Widgets/Theme.h"

namespace tarnwell {

class SettingRow : public QWidget {
  Q_OBJECT

 public:
  /// Takes the control over.
  explicit SettingRow(QWidget* control, QWidget* parent = nullptr);

  QWidget* control() const { return control_; }

  /// Plain texts. `quoted` is what somebody else reads, word for word; empty: nothing is quoted.
  void setTexts(const QString& name, const QString& sentence, const QString& quoted = {});

 private:
  QWidget* control_;
  QLabel* name_;
  ToneLabel* sentence_;
  ToneLabel* quoted_;
};

}  // namespace tarnwell
