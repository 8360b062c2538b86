#pragma once

/// One window for each user: a second start raises the window of the first and ends.
///
///     SingleInstance instance(directory);
///     if (!instance.isFirst()) { return 0; }
///     connect(&instance, &SingleInstance::startedAgain, &window, &MainWindow::raiseToFront);
///
/// A socket in a directory of the user's own tells the first of the second. A file with the process id beside
/// it decides who is first, also when two start at the same moment, and after a crash.
///
/// Deliberate: a plain socket, because Qt's own costs the start a library with twenty others after it.
///
/// Threads: that of the window.

#include <QLockFile>
#include <QObject>
#include <QSocketNotifier>
#include <QString>
#include <optional>

namespace tarnwell {

class SingleInstance : public QObject {
  Q_OBJECT

 public:
  /// Where the system keeps such files of this user until the session ends.
  static QString runtimeDirectory();

  explicit SingleInstance(const QString& directory = runtimeDirectory(), QObject* parent = nullptr);
  ~SingleInstance() override;

  /// False when another window was there and has been told.
  bool isFirst() const { return isFirst_; }

 Q_SIGNALS:
  void startedAgain();

 private:
  void listen(const QString& socket);
  void greet();
  static bool tellFirst(const QString& socket);

  QLockFile lock_;
  int listener_ = -1;
  std::optional<QSocketNotifier> notifier_;
  bool isFirst_ = true;
};

}  // namespace tarnwell
