#pragma once

/// The look of the app: two schemes of colours, and a style sheet made from them.
///
/// Pages name no colour. A widget that paints takes the colours of its palette, or a tone for what a palette
/// has no role for. Text keeps a contrast of at least 4.5 to every ground that it stands on (WCAG 2.2,
/// success criterion 1.4.3).
///
/// Threads: that of the window.

#include <QApplication>
#include <QColor>
#include <QLabel>
#include <QPalette>
#include <QPushButton>
#include <QString>

namespace tarnwell {

enum class Scheme { light, dark };

QPalette paletteOf(Scheme scheme);
/// The scheme that a palette belongs to.
Scheme schemeOf(const QPalette& palette);
QString styleSheetOf(Scheme scheme);

/// Gives the application this scheme. Every widget gets a PaletteChange event.
void applyTheme(QApplication& application, Scheme scheme);

/// What a text or a mark means.
enum class Tone { text, faint, accent, success, warning, error };

/// The colour of the tone in the scheme that the palette belongs to.
QColor toneColour(Tone tone, const QPalette& palette);

/// A label that keeps its tone when the scheme changes. Breaks its lines between words.
class ToneLabel : public QLabel {
  Q_OBJECT

 public:
  explicit ToneLabel(Tone tone = Tone::text, QWidget* parent = nullptr);
  void setTone(Tone tone);

 protected:
  void changeEvent(QEvent* event) override;

 private:
  void colour();

  Tone tone_;
  QColor link_;
};

/// The button that a page is about.
void makePrimary(QPushButton* button);
/// A button whose effect cannot be taken back.
void makeDangerous(QPushButton* button);
/// Steps back from the button beside it.
void makeQuiet(QPushButton* button);

}  // namespace tarnwell
