#pragma once

/// A text to read and to select that is as high as its lines. Keys move a cursor in it, and Tab leaves it.
///
/// A class below says how high the lines are that are to be seen at once. It fits the height itself when that
/// changes; a change of the size or the font is seen to here.

#include <QPlainTextEdit>

namespace tarnwell {

class FittedText : public QPlainTextEdit {
  Q_OBJECT

 protected:
  explicit FittedText(QWidget* parent);

  virtual qreal linesHeight() const = 0;
  void fitHeight();

  void resizeEvent(QResizeEvent* event) override;
  void showEvent(QShowEvent* event) override;
  void changeEvent(QEvent* event) override;
};

}  // namespace tarnwell
