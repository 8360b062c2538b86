#pragma once

/// Small pictures, drawn and not loaded: sharp on every screen and in any colour.
///
///     paintMark(painter, {x, y, 16, 16}, Mark::shield, toneColour(Tone::warning, palette));
///     row->addWidget(new MarkLabel(Mark::shield, Tone::warning));
///
/// A mark never stands alone: words beside it say the same, so screen readers pass over it.
///
/// Threads: that of the window.

#include <QPainter>
#include <QWidget>

#include "App/Widgets/Theme.h"

namespace tarnwell {

enum class Mark {
  shield,      // withheld
  tick,        // handed out, allowed
  attachment,  // a paper clip
  unread,      // a dot
};

/// Fills the square.
void paintMark(QPainter& painter, const QRectF& square, Mark mark, const QColor& colour);

class MarkLabel : public QWidget {
  Q_OBJECT

 public:
  MarkLabel(Mark mark, Tone tone, int size = 20, QWidget* parent = nullptr);
  void setMark(Mark mark, Tone tone);
  Mark mark() const { return mark_; }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  Mark mark_;
  Tone tone_;
};

}  // namespace tarnwell
