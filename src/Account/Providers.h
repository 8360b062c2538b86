#pragma once

/// Mail providers that many people use: which server holds their mail and which password it takes.
///
///     if (const Provider* provider = providerOf("anna@icloud.com")) {
///       connect(provider->host, provider->port);
///     }
///
/// The table stands in the program: looking a provider up asks nobody, so nobody learns of the address. It
/// holds only what a provider itself or the configuration database of Thunderbird says.
///
/// Threads: all functions are pure.

#include <cstdint>
#include <string_view>

#include "Core/BridgeConstants.h"
#include "Core/Secret.h"

namespace tarnwell {

struct Provider {
  /// What a program has to sign in with.
  enum class Password {
    app,              // an app password, made on a page of the provider
    appAfterTwoStep,  // the same; the provider makes one only after two-step verification is on
    appWithTwoStep,   // an app password while two-step verification is on, else the ordinary one
    ownForIMAP,       // a password that the provider made for mail programs only
    ordinary,         // the mailbox's own password
    none,             // none at all: only a sign-in in a browser (OAuth), which this program has not
  };
  /// What the server wants as the name.
  enum class LoginName {
    address,
    localPart,  // what stands before the "@"
    other,      // a name of its own, which the provider has told
  };

  /// As the provider writes it, in every language.
  std::string_view name;
  std::string_view host;
  Password password = Password::app;
  /// A page of the provider that tells more. Empty when none is sure to exist.
  std::string_view help{};
  LoginName loginName = LoginName::address;
  /// Access by other programs is off until the user switches it on in the provider's own settings.
  bool isSwitchedOnFirst = false;
  /// The provider shows its app passwords with blanks that do not belong to them.
  bool showsBlanks = false;
  std::int64_t port = BridgeConstants::defaultIMAPPort;
};

/// The provider of an address, by what stands after the last "@", in any letter case. Null for an unknown one
/// and for a text without "@". Blanks around the address are ignored.
const Provider* providerOf(std::string_view address);

/// The provider that runs this server. An address with a domain of one's own tells nothing else.
const Provider* providerAt(std::string_view host);

/// The password to sign in with, for one that was typed or pasted: without line ends after it, and without
/// blanks where the provider shows some. `provider` may be null.
Secret passwordToSend(const Provider* provider, Secret typed);

}  // namespace tarnwell
