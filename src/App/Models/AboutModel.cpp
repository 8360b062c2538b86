#include "App/Models/AboutModel.h"

#include <QSysInfo>
#include <utility>

#include "App/Models/ShownPath.h"
#include "Core/BridgeConstants.h"

namespace tarnwell {

AboutModel::AboutModel(SettingsFile& settings, KeychainStore passwords, QObject* parent)
    : QObject(parent), settings_(settings), passwords_(std::move(passwords)) {
  connect(&settings_, &SettingsFile::changed, this, &AboutModel::changed);
  connect(&settings_, &SettingsFile::notSaved, this, &AboutModel::notSaved);
}

QString AboutModel::version() const { return QString::fromUtf8(BridgeConstants::version); }

void AboutModel::setLanguage(std::optional<AppLanguage> language) {
  if (language != this->language()) {
    settings_.change([language](AppConfig& config) { config.language = language; });
  }
}

QString AboutModel::settingsPath() const { return shownPath(settings_.path()); }

QString AboutModel::secretService() const { return QString::fromUtf8(BridgeConstants::keychainService); }

QString AboutModel::logCommand() const {
  const QString subsystem = QString::fromUtf8(BridgeConstants::bundleIdentifier);
  return QSysInfo::kernelType() == QLatin1String("darwin")
             ? QStringLiteral("log show --predicate 'subsystem == \"%1\"'").arg(subsystem)
             : QStringLiteral("journalctl SUBSYSTEM=%1").arg(subsystem);
}

void AboutModel::diagnose(const WindowFacts& window) {
  Diagnostics known{.window = window,
                    .config = settings_.config(),
                    .fileState = settings_.state(),
                    .fileProblem = settings_.reason()};
  auto look = [passwords = passwords_, email = known.config.email] {
    return lookForPassword(passwords, email);
  };
  looking_.run(std::move(look),
               [this, known = std::move(known)](const Outcome<Diagnostics::Password>& outcome) mutable {
                 known.password = outcome.value.value_or(Diagnostics::Password::unreadable);
                 Q_EMIT diagnosed(known.text());
               });
}

}  // namespace tarnwell
