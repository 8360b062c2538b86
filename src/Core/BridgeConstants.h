#pragma once

/// The fixed values of the program.

#include <chrono>
#include <string_view>

namespace tarnwell::BridgeConstants {

inline constexpr std::string_view productName = "Tarnwell";
/// CMakeLists.txt sets the version, also for the packages.
inline constexpr std::string_view version = TARNWELL_VERSION;

/// The application identifier. It names the settings folder, the log subsystem and the password item. The
/// companion app uses the same one.
inline constexpr std::string_view bundleIdentifier = "app.tarnwell.Tarnwell";
inline constexpr std::string_view keychainService = bundleIdentifier;
/// For the token of the local endpoint, which is no password of a mailbox.
inline constexpr std::string_view endpointTokenService = "app.tarnwell.Tarnwell.endpoint";
/// The maker's team identifier, a full stop, and the application identifier.
inline constexpr std::string_view keychainAccessGroup = "TARNWELL01.app.tarnwell.Tarnwell";

inline constexpr std::string_view defaultIMAPHost = "imap.mail.me.com";
inline constexpr int defaultIMAPPort = 993;

/// Counts of messages.
inline constexpr int searchLimitDefault = 20;
inline constexpr int searchLimitMax = 100;

/// Lengths in user-perceived characters.
inline constexpr int summarySnippetMaxChars = 1000;
inline constexpr int bodyDefaultMaxChars = 4000;
inline constexpr int bodyHardMaxChars = 10000;

/// The time limit for each single wait for the network, in seconds.
inline constexpr std::chrono::duration<double> networkTimeoutSeconds{30.0};
/// The time limit for a whole session with the mail server, in seconds. Clients give a call up after 60.
inline constexpr std::chrono::duration<double> sessionTimeoutSeconds{50.0};
/// The time limit for the end of a session: LOGOUT and its answer, in seconds.
inline constexpr std::chrono::duration<double> logoutTimeoutSeconds{2.0};

inline constexpr int defaultHTTPPort = 8765;

}  // namespace tarnwell::BridgeConstants
