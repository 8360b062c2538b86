#include "App/Widgets/ScrollAreaAccess.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QWidget>

namespace tarnwell {

namespace {

QAccessibleInterface* accessOfScrollArea(const QString& className, QObject* object) {
  if (className != QLatin1String("QScrollArea")) {
    return nullptr;  // Qt knows
  }
  return new QAccessibleWidget(static_cast<QWidget*>(object), QAccessible::Client);
}

}  // namespace

void makeScrollAreasSafeForScreenReaders() { QAccessible::installFactory(accessOfScrollArea); }

}  // namespace tarnwell
