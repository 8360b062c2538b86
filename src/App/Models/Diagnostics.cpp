#include "App/Models/Diagnostics.h"

#include <QLocale>
#include <QStringList>
#include <QSysInfo>

#include "Core/SafetyPolicy.h"
#include "Platform/Secrets/SecretItems.h"

namespace tarnwell {

namespace {

/// The value of the variable, or "unknown".
QString environment(const char* name) { return qEnvironmentVariable(name, QStringLiteral("unknown")); }

const char* words(ConfigStore::FileState state) {
  switch (state) {
    case ConfigStore::FileState::missing:
      return "none yet";
    case ConfigStore::FileState::good:
      return "good";
    case ConfigStore::FileState::damaged:
      return "damaged";
    case ConfigStore::FileState::untrusted:
      return "set aside";
  }
  return "";
}

const char* words(Diagnostics::Password password) {
  switch (password) {
    case Diagnostics::Password::notLookedFor:
      return "not looked for, there is no account";
    case Diagnostics::Password::stored:
      return "stored";
    case Diagnostics::Password::absent:
      return "not stored";
    case Diagnostics::Password::locked:
      return "keyring locked";
    case Diagnostics::Password::noService:
      return "no keyring service";
    case Diagnostics::Password::unreadable:
      return "cannot be read";
  }
  return "";
}

QString lastTest(const AppConfig& config) {
  if (!config.lastConnectionTestDate) {
    return QStringLiteral("never");
  }
  return QLatin1String(config.lastConnectionTestSuccess.value_or(false) ? "succeeded at " : "failed at ") +
         QString::fromUtf8(formatISO8601(*config.lastConnectionTestDate));
}

}  // namespace

QString Diagnostics::text() const {
  const QString problem = fileProblem.isEmpty() ? QString() : QStringLiteral(" (%1)").arg(fileProblem);
  const QString language =
      config.language ? QString::fromUtf8(rawValue(*config.language)) : QStringLiteral("of the system");
  const QStringList lines{
      QStringLiteral("%1: %2").arg(QString::fromUtf8(BridgeConstants::productName),
                                   QString::fromUtf8(BridgeConstants::version)),
      QStringLiteral("Qt: %1").arg(QLatin1String(qVersion())),
      QStringLiteral("System: %1, %2 %3, %4")
          .arg(QSysInfo::prettyProductName(), QSysInfo::kernelType(), QSysInfo::kernelVersion(),
               QSysInfo::currentCpuArchitecture()),
      QStringLiteral("Desktop: %1, %2, platform %3, scale %4, %5")
          .arg(environment("XDG_CURRENT_DESKTOP"), environment("XDG_SESSION_TYPE"), window.platform,
               QString::number(window.scale), QLatin1String(window.isDark ? "dark" : "light")),
      QStringLiteral("Language: %1, locale %2").arg(language, QLocale::system().name()),
      QStringLiteral("Settings: %1%2, %3")
          .arg(QLatin1String(words(fileState)), problem,
               QString::fromUtf8(rawValue(SafetyPolicy(config.safety).mode()))),
      QStringLiteral("Password: %1").arg(QLatin1String(words(password))),
      QStringLiteral("Last connection test: %1").arg(lastTest(config)),
  };
  return lines.join(QLatin1Char('\n'));
}

/// Deliberate: the status alone is kept. The system's sentence for it may name the account.
Diagnostics::Password lookForPassword(const KeychainStore& passwords, const std::string& email) {
  using enum Diagnostics::Password;
  if (email.empty()) {
    return notLookedFor;
  }
  try {
    return passwords.read(email) ? stored : absent;
  } catch (const KeychainError& error) {
    switch (error.status()) {
      case SecretStatus::interactionNotAllowed:
        return locked;
      case SecretStatus::notAvailable:
        return noService;
      default:
        return unreadable;
    }
  }
}

}  // namespace tarnwell
