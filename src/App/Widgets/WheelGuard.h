#pragma once

/// Keeps the wheel from changing a control that the pointer only passes while a page scrolls. Without the
/// focus the wheel scrolls the page.

#include <QWidget>

namespace tarnwell {

void guardFromWheel(QWidget* control);

}  // namespace tarnwell
