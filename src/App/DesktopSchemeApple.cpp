#include <QGuiApplication>

#include "App/DesktopScheme.h"

namespace tarnwell {

/// The widgets are the system's own here, and take its colours by themselves. The scheme only chooses the
/// tones.
DesktopScheme::DesktopScheme(QObject* parent) : QObject(parent) {
  const auto read = [this] {
    const bool isDark = QGuiApplication::palette().color(QPalette::Window).lightness() < 128;
    set(isDark ? Scheme::dark : Scheme::light);
  };
  read();
  connect(qGuiApp, &QGuiApplication::paletteChanged, this, read);
}

void DesktopScheme::take(const QVariant& /*answer*/) {}

void DesktopScheme::takeSignal(const QDBusMessage& /*message*/) {}

}  // namespace tarnwell
