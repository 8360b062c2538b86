#pragma once

/// Text for a program, such as a command or a part of a file: monospace, read-only, lines unbroken.
///
/// It is as high as its lines, up to a bound; what is more, or wider, is scrolled. Keys move a cursor in it
/// and select, and Tab leaves it.

#include <QPlainTextEdit>

namespace tarnwell {

class CodeText : public QPlainTextEdit {
  Q_OBJECT

 public:
  explicit CodeText(QWidget* parent = nullptr);

  /// The most lines that are seen at once: 12 unless this says otherwise.
  void setMostLines(int lines);

 protected:
  void resizeEvent(QResizeEvent* event) override;
  void showEvent(QShowEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  void fitHeight();

  int mostLines_ = 12;
};

}  // namespace tarnwell
