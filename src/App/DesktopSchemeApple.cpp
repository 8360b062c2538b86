#include <QGuiApplication>
#include <QStyleHints>

#include "App/DesktopScheme.h"

namespace tarnwell {

/// The widgets are the system's own here. Qt knows the scheme since 6.5. Before, the palette at the start
/// tells it; later the palette is the theme's own.
DesktopScheme::DesktopScheme(QObject* parent) : QObject(parent) {
#if QT_VERSION >= QT_VERSION_CHECK(6, 5, 0)
  const auto read = [this] {
    const bool isDark = QGuiApplication::styleHints()->colorScheme() == Qt::ColorScheme::Dark;
    set(isDark ? Scheme::dark : Scheme::light);
  };
  read();
  connect(QGuiApplication::styleHints(), &QStyleHints::colorSchemeChanged, this, read);
#else
  const bool isDark = QGuiApplication::palette().color(QPalette::Window).lightness() < 128;
  set(isDark ? Scheme::dark : Scheme::light);
#endif
}

void DesktopScheme::take(const QVariant& /*answer*/) {}

void DesktopScheme::takeSignal(const QDBusMessage& /*message*/) {}

}  // namespace tarnwell
