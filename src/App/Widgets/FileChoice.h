#pragma once

/// Asks the person where to save a file.
///
///     files.askWhereToSave(this, tr("Save the log"), "tarnwell.txt", [this](const QString& path) { ... });
///
/// An interface, so that a test can answer.
///
/// Threads: that of the window. Never waits: the answer comes later, or never when the person changes their
/// mind or the window goes away.

#include <QString>
#include <QWidget>
#include <functional>

namespace tarnwell {

class FileChoice {
 public:
  virtual ~FileChoice() = default;
  /// `name` is proposed as the file's name.
  virtual void askWhereToSave(QWidget* parent, const QString& title, const QString& name,
                              std::function<void(const QString& path)> chosen) = 0;
};

/// Asks with the system's own dialog.
class DialogFileChoice : public FileChoice {
 public:
  void askWhereToSave(QWidget* parent, const QString& title, const QString& name,
                      std::function<void(const QString& path)> chosen) override;
};

}  // namespace tarnwell
