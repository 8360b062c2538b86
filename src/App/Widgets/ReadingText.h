#pragma once

/// A text to read and to select: plain, wrapped wherever it must, as high as it needs up to a bound, beyond
/// which it scrolls by itself. Tab leaves it.
///
/// Threads: that of the window.

#include <QPlainTextEdit>

namespace tarnwell {

class ReadingText : public QPlainTextEdit {
  Q_OBJECT

 public:
  explicit ReadingText(int mostLines, QWidget* parent = nullptr);

  /// Forgets the text before.
  void setText(const QString& text);

 protected:
  void resizeEvent(QResizeEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  void fitHeight();

  int mostLines_;
};

}  // namespace tarnwell
