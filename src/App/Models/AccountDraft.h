#pragma once

/// What stands in the fields of the account: as typed, what is wrong with it, and which provider it means.
///
///     AccountDraft draft;
///     draft.setEmail("anna@icloud.com");
///     draft.host();                        // "imap.mail.me.com"
///     draft.finding(AccountDraft::Field::port);
///
/// The password is not here: it goes from its field to the keyring.
///
/// Threads: a plain value.

#include <QString>

#include "Account/AccountSetup.h"
#include "Account/Providers.h"

namespace tarnwell {

class AccountDraft {
 public:
  enum class Field { email, host, port };

  enum class Finding {
    none,
    empty,
    nameOnly,         // no "@": a login name, which some servers want. No obstacle.
    brokenAddress,    // nothing before or after the "@", or a blank inside
    takesNoPassword,  // the provider lets no program sign in with a password
    notAHost,         // no name and no address of a server
    notAPort,         // no number from 1 to 65535
  };
  static bool isObstacle(Finding finding) { return finding != Finding::none && finding != Finding::nameOnly; }

  /// An empty form.
  AccountDraft() = default;
  /// What is saved. Without an address the form is empty.
  explicit AccountDraft(const AccountAddress& saved);

  QString email() const { return email_; }
  QString host() const { return host_; }
  QString port() const { return port_; }
  QString text(Field field) const;

  /// Also fills in server and port of a known provider, unless they were typed. A server that was filled in
  /// goes when the address turns out to be of an unknown provider. A name without "@" keeps it: some
  /// providers want only the name.
  void setEmail(const QString& text);
  /// An emptied field is filled in again by the next address.
  void setHost(const QString& text);
  void setPort(const QString& text);

  Finding finding(Field field) const;

  /// The provider of the server, or of the address while there is no server. Null for an unknown one.
  const Provider* provider() const;
  /// The provider of the address, or null: what `setEmail` filled in.
  const Provider* providerOfAddress() const;

  /// For use when no field has an obstacle. Letters and digits of Japanese width become plain ones.
  AccountAddress address() const;

  /// The texts alone.
  friend bool operator==(const AccountDraft& left, const AccountDraft& right) {
    return left.email_ == right.email_ && left.host_ == right.host_ && left.port_ == right.port_;
  }

 private:
  void fillIn(const Provider* provider);
  Finding findingOfEmail() const;

  QString email_;
  QString host_;
  QString port_ = QString::number(BridgeConstants::defaultIMAPPort);
  bool isHostTyped_ = false;
  bool isPortTyped_ = false;
  /// That of the last address with an "@".
  const Provider* lastProvider_ = nullptr;
};

}  // namespace tarnwell
