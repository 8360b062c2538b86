#pragma once

/// Text for a program, such as a command or a part of a file: monospace, read-only, lines unbroken.
///
/// It is as high as its lines, up to a bound; what is more, or wider, is scrolled.

#include <QMimeData>

#include "App/Widgets/FittedText.h"

namespace tarnwell {

class CodeText : public FittedText {
  Q_OBJECT

 public:
  explicit CodeText(QWidget* parent = nullptr);

  /// The most lines that are seen at once: 12 unless this says otherwise.
  void setMostLines(int lines);

  /// Programs that keep what was copied or selected are asked not to keep what is in here.
  void setSecret(bool isSecret) { isSecret_ = isSecret; }
  /// Asks so for this copy, when the text is secret.
  void mark(QMimeData& copied) const;

 protected:
  QMimeData* createMimeDataFromSelection() const override;
  qreal linesHeight() const override;
  void changeEvent(QEvent* event) override;

 private:
  void placeTabStops();

  int mostLines_ = 12;
  bool isSecret_ = false;
};

}  // namespace tarnwell
