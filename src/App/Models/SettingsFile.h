#pragma once

/// The settings as the pages see them. Follows the file: a change by another program shows by itself.
///
///     settings.change([](AppConfig& config) { config.safety.allowTrash = true; });
///
/// A change shows at once and is written off this thread, after the changes before it. Each write reads the
/// file afresh (`ConfigStore::update`), so it overwrites only what the change means.
///
/// Threads: that of the window.

#include <QFileSystemWatcher>
#include <QObject>
#include <QString>
#include <functional>
#include <vector>

#include "App/Models/BackgroundTask.h"
#include "Core/ConfigStore.h"

namespace tarnwell {

class SettingsFile : public QObject {
  Q_OBJECT

 public:
  /// Reads the file before it returns: a window has nothing to show without it.
  explicit SettingsFile(ConfigStore store, QObject* parent = nullptr);

  const AppConfig& config() const { return file_.config; }
  ConfigStore::FileState state() const { return file_.state; }
  /// Why the file is damaged or untrusted, in a few English words. Otherwise empty.
  QString reason() const { return QString::fromStdString(file_.reason); }
  /// Where the file is.
  QString path() const;
  const ConfigStore& store() const { return store_; }

  using Edit = std::function<void(AppConfig&)>;
  /// Returns the number of the change, by which `notSaved` names it. The first is 1.
  int change(Edit edit);

  /// Reads the file again, off this thread.
  void reload();

  /// True while a change is not yet in the file.
  bool isSaving() const { return writing_.isRunning() || !waiting_.empty(); }

 Q_SIGNALS:
  /// What `config`, `state` or `reason` say has changed.
  void changed();
  /// All changes are in the file, or could not be written.
  void settled();
  /// The changes from this one on could not be written, for this reason. `config` shows the file again.
  void notSaved(const QString& reason, int first);

 private:
  void writeWaiting();
  void take(ConfigStore::Inspection file);
  void watchFolder();

  ConfigStore store_;
  ConfigStore::Inspection file_;
  QFileSystemWatcher watcher_;
  std::vector<Edit> waiting_;
  int changes_ = 0;
  BackgroundTask writing_;
  BackgroundTask reading_;
};

}  // namespace tarnwell
