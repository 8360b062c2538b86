#include "App/SingleInstance.h"

#include <fcntl.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <QDir>
#include <QElapsedTimer>
#include <QStandardPaths>
#include <QThread>
#include <algorithm>

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

/// Absent when the path is too long for a socket.
std::optional<sockaddr_un> addressOf(const QString& path) {
  const QByteArray bytes = path.toLocal8Bit();
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  if (static_cast<std::size_t>(bytes.size()) >= sizeof address.sun_path) {
    return std::nullopt;
  }
  std::ranges::copy(bytes, address.sun_path);
  return address;
}

/// Not inherited by programs that the window starts, such as a browser.
int newSocket() {
  const int descriptor = ::socket(AF_UNIX, SOCK_STREAM, 0);
  ::fcntl(descriptor, F_SETFD, FD_CLOEXEC);
  return descriptor;
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
  listen(socket);
}

SingleInstance::~SingleInstance() {
  if (listener_ >= 0) {
    ::close(listener_);
  }
}

/// The directory is the user's own, so nobody else can connect. Without the socket the window works all the
/// same.
void SingleInstance::listen(const QString& socket) {
  const std::optional<sockaddr_un> address = addressOf(socket);
  if (!address) {
    return;
  }
  listener_ = newSocket();
  ::unlink(address->sun_path);
  if (::bind(listener_, reinterpret_cast<const sockaddr*>(&*address), sizeof *address) != 0 ||
      ::listen(listener_, SOMAXCONN) != 0) {
    return;
  }
  notifier_.emplace(listener_, QSocketNotifier::Read);
  connect(&*notifier_, &QSocketNotifier::activated, this, &SingleInstance::greet);
}

void SingleInstance::greet() {
  if (const int connection = ::accept(listener_, nullptr, nullptr); connection >= 0) {
    ::close(connection);
    Q_EMIT startedAgain();
  }
}

/// The connection is the whole message. The first may have the lock and not listen yet.
bool SingleInstance::tellFirst(const QString& socket) {
  const std::optional<sockaddr_un> address = addressOf(socket);
  QElapsedTimer timer;
  timer.start();
  while (address && timer.elapsed() < waitForFirst) {
    const int connection = newSocket();
    const bool isTold =
        ::connect(connection, reinterpret_cast<const sockaddr*>(&*address), sizeof *address) == 0;
    ::close(connection);
    if (isTold) {
      return true;
    }
    QThread::msleep(20);
  }
  return false;
}

}  // namespace tarnwell
