#pragma once

/// The arrow of a box with numbers or choices, in the colours of the palette. A style sheet knows arrows only
/// as picture files, so these boxes draw their own.

#include <QPalette>
#include <QPoint>
#include <QWidget>

namespace tarnwell {

enum class Pointing { up, down };

/// Draws it around the point. Only while the widget paints itself.
void drawChevron(QWidget* widget, QPointF middle, Pointing pointing, QPalette::ColorRole colour);

}  // namespace tarnwell
