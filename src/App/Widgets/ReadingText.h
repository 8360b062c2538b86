#pragma once

/// A text to read and to select: plain, wrapped wherever it must, as high as it needs up to a bound, beyond
/// which it scrolls by itself.
///
/// Threads: that of the window.

#include "App/Widgets/FittedText.h"

namespace tarnwell {

class ReadingText : public FittedText {
  Q_OBJECT

 public:
  explicit ReadingText(int mostLines, QWidget* parent = nullptr);

  /// Forgets the text before.
  void setText(const QString& text);

 protected:
  qreal linesHeight() const override;

 private:
  int mostLines_;
  QString text_;  // a text field would give some blanks and line ends back in another form
};

}  // namespace tarnwell
