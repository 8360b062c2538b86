#pragma once

/// The settings that the companion app writes and this program reads; `test-connection` writes its outcome.
///
/// Both records have a JSON form: an object whose keys are the field names. A missing key, or null,
/// leaves the default; a key of the wrong type fails the whole record; unknown keys are ignored.
///
///     {"email": "user@example.org", "safety": {"readOnly": false}}
///
/// Threads: plain values.

#include <array>
#include <cstdint>
#include <nlohmann/json_fwd.hpp>
#include <optional>
#include <string>
#include <string_view>

#include "Core/BridgeConstants.h"
#include "Core/ISO8601.h"

namespace tarnwell {

/// What the user allows. The defaults are the cautious choice for each switch.
struct SafetySettings {
  /// Master switch: while true, no write of any kind reaches the server, not even as a preview.
  bool readOnly = true;
  /// Upper bound on the messages fetched by one operation. A count; values below 1 act as 1.
  std::int64_t maxFetch = 50;
  /// The trash operation is permitted. It moves to the trash folder and deletes nothing.
  bool allowTrash = false;
  /// Moving one message from INBOX to another folder is permitted.
  bool allowMove = true;
  /// Setting the \Seen flag of one message is permitted.
  bool allowMarkRead = true;
  /// Cap on the user-perceived characters of a returned body; `bodyHardMaxChars` caps it further.
  std::int64_t maxBodyChars = BridgeConstants::bodyDefaultMaxChars;
  /// Cap on the messages handled by one tool call.
  std::int64_t maxMessagesPerCall = BridgeConstants::searchLimitDefault;
  /// Withhold the text of one-time-code, verification and security mail.
  bool blockAuthCodeBodies = true;
  /// When the server rejects MOVE, COPY followed by the \Deleted flag may stand in for it.
  bool allowCopyMoveFallback = false;

  bool operator==(const SafetySettings&) const = default;
};

/// Calls `use(key, setting)` for each of the nine. The keys of the settings file, of `get_status` and of
/// docs/settings.md are these.
template <class Settings, class Use>
void forEachSafetySetting(Settings& settings, const Use& use) {
  use("readOnly", settings.readOnly);
  use("maxFetch", settings.maxFetch);
  use("allowTrash", settings.allowTrash);
  use("allowMove", settings.allowMove);
  use("allowMarkRead", settings.allowMarkRead);
  use("maxBodyChars", settings.maxBodyChars);
  use("maxMessagesPerCall", settings.maxMessagesPerCall);
  use("blockAuthCodeBodies", settings.blockAuthCodeBodies);
  use("allowCopyMoveFallback", settings.allowCopyMoveFallback);
}

/// The language of the companion app's user interface.
enum class AppLanguage { english, japanese };

/// For a list of the languages: `for (AppLanguage language : AppLanguages::allCases)`, in the order in which
/// they are declared.
namespace AppLanguages {
inline constexpr std::array allCases{AppLanguage::english, AppLanguage::japanese};
}

/// "en" or "ja".
std::string_view rawValue(AppLanguage language);
/// Absent for any other text.
std::optional<AppLanguage> appLanguage(std::string_view rawValue);
/// The language's name in itself.
std::string_view displayName(AppLanguage language);
/// Japanese when the user's most wanted language is, else English.
AppLanguage systemDefaultLanguage();

struct AppConfig {
  /// The account's address, which is the login name and the account of the password item.
  std::string email;
  std::string imapHost{BridgeConstants::defaultIMAPHost};
  /// Any number that the file holds; the range is checked when a connection is made.
  std::int64_t imapPort = BridgeConstants::defaultIMAPPort;
  SafetySettings safety;
  /// Together with `blockAuthCodeBodies`: also withhold mail that only looks like it carries a code or an
  /// account link (Core/SecurityMail/SecretMailRule.h). Deliberate: not among the safety settings, whose list
  /// is fixed.
  bool strictWithholding = false;
  std::int64_t httpPort = BridgeConstants::defaultHTTPPort;
  std::optional<Instant> lastConnectionTestDate;
  std::optional<bool> lastConnectionTestSuccess;
  std::optional<AppLanguage> language;

  /// True when there is an address; nothing else is consulted.
  bool isConfigured() const { return !email.empty(); }

  bool operator==(const AppConfig&) const = default;
};

/// The JSON forms. For a value of the wrong type `from_json` throws `std::invalid_argument`, whose text names
/// the key; the record is then as it was.
void to_json(nlohmann::json& json, const SafetySettings& settings);
void from_json(const nlohmann::json& json, SafetySettings& settings);
void to_json(nlohmann::json& json, const AppConfig& config);
void from_json(const nlohmann::json& json, AppConfig& config);

}  // namespace tarnwell
