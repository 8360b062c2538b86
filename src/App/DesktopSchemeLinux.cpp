#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>

#include "App/DesktopScheme.h"

namespace tarnwell {

namespace {

const QString service = QStringLiteral("org.freedesktop.portal.Desktop");
const QString path = QStringLiteral("/org/freedesktop/portal/desktop");
const QString settings = QStringLiteral("org.freedesktop.portal.Settings");
const QString appearance = QStringLiteral("org.freedesktop.appearance");
const QString key = QStringLiteral("color-scheme");

/// The portal of some desktops wraps a value twice.
QVariant unwrapped(QVariant value) {
  while (value.canConvert<QDBusVariant>()) {
    value = value.value<QDBusVariant>().variant();
  }
  return value;
}

}  // namespace

/// The signal is taken as a whole message: with a variant as its argument the connection would fail silently.
DesktopScheme::DesktopScheme(QObject* parent) : QObject(parent) {
  QDBusConnection bus = QDBusConnection::sessionBus();
  if (!bus.isConnected()) {
    return;
  }
  bus.connect(service, path, settings, QStringLiteral("SettingChanged"), this,
              SLOT(takeSignal(QDBusMessage)));
  QDBusMessage question = QDBusMessage::createMethodCall(service, path, settings, QStringLiteral("Read"));
  question << appearance << key;
  auto* const answer = new QDBusPendingCallWatcher(bus.asyncCall(question), this);
  connect(answer, &QDBusPendingCallWatcher::finished, this, [this, answer] {
    const QDBusPendingReply<QDBusVariant> reply = *answer;
    if (reply.isValid()) {
      take(reply.value().variant());
    }
    answer->deleteLater();
  });
}

void DesktopScheme::takeSignal(const QDBusMessage& message) {
  const QList<QVariant> words = message.arguments();
  if (words.size() == 3 && words[0] == appearance && words[1] == key) {
    take(words[2]);
  }
}

/// 1 means dark, 2 means light, and 0 that the desktop has no wish.
void DesktopScheme::take(const QVariant& answer) {
  set(unwrapped(answer).toUInt() == 1 ? Scheme::dark : Scheme::light);
}

}  // namespace tarnwell
