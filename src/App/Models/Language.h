#pragma once

/// The language of the window: that of the settings, else that of the system.
///
/// Threads: that of the window.

#include <QObject>
#include <QTranslator>
#include <optional>

#include "Core/AppConfig.h"

namespace tarnwell {

class Language : public QObject {
  Q_OBJECT

 public:
  using QObject::QObject;

  /// Speaks this language from now on; absent means the system's. Every widget gets a LanguageChange event
  /// when it is another one than before.
  void choose(std::optional<AppLanguage> language);

 private:
  void load(QTranslator& translator, const QString& name, const QString& directory);

  std::optional<AppLanguage> spoken_;
  QTranslator app_;
  QTranslator qt_;  // menus of text fields, standard buttons
};

}  // namespace tarnwell
