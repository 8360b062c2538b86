#pragma once

/// The settings. The companion app writes them and this program reads them. `test-connection` writes its
/// outcome.
///
/// Both records have a JSON form: an object whose keys are the field names. A missing key, or null, leaves
/// the default. A value that does not fit its key fails the whole record. Unknown keys are ignored.
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
  /// Master switch: while true, every write is refused, also as a preview.
  bool readOnly = true;
  /// Cap on the messages that one operation fetches. Values below 1 act as 1.
  std::int64_t maxFetch = 50;
  /// Moving one message from INBOX to the trash folder is permitted. This deletes nothing.
  bool allowTrash = false;
  /// Moving one message from INBOX to another folder is permitted.
  bool allowMove = true;
  /// Setting the \Seen flag of one message is permitted.
  bool allowMarkRead = true;
  /// Cap on the user-perceived characters of a returned body; `bodyHardMaxChars` caps it further.
  std::int64_t maxBodyChars = BridgeConstants::bodyDefaultMaxChars;
  /// Cap on the messages that one tool call handles. Values below 1 act as 1.
  std::int64_t maxMessagesPerCall = BridgeConstants::searchLimitDefault;
  /// Withhold the text of one-time-code, verification and security mail.
  bool blockAuthCodeBodies = true;
  /// When the server rejects MOVE, COPY and then the \Deleted flag may replace it.
  bool allowCopyMoveFallback = false;

  bool operator==(const SafetySettings&) const = default;
};

/// Calls `use(key, setting)` for each of the nine settings. The settings file, `get_status` and
/// docs/settings.md use these keys.
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

/// All languages in the order of their declaration: `for (AppLanguage language : AppLanguages::allCases)`.
namespace AppLanguages {
inline constexpr std::array allCases{AppLanguage::english, AppLanguage::japanese};
}

/// "en" or "ja".
std::string_view rawValue(AppLanguage language);
/// Absent for any other text.
std::optional<AppLanguage> appLanguage(std::string_view rawValue);
/// The name of the language in this language.
std::string_view displayName(AppLanguage language);
/// Japanese when the user prefers it to all other languages, otherwise English.
AppLanguage systemDefaultLanguage();

struct AppConfig {
  /// The address of the mailbox. It is also the login name and the account of the password item.
  std::string email;
  std::string imapHost{BridgeConstants::defaultIMAPHost};
  /// May be any number. Connecting checks the range.
  std::int64_t imapPort = BridgeConstants::defaultIMAPPort;
  SafetySettings safety;
  /// With `blockAuthCodeBodies`: also withhold mail without a keyword that looks like it carries a code or an
  /// account link (Core/SecurityMail/SecretMailRule.h). Deliberate: it is not one of the safety settings,
  /// because their list is fixed.
  bool strictWithholding = false;
  std::int64_t httpPort = BridgeConstants::defaultHTTPPort;
  std::optional<Instant> lastConnectionTestDate;
  std::optional<bool> lastConnectionTestSuccess;
  std::optional<AppLanguage> language;

  /// True when there is an address. Nothing else counts.
  bool isConfigured() const { return !email.empty(); }

  bool operator==(const AppConfig&) const = default;
};

/// The JSON forms. `from_json` throws `std::invalid_argument` for a value that does not fit its key. The text
/// of the error names the key. The record then stays unchanged.
void to_json(nlohmann::json& json, const SafetySettings& settings);
void from_json(const nlohmann::json& json, SafetySettings& settings);
void to_json(nlohmann::json& json, const AppConfig& config);
void from_json(const nlohmann::json& json, AppConfig& config);

}  // namespace tarnwell
