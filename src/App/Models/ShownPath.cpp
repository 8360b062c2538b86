#include "App/Models/ShownPath.h"

#include <QDir>

namespace tarnwell {

QString shownPath(const QString& path) {
  const QString home = QDir::homePath() + QLatin1Char('/');
  return path.startsWith(home) ? QLatin1String("~/") + path.mid(home.size()) : path;
}

}  // namespace tarnwell
