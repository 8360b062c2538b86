#pragma once

/// The language of the app, where its files are, and the diagnostics.
///
///     connect(&about, &AboutModel::diagnosed, ...);   // takes the text
///     about.diagnose({.platform = "xcb", .isDark = true});
///
/// Threads: that of the window.

#include <QObject>
#include <optional>

#include "App/Models/BackgroundTask.h"
#include "App/Models/Diagnostics.h"
#include "App/Models/SettingsFile.h"
#include "Core/KeychainStore.h"

namespace tarnwell {

class AboutModel : public QObject {
  Q_OBJECT

 public:
  AboutModel(SettingsFile& settings, KeychainStore passwords, QObject* parent = nullptr);

  QString version() const;

  /// Absent: that of the system.
  std::optional<AppLanguage> language() const { return settings_.config().language; }
  void setLanguage(std::optional<AppLanguage> language);

  /// With "~" for the person's home directory.
  QString settingsPath() const;
  /// The service under which the password lies in the secret store.
  QString secretService() const;
  /// The command that shows the entries of this program in the log of the system.
  QString logCommand() const;

  /// Looks at everything off this thread, then tells `diagnosed`.
  void diagnose(const WindowFacts& window);
  bool isDiagnosing() const { return looking_.isRunning(); }

 Q_SIGNALS:
  void changed();
  void notSaved(const QString& reason);
  void diagnosed(const QString& text);

 private:
  SettingsFile& settings_;
  KeychainStore passwords_;
  BackgroundTask looking_;
};

}  // namespace tarnwell
