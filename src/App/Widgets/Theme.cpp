#include "App/Widgets/Theme.h"

#include <QEvent>
#include <QStyle>
#include <QStyleFactory>

namespace tarnwell {

namespace {

/// The colours of a scheme. `...Text` stands on the colour before it.
struct Colours {
  QRgb window, base, alternate, text, faint, border, accent, accentText, success, warning, error;
};

constexpr Colours light{0xfff4f6f6, 0xffffffff, 0xfff0f3f3, 0xff1a2023, 0xff566165, 0xffc9d1d3,
                        0xff0e6973, 0xffffffff, 0xff1b6934, 0xff7d5200, 0xffa61d1d};
constexpr Colours dark{0xff1d2325, 0xff272e31, 0xff2d3538, 0xffe9edee, 0xffa9b3b7, 0xff465054,
                       0xff55b9c2, 0xff0b1f22, 0xff86d497, 0xfff2c565, 0xffff9f99};

const Colours& coloursOf(Scheme scheme) { return scheme == Scheme::light ? light : dark; }

QString name(QRgb colour) { return QColor::fromRgb(colour).name(); }

}  // namespace

Scheme schemeOf(const QPalette& palette) {
  return palette.color(QPalette::Window).lightness() < 128 ? Scheme::dark : Scheme::light;
}

QPalette paletteOf(Scheme scheme) {
  const Colours& colours = coloursOf(scheme);
  QPalette palette(QColor::fromRgb(colours.text), QColor::fromRgb(colours.window));
  const auto set = [&](QPalette::ColorRole role, QRgb colour) {
    palette.setColor(role, QColor::fromRgb(colour));
  };
  set(QPalette::Window, colours.window);
  set(QPalette::WindowText, colours.text);
  set(QPalette::Base, colours.base);
  set(QPalette::AlternateBase, colours.alternate);
  set(QPalette::Text, colours.text);
  set(QPalette::PlaceholderText, colours.faint);
  set(QPalette::Button, colours.base);
  set(QPalette::ButtonText, colours.text);
  set(QPalette::ToolTipBase, colours.base);
  set(QPalette::ToolTipText, colours.text);
  set(QPalette::Mid, colours.border);
  set(QPalette::Highlight, colours.accent);
  set(QPalette::HighlightedText, colours.accentText);
  set(QPalette::Link, colours.accent);
  set(QPalette::LinkVisited, colours.accent);
  for (const QPalette::ColorRole role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
    palette.setColor(QPalette::Disabled, role, QColor::fromRgb(colours.faint));
  }
  return palette;
}

/// Sizes are in pixels of the device-independent kind, so they grow with the scale of the screen.
QString styleSheetOf(Scheme scheme) {
  const Colours& colours = coloursOf(scheme);
  return QStringLiteral(R"(
    QLineEdit, QSpinBox, QComboBox, QPushButton, QToolButton {
      border: 1px solid @border; border-radius: 6px; background: @base;
    }
    QLineEdit, QSpinBox, QComboBox { padding: 6px 8px; min-height: 20px; }
    QPushButton { padding: 7px 16px; min-height: 18px; }
    QPushButton[quiet="true"] { background: transparent; border-color: transparent; }
    QToolButton { padding: 4px 8px; }
    QLineEdit:focus, QSpinBox:focus, QComboBox:focus, QPushButton:focus, QToolButton:focus,
    QTableView:focus, QPlainTextEdit:focus { border: 2px solid @accent; }
    QLineEdit:focus, QSpinBox:focus, QComboBox:focus { padding: 5px 7px; }
    QComboBox::drop-down { border: none; width: 26px; }
    QComboBox::down-arrow { image: none; }
    QSpinBox::up-button, QSpinBox::down-button { border: none; background: transparent; width: 22px; }
    QPushButton:focus { padding: 6px 15px; }
    QToolButton:focus { padding: 3px 7px; }
    QLineEdit[invalid="true"] { border-color: @error; }
    QPushButton:hover, QToolButton:hover { background: @alternate; }
    QPushButton:disabled, QToolButton:disabled { color: @faint; background: @window; }
    QPushButton[primary="true"] { background: @accent; color: @onAccent; border-color: @accent; font-weight: 600; }
    QPushButton[primary="true"]:focus { border-color: @text; }
    QPushButton[primary="true"]:disabled { background: @window; color: @faint; border-color: @border; }
    QPushButton[dangerous="true"] { color: @error; border-color: @error; }
    QPushButton:checked { background: @alternate; color: @accent; border-color: @accent; }
    QFrame#card { background: @base; border: 1px solid @border; border-radius: 10px; }
    QFrame#notice { background: @base; border: 1px solid @border; border-radius: 8px; }
    QListWidget#navigation { background: transparent; border: none; outline: none; }
    QListWidget#navigation::item { padding: 0 12px; border-radius: 6px; color: @text; }
    QListWidget#navigation::item:hover { background: @alternate; }
    QListWidget#navigation::item:selected { background: @accent; color: @onAccent; }
    QListWidget#navigation::item:focus { border: 2px solid @text; padding: 0 10px; }
    QTableView { background: @base; alternate-background-color: @alternate; border: 1px solid @border;
                 border-radius: 6px; gridline-color: @border; }
    QHeaderView::section { background: @window; color: @text; border: none;
                           border-bottom: 1px solid @border; padding: 5px 6px; }
    QPlainTextEdit { background: @base; border: 1px solid @border; border-radius: 6px; }
    QPlainTextEdit#code { background: @alternate; padding: 1px; }
    QPlainTextEdit#code:focus { padding: 0; }
    QPlainTextEdit#reading { background: @alternate; border-color: transparent; padding: 1px; }
    QPlainTextEdit#reading:focus { border-color: @accent; padding: 0; }
    QListView#messages { background: @base; border: 1px solid @border; border-radius: 10px; outline: none;
                         padding: 3px 0; }
    QScrollArea { background: transparent; border: none; }
    QScrollArea > QWidget > QWidget { background: transparent; }
    QCheckBox::indicator { width: 14px; height: 14px; border: 1px solid @faint; border-radius: 4px;
                           background: @base; }
    QCheckBox::indicator:checked { background: @accent; border-color: @accent; }
    QCheckBox::indicator:focus { border: 2px solid @accent; width: 12px; height: 12px; }
    QScrollBar:vertical { background: transparent; width: 12px; margin: 0; border: none; }
    QScrollBar:horizontal { background: transparent; height: 12px; margin: 0; border: none; }
    QScrollBar::handle { background: @border; border-radius: 4px; margin: 2px; }
    QScrollBar::handle:hover { background: @faint; }
    QScrollBar::handle:vertical { min-height: 32px; }
    QScrollBar::handle:horizontal { min-width: 32px; }
    QScrollBar::add-line, QScrollBar::sub-line { width: 0; height: 0; }
    QScrollBar::add-page, QScrollBar::sub-page { background: transparent; }
    QToolTip { background: @base; color: @text; border: 1px solid @border; padding: 4px; }
  )")
      .replace(QLatin1String("@window"), name(colours.window))
      .replace(QLatin1String("@base"), name(colours.base))
      .replace(QLatin1String("@alternate"), name(colours.alternate))
      .replace(QLatin1String("@text"), name(colours.text))
      .replace(QLatin1String("@faint"), name(colours.faint))
      .replace(QLatin1String("@border"), name(colours.border))
      .replace(QLatin1String("@onAccent"), name(colours.accentText))
      .replace(QLatin1String("@accent"), name(colours.accent))
      .replace(QLatin1String("@error"), name(colours.error));
}

void applyTheme(QApplication& application, Scheme scheme) {
  if (application.style()->name() != QLatin1String("fusion")) {
    QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
  }
  QApplication::setPalette(paletteOf(scheme));
  application.setStyleSheet(styleSheetOf(scheme));
}

QColor toneColour(Tone tone, const QPalette& palette) {
  const Colours& colours = coloursOf(schemeOf(palette));
  switch (tone) {
    case Tone::text:
      return QColor::fromRgb(colours.text);
    case Tone::faint:
      return QColor::fromRgb(colours.faint);
    case Tone::accent:
      return QColor::fromRgb(colours.accent);
    case Tone::success:
      return QColor::fromRgb(colours.success);
    case Tone::warning:
      return QColor::fromRgb(colours.warning);
    case Tone::error:
      return QColor::fromRgb(colours.error);
  }
  return {};
}

ToneLabel::ToneLabel(Tone tone, QWidget* parent) : QLabel(parent), tone_(tone) {
  setWordWrap(true);
  colour();
}

void ToneLabel::setTone(Tone tone) {
  tone_ = tone;
  colour();
}

/// Sets this one role only. A palette with every role set would hear of no change any more. Links got their
/// colour when the text was read, so it is read again.
void ToneLabel::colour() {
  const QPalette whole = QApplication::palette();
  const QColor colour = toneColour(tone_, whole);
  if (colour != palette().color(QPalette::WindowText)) {
    QPalette own;
    own.setColor(QPalette::WindowText, colour);
    setPalette(own);
  }
  if (const QColor link = whole.color(QPalette::Link); link != link_) {
    link_ = link;
    const QString same = text();
    clear();
    setText(same);
  }
}

void ToneLabel::changeEvent(QEvent* event) {
  QLabel::changeEvent(event);
  if (event->type() == QEvent::PaletteChange || event->type() == QEvent::ApplicationPaletteChange) {
    colour();
  }
}

void makePrimary(QPushButton* button) { button->setProperty("primary", true); }

void makeDangerous(QPushButton* button) { button->setProperty("dangerous", true); }

void makeQuiet(QPushButton* button) { button->setProperty("quiet", true); }

}  // namespace tarnwell
