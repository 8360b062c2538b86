/// Light and dark as the settings portal tells it, over a real bus with a portal of the test's own.

#include <gtest/gtest.h>

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QDBusVirtualObject>
#include <QSignalSpy>
#include <QTest>

#include "App/DesktopScheme.h"
#include "integration/PrivateKeyring.h"
#include "support/ScopedEnvironment.h"

namespace tarnwell::test {
namespace {

const QString path = QStringLiteral("/org/freedesktop/portal/desktop");
const QString settings = QStringLiteral("org.freedesktop.portal.Settings");

/// Answers "Read" with a scheme, wrapped as often as the portal of some desktop does.
class Portal : public QDBusVirtualObject {
 public:
  Portal(const QString& address, unsigned scheme, int wraps)
      : bus_(QDBusConnection::connectToBus(address, QStringLiteral("portal"))),
        scheme_(scheme),
        wraps_(wraps) {
    bus_.registerVirtualObject(path, this);
    EXPECT_TRUE(bus_.registerService(QStringLiteral("org.freedesktop.portal.Desktop")));
  }
  Portal(const Portal&) = delete;
  Portal& operator=(const Portal&) = delete;
  ~Portal() override {
    bus_.unregisterObject(path);
    QDBusConnection::disconnectFromBus(QStringLiteral("portal"));
  }

  void change(const QString& group, const QString& key, unsigned scheme) {
    QDBusMessage signal = QDBusMessage::createSignal(path, settings, QStringLiteral("SettingChanged"));
    signal << group << key << QVariant::fromValue(QDBusVariant(scheme));
    EXPECT_TRUE(bus_.send(signal));
  }

  QString introspect(const QString& /*path*/) const override { return {}; }

  bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override {
    QVariant value(scheme_);
    for (int wrap = 0; wrap < wraps_; ++wrap) {
      value = QVariant::fromValue(QDBusVariant(value));
    }
    wasAsked = message.arguments() == QVariantList{"org.freedesktop.appearance", "color-scheme"};
    return connection.send(message.createReply(value));
  }

  bool wasAsked = false;

 private:
  QDBusConnection bus_;
  unsigned scheme_;
  int wraps_;
};

/// The bus of the session is the private one. One for the whole program: Qt connects to it once.
const PrivateBus& sessionBus() {
  static const PrivateBus bus;
  static const ScopedEnvironment environment(
      ScopedEnvironment::Variables{{"DBUS_SESSION_BUS_ADDRESS", bus.address()}});
  return bus;
}

class DesktopSchemeTest : public testing::Test {
 protected:
  static bool becomes(const DesktopScheme& desktop, Scheme scheme) {
    return QTest::qWaitFor([&] { return desktop.scheme() == scheme; }, 10'000);
  }

  QString address = QString::fromStdString(sessionBus().address());
};

TEST_F(DesktopSchemeTest, darkIsToldAtTheStart) {
  for (const int wraps : {1, 2}) {
    SCOPED_TRACE(wraps);
    const Portal portal(address, 1, wraps);
    const DesktopScheme desktop;
    EXPECT_TRUE(becomes(desktop, Scheme::dark));
    EXPECT_TRUE(portal.wasAsked);
  }
}

TEST_F(DesktopSchemeTest, changeIsFollowedAtOnce) {
  Portal portal(address, 2, 1);
  const DesktopScheme desktop;
  const QSignalSpy changed(&desktop, &DesktopScheme::changed);
  ASSERT_TRUE(QTest::qWaitFor([&] { return portal.wasAsked; }, 10'000));
  portal.change("org.freedesktop.appearance", "color-scheme", 1);
  EXPECT_TRUE(becomes(desktop, Scheme::dark));
  portal.change("org.freedesktop.appearance", "accent-color", 2);
  portal.change("org.gnome.desktop.interface", "color-scheme", 2);
  portal.change("org.freedesktop.appearance", "color-scheme", 0);
  EXPECT_TRUE(becomes(desktop, Scheme::light));
  EXPECT_EQ(changed.count(), 2);
}

TEST_F(DesktopSchemeTest, withoutAPortalTheDesktopIsLight) {
  const DesktopScheme desktop;
  const QSignalSpy changed(&desktop, &DesktopScheme::changed);
  QTest::qWait(100);  // longer than the bus needs to say that there is no portal
  EXPECT_EQ(desktop.scheme(), Scheme::light);
  EXPECT_EQ(changed.count(), 0);
}

}  // namespace
}  // namespace tarnwell::test
