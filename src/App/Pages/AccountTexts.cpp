#include "App/Pages/AccountTexts.h"

#include <QCoreApplication>

namespace tarnwell::AccountTexts {

namespace {

struct Words {
  Q_DECLARE_TR_FUNCTIONS(tarnwell::AccountTexts)
};

using Obstacle = AccountModel::Obstacle;

/// Where passwords are kept on a desktop whose program for that does not run.
QString keeperOfPasswords() {
  const QString desktop = qEnvironmentVariable("XDG_CURRENT_DESKTOP");
  return desktop.split(QLatin1Char(':')).contains(QLatin1String("KDE"))
             ? Words::tr(
                   "No program keeps passwords in this session. Turn on KWallet in the system settings, or "
                   "install the package gnome-keyring. Then log out and in again.")
             : Words::tr(
                   "No program keeps passwords in this session. Install the package gnome-keyring, then log "
                   "out and in again.");
}

QString signInRefused(const Provider* provider) {
  if (provider == nullptr) {
    return Words::tr(
        "The server does not accept this name and password. Many providers want an app password instead of "
        "the "
        "ordinary one.");
  }
  const QString name =
      QString::fromUtf8(provider->name.data(), static_cast<qsizetype>(provider->name.size()));
  if (provider->loginName != Provider::LoginName::address) {
    return Words::
        tr("%1 does not accept this name and password. Its name for signing in is not the address; see the "
           "hints at the fields.")
            .arg(name);
  }
  return Words::tr("%1 does not accept this address and password. See the hint at the password.").arg(name);
}

}  // namespace

QStringList welcome() {
  return {Words::tr("Tarnwell lets an assistant look into one mailbox of yours, through this computer."),
          Words::tr("At first it may only read, and mail with codes and account links stays closed to it."),
          Words::tr("Type your account here, test the connection, save it: then connect your assistant.")};
}

QStringList stages() {
  return {Words::tr("Server found"), Words::tr("Secure connection"), Words::tr("Sign in"),
          Words::tr("Inbox")};
}

QString obstacle(Obstacle obstacle) {
  switch (obstacle) {
    case Obstacle::emailMissing:
      return Words::tr("Begin with your e-mail address.");
    case Obstacle::emailWrong:
      return Words::tr("The e-mail address is not complete yet.");
    case Obstacle::hostMissing:
      return Words::tr("The name of the mail server is missing.");
    case Obstacle::hostWrong:
      return Words::tr("The name of the mail server is not right yet.");
    case Obstacle::portWrong:
      return Words::tr("The port is not right yet.");
    case Obstacle::passwordMissing:
      return Words::tr("The password is missing.");
    case Obstacle::none:
    case Obstacle::busy:
    case Obstacle::takesNoPassword:
    case Obstacle::fileUntrusted:
    case Obstacle::nothingToSave:
    case Obstacle::nothingToRemove:
      break;
  }
  return {};
}

QString news(const AccountNews& news) {
  using Kind = AccountNews::Kind;
  switch (news.kind) {
    case Kind::none:
      break;
    case Kind::testSucceeded:
      return Words::tr("The connection works.");
    case Kind::testCancelled:
      return Words::tr("The test was stopped.");
    case Kind::hostNotFound:
      return Words::tr(
          "The mail server was not found. Check its name for typing errors, and that this computer is "
          "online.");
    case Kind::notReachable:
      return Words::tr("The mail server does not answer at this port. Check the port; mostly it is 993.");
    case Kind::certificateRefused:
      return Words::tr(
          "The server cannot prove that it is the one you named, so nothing was sent. Check the name of the "
          "server.");
    case Kind::notSecure:
      return Words::tr(
          "There is no secure connection at this port, so nothing was sent. Check the port; mostly it is "
          "993.");
    case Kind::notIMAP:
      return Words::tr("Something answers, but no IMAP server. Check server and port.");
    case Kind::signInRefused:
      return signInRefused(news.provider);
    case Kind::inboxMissing:
      return Words::tr(
          "You are signed in, but the server does not open an inbox. Ask your provider about IMAP.");
    case Kind::tooSlow:
      return Words::tr("The server took too long to answer. Check server and port, or try again later.");
    case Kind::connectionLost:
      return Words::tr("The server closed the connection. Try again in a few minutes.");
    case Kind::testFailed:
      return Words::tr("The test could not be made. The details say why.");
    case Kind::noPassword:
      return Words::tr("No password is stored for this account. Type it and test again.");
    case Kind::saved:
      return Words::tr("The account is saved.");
    case Kind::notSaved:
      return Words::tr("The settings could not be saved. Nothing was changed; the details say why.");
    case Kind::removed:
      return Words::tr("The account is removed.");
    case Kind::notRemoved:
      return Words::tr("The account could not be removed. The details say why.");
    case Kind::keyringMissing:
      return keeperOfPasswords();
    case Kind::keyringLocked:
      return Words::tr("The keyring is locked. Unlock it and try again.");
    case Kind::keyringRefused:
      return Words::tr("The keyring refused this. Look into it with its own program, or try again.");
    case Kind::unlocked:
      return Words::tr("The keyring is unlocked.");
    case Kind::unlockDismissed:
      return Words::tr("The keyring stays locked, because its question was closed.");
    case Kind::unlockRefused:
      return Words::tr("The keyring could not be unlocked. Log out and in again, then try once more.");
  }
  return {};
}

QString keyring(KeyringState state) {
  switch (state) {
    case KeyringState::ready:
      break;
    case KeyringState::locked:
      return Words::tr(
          "The keyring is locked. No password can be stored, and an assistant cannot reach your mail.");
    case KeyringState::absent:
      return Words::tr("You have no keyring yet. Make one, and choose a password for it.");
    case KeyringState::noService:
      return keeperOfPasswords();
  }
  return {};
}

QString keyringAction(KeyringState state) {
  switch (state) {
    case KeyringState::locked:
      return Words::tr("&Unlock");
    case KeyringState::absent:
      return Words::tr("Make a &keyring");
    case KeyringState::ready:
    case KeyringState::noService:
      break;
  }
  return {};
}

QString file(const SettingsFile& settings) {
  switch (settings.state()) {
    case ConfigStore::FileState::damaged:
      return Words::tr(
          "The settings file is damaged. When you save, a copy is kept beside it, and the settings begin "
          "with the "
          "safe values.");
    case ConfigStore::FileState::untrusted:
      return Words::tr(
                 "Somebody else may have written the settings file, so it does not count and nothing can be "
                 "saved. "
                 "Remove it, or make it your own: %1")
          .arg(settings.path());
    case ConfigStore::FileState::missing:
    case ConfigStore::FileState::good:
      break;
  }
  return {};
}

Question removal() {
  return {
      .title = Words::tr("Remove the account?"),
      .text = Words::tr(
          "Tarnwell forgets the account and removes its password from the keyring. What an assistant may do "
          "goes back to the safe values. Your mail stays as it is."),
      .yes = Words::tr("Remove"),
      .no = Words::tr("Keep")};
}

}  // namespace tarnwell::AccountTexts
