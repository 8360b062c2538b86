#pragma once

/// Whether the desktop is light or dark, now and after each change.
///
/// On Linux the settings portal tells it (XDG Desktop Portal, "org.freedesktop.appearance"). Without a portal
/// the desktop counts as light. On macOS the palette of the system tells it.
///
/// Threads: that of the window. Never waits: an answer that takes time comes as a change.

#include <QObject>
#include <QVariant>

#include "App/Widgets/Theme.h"

class QDBusMessage;

namespace tarnwell {

class DesktopScheme : public QObject {
  Q_OBJECT

 public:
  explicit DesktopScheme(QObject* parent = nullptr);

  Scheme scheme() const { return scheme_; }

 Q_SIGNALS:
  void changed(tarnwell::Scheme scheme);

 private:
  void set(Scheme scheme);
  void take(const QVariant& answer);
  Q_SLOT void takeSignal(const QDBusMessage& message);

  Scheme scheme_ = Scheme::light;
};

}  // namespace tarnwell
