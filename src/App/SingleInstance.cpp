#include "App/SingleInstance.h"

#include <QDir>
#include <QElapsedTimer>
#include <QLocalSocket>
#include <QStandardPaths>
#include <QThread>

#include "Core/BridgeConstants.h"

namespace tarnwell {

namespace {

constexpr int waitForFirst = 1000;  // milliseconds

QString nameIn(const QString& directory, const char* ending) {
  const std::string_view identifier = BridgeConstants::bundleIdentifier;
  return QDir(directory).filePath(
      QString::fromUtf8(identifier.data(), static_cast<qsizetype>(identifier.size())) +
      QLatin1String(ending));
}

}  // namespace

/// Qt makes a private directory when the session has none.
QString SingleInstance::runtimeDirectory() {
  return QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation);
}

/// When the first does not answer, it hangs or is just ending: a second window is better than none.
SingleInstance::SingleInstance(const QString& directory, QObject* parent)
    : QObject(parent), lock_(nameIn(directory, ".lock")) {
  const QString socket = nameIn(directory, ".socket");
  lock_.setStaleLockTime(0);  // the process decides, not the age
  if (!lock_.tryLock(0) && lock_.error() == QLockFile::LockFailedError && tellFirst(socket)) {
    isFirst_ = false;
    return;
  }
  QLocalServer::removeServer(socket);
  server_.setSocketOptions(QLocalServer::UserAccessOption);
  server_.listen(socket);
  connect(&server_, &QLocalServer::newConnection, this, [this] {
    server_.nextPendingConnection()->deleteLater();
    Q_EMIT startedAgain();
  });
}

/// The connection is the whole message. The first may have the lock and not listen yet.
bool SingleInstance::tellFirst(const QString& socket) {
  QElapsedTimer timer;
  timer.start();
  do {
    QLocalSocket connection;
    connection.connectToServer(socket);
    if (connection.waitForConnected(waitForFirst)) {
      return true;
    }
    QThread::msleep(20);
  } while (timer.elapsed() < waitForFirst);
  return false;
}

}  // namespace tarnwell
