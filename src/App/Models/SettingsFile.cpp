#include "App/Models/SettingsFile.h"

#include <utility>

namespace tarnwell {

namespace {

QString reasonOf(const std::exception_ptr& failure) {
  try {
    std::rethrow_exception(failure);
  } catch (const std::exception& error) {
    return QString::fromUtf8(error.what());
  }
}

}  // namespace

SettingsFile::SettingsFile(ConfigStore store, QObject* parent)
    : QObject(parent), store_(std::move(store)), file_(store_.inspect()) {
  connect(&watcher_, &QFileSystemWatcher::directoryChanged, this, &SettingsFile::reload);
  watchFolder();
}

QString SettingsFile::path() const { return QString::fromStdString(store_.configURL().string()); }

int SettingsFile::change(Edit edit) {
  edit(file_.config);
  waiting_.push_back(std::move(edit));
  const int number = ++changes_;
  if (!writing_.isRunning()) {
    writeWaiting();
  }
  Q_EMIT changed();
  return number;
}

void SettingsFile::writeWaiting() {
  reading_.abandon();  // what it read is older than this change
  const int first = changes_ - static_cast<int>(waiting_.size()) + 1;
  writing_.run(
      [store = store_, edits = std::exchange(waiting_, {})] {
        store.update([&](AppConfig& config) {
          for (const Edit& edit : edits) {
            edit(config);
          }
        });
      },
      [this, first](const Outcome<void>& outcome) {
        if (outcome.failure) {
          waiting_.clear();
          Q_EMIT notSaved(reasonOf(outcome.failure), first);
        }
        if (waiting_.empty()) {
          reload();
          Q_EMIT settled();
        } else {
          writeWaiting();
        }
      });
}

void SettingsFile::reload() {
  if (isSaving()) {
    return;  // it is read again after the change
  }
  reading_.run([store = store_] { return store.inspect(); },
               [this](Outcome<ConfigStore::Inspection> outcome) {
                 watchFolder();
                 if (outcome.value) {
                   take(*std::move(outcome.value));
                 }
               });
}

void SettingsFile::take(ConfigStore::Inspection file) {
  if (file.state != file_.state || file.reason != file_.reason || file.config != file_.config) {
    file_ = std::move(file);
    Q_EMIT changed();
  }
}

/// The folder and not the file: each write puts a new file in the place of the old one. The folder may appear
/// later than this program starts.
void SettingsFile::watchFolder() {
  const QString folder = QString::fromStdString(store_.configURL().parent_path().string());
  if (!watcher_.directories().contains(folder)) {
    watcher_.addPath(folder);
  }
}

}  // namespace tarnwell
