#include "App/Models/Language.h"

#include <QCoreApplication>
#include <QLibraryInfo>
#include <QLocale>
#include <string_view>

namespace tarnwell {

void Language::choose(std::optional<AppLanguage> language) {
  const AppLanguage wanted = language.value_or(systemDefaultLanguage());
  if (wanted == spoken_) {
    return;
  }
  spoken_ = wanted;
  const std::string_view raw = rawValue(wanted);
  const QString code = QString::fromUtf8(raw.data(), static_cast<qsizetype>(raw.size()));
  QLocale::setDefault(QLocale(code));
  QCoreApplication::removeTranslator(&app_);
  QCoreApplication::removeTranslator(&qt_);
  // English has a file too: it holds the plural forms.
  load(app_, QStringLiteral("app_") + code, QStringLiteral(":/i18n"));
  load(qt_, QStringLiteral("qtbase_") + code, QLibraryInfo::path(QLibraryInfo::TranslationsPath));
}

void Language::load(QTranslator& translator, const QString& name, const QString& directory) {
  if (translator.load(name, directory)) {
    QCoreApplication::installTranslator(&translator);
  }
}

}  // namespace tarnwell
