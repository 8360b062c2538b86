#pragma once

/// Text for another program, with a button that copies all of it.
///
///     auto* const block = new CopyBlock;
///     block->setAccessibleLabel(tr("Address of the endpoint"));
///     block->setText(address);

#include <QFrame>
#include <QPushButton>
#include <QString>
#include <QTimer>
#include <functional>

#include "App/Widgets/CodeText.h"

namespace tarnwell {

class CopyBlock : public QFrame {
  Q_OBJECT

 public:
  explicit CopyBlock(QWidget* parent = nullptr);

  /// Plain text. The same text again leaves cursor and selection where they are.
  void setText(const QString& text);
  /// For a text that could deceive the eye. `copied` makes what the button copies when it is pressed.
  void setText(const QString& shown, std::function<QString()> copied);
  /// For a text with something secret. Programs that keep what was copied are asked not to keep it.
  void setSecretText(const QString& shown, std::function<QString()> copied);
  /// What is seen.
  QString text() const { return text_; }

  /// What a screen reader calls the text, and says after "Copy" at the button.
  void setAccessibleLabel(const QString& label);

  QPushButton* copyButton() const { return copy_; }
  CodeText* code() const { return code_; }

 protected:
  void changeEvent(QEvent* event) override;

 private:
  void copy();
  void setTexts();

  CodeText* code_;
  QPushButton* copy_;
  std::function<QString()> copied_;
  QString text_;  // a text field would give line ends back in another form
  QString label_;
  QTimer sinceCopied_;
};

}  // namespace tarnwell
