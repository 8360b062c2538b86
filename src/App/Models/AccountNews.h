#pragma once

/// What a test, a save, a removal or an unlocking of the account came to. Each kind is one sentence on the
/// page, which says what to do.
///
/// Threads: plain values.

#include <QString>
#include <exception>

#include "Account/ConnectionTest.h"
#include "Account/Providers.h"
#include "Platform/Desktop/KeyringUnlock.h"

namespace tarnwell {

struct AccountNews {
  enum class Kind {
    none,

    testSucceeded,
    testCancelled,
    hostNotFound,        // the name has no address, or nobody could be asked for it
    notReachable,        // nothing answers at this port
    certificateRefused,  // the server cannot prove its name
    notSecure,           // what answers does not speak TLS
    notIMAP,             // what answers does not speak IMAP
    signInRefused,       // name or password
    inboxMissing,        // signed in, and there is no inbox to open
    tooSlow,             // no answer in time
    connectionLost,      // the server hung up
    testFailed,          // any other reason; see the details
    noPassword,          // none was typed, and none is stored

    saved,
    notSaved,  // the settings could not be written
    removed,
    notRemoved,

    keyringMissing,  // no program offers the service
    keyringLocked,
    keyringRefused,
    unlocked,
    unlockDismissed,
    unlockRefused,
  };

  Kind kind = Kind::none;
  /// The original English text, where there is one.
  QString details{};
  /// Of the account that the news is about. May be null.
  const Provider* provider = nullptr;

  bool isFailure() const;
};

/// What the kind of a connection's end is.
AccountNews::Kind kindOf(const ConnectionOutcome& outcome);
AccountNews::Kind kindOf(UnlockOutcome outcome);

/// For what a work threw: the keyring's trouble by name, `other` for the rest.
AccountNews newsOf(const std::exception_ptr& failure, AccountNews::Kind other);

}  // namespace tarnwell
