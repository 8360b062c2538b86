/// What stands at the fields of the account: hints and errors.

#include <QCoreApplication>

#include "App/Pages/AccountTexts.h"

namespace tarnwell::AccountTexts {

namespace {

struct Words {
  Q_DECLARE_TR_FUNCTIONS(tarnwell::AccountTexts)
};

using Finding = AccountDraft::Finding;
using Password = Provider::Password;
using LoginName = Provider::LoginName;

QString text(std::string_view plain) {
  return QString::fromUtf8(plain.data(), static_cast<qsizetype>(plain.size()));
}

QString nameOf(const Provider& provider) { return text(provider.name); }

QString link(const Provider& provider, const QString& label) {
  return QStringLiteral("<a href=\"%1\">%2</a>")
      .arg(text(provider.help).toHtmlEscaped(), label.toHtmlEscaped());
}

/// Which password the provider wants.
QString passwordSentence(const Provider& provider) {
  const QString name = nameOf(provider);
  switch (provider.password) {
    case Password::app:
      return Words::tr("%1 needs an app password, not your ordinary one.").arg(name);
    case Password::appAfterTwoStep:
      return Words::tr("%1 needs an app password, and makes one only after two-step verification is on.")
          .arg(name);
    case Password::appWithTwoStep:
      return Words::tr("%1 takes your ordinary password, or an app password if two-step verification is on.")
          .arg(name);
    case Password::ownForIMAP:
      return Words::tr("%1 has a password for mail programs alone. It is not your ordinary one.").arg(name);
    case Password::ordinary:
      return Words::tr("%1 takes the password of your mailbox.").arg(name);
    case Password::none:
      break;
  }
  return {};
}

QString linkOf(const Provider& provider) {
  if (provider.help.empty()) {
    return {};
  }
  return link(provider, provider.password == Password::ownForIMAP ? Words::tr("Where to find it")
                                                                  : Words::tr("How to make one"));
}

}  // namespace

QString finding(Finding finding, const Provider* provider) {
  switch (finding) {
    case Finding::brokenAddress:
      return Words::tr("An e-mail address looks like name@example.org.");
    case Finding::takesNoPassword:
      return Words::tr(
                 "%1 lets mail programs sign in only through the browser, not with a password. Tarnwell "
                 "cannot use "
                 "this mailbox.")
          .arg(nameOf(*provider));
    case Finding::notAHost:
      return Words::tr("The name of a server looks like imap.example.org.");
    case Finding::notAPort:
      return Words::tr("A port is a number from 1 to 65535; mail servers mostly use 993.");
    case Finding::none:
    case Finding::empty:
    case Finding::nameOnly:
      break;
  }
  return {};
}

QString emailHint(const AccountDraft& draft) {
  const Provider* const provider = draft.provider();
  const bool isName = draft.finding(AccountDraft::Field::email) == Finding::nameOnly;
  if (provider != nullptr && provider->loginName == LoginName::other && !isName) {
    return Words::tr("%1 gave you another name for mail programs. Type that name instead of the address.")
        .arg(nameOf(*provider));
  }
  if (provider != nullptr && provider->loginName == LoginName::localPart && !isName) {
    return Words::tr("%1 wants only the part before the “@” as the name. Type just that.")
        .arg(nameOf(*provider));
  }
  if (isName && (provider == nullptr || provider->loginName == LoginName::address)) {
    return Words::tr("This is a name without “@”. Most providers want the whole address.");
  }
  return isName ? QString() : Words::tr("Server and port of well-known providers are filled in.");
}

QString hostHint(const AccountDraft& draft) {
  const bool isOpen = draft.finding(AccountDraft::Field::host) == Finding::empty &&
                      draft.finding(AccountDraft::Field::email) == Finding::none;
  return isOpen ? Words::tr("This provider is not known here. Its help pages name its IMAP server.")
                : QString();
}

QString passwordLabel(const Provider* provider) {
  const bool isOther = provider != nullptr && (provider->password == Password::ownForIMAP ||
                                               provider->password == Password::ordinary);
  return isOther ? Words::tr("Mail &password") : Words::tr("App &password");
}

QString passwordHint(const Provider* provider) {
  QStringList sentences;
  if (provider != nullptr) {
    sentences = {passwordSentence(*provider).toHtmlEscaped(), linkOf(*provider)};
    if (provider->isSwitchedOnFirst) {
      sentences.append(Words::tr("First allow mail programs (IMAP) in the settings of %1.")
                           .arg(nameOf(*provider))
                           .toHtmlEscaped());
    }
  }
  sentences.append(Words::tr("It goes into your keyring and nowhere else.").toHtmlEscaped());
  sentences.removeAll(QString());
  return sentences.join(QLatin1Char(' '));
}

}  // namespace tarnwell::AccountTexts
