#pragma once

/// What an assistant may do, and the settings that decide it.
///
///     SafetyModel safety(settings);
///     safety.summary().messagesPerCall;                           // 20
///     safety.summaryWith(SafetySwitch::readOnly, false).mayMove;  // true: it becomes possible
///     safety.set(SafetySwitch::readOnly, false);
///
/// A change is saved at once and counts for each running helper from its next call on. All figures are those
/// that act: the policy of the helper itself is asked.
///
/// Threads: that of the window.

#include <QObject>
#include <array>
#include <optional>

#include "App/Models/SettingsFile.h"

namespace tarnwell {

enum class SafetySwitch {
  readOnly,
  blockAuthCodeBodies,
  strictWithholding,
  allowMarkRead,
  allowMove,
  allowTrash,
  allowCopyMoveFallback,
};

enum class SafetyLimit { maxMessagesPerCall, maxFetch, maxBodyChars };

/// All of them in the order in which they are shown.
namespace SafetyItems {
inline constexpr std::array switches{
    SafetySwitch::readOnly,
    SafetySwitch::blockAuthCodeBodies,
    SafetySwitch::strictWithholding,
    SafetySwitch::allowMarkRead,
    SafetySwitch::allowMove,
    SafetySwitch::allowTrash,
    SafetySwitch::allowCopyMoveFallback,
};
inline constexpr std::array limits{SafetyLimit::maxMessagesPerCall, SafetyLimit::maxFetch,
                                   SafetyLimit::maxBodyChars};
}  // namespace SafetyItems

/// Why a setting changes nothing at the moment.
enum class WithoutEffect {
  everythingIsReadOnly,
  nothingMayBeMoved,  // so no move needs a fallback
  withholdingIsOff,   // strict withholding is a part of it
  otherLimitIsSmaller,
};

/// What the settings come to.
struct SafetySummary {
  int messagesPerCall = 0;
  int charactersOfText = 0;
  bool mayMarkRead = false;
  bool mayMove = false;
  bool mayTrash = false;
  /// Where a server rejects MOVE.
  bool mayCopyInstead = false;

  enum class Withholding { none, byKeywords, strict };
  Withholding withholding = Withholding::none;

  bool mayChangeNothing() const { return !mayMarkRead && !mayMove && !mayTrash; }

  bool operator==(const SafetySummary&) const = default;
};

class SafetyModel : public QObject {
  Q_OBJECT

 public:
  explicit SafetyModel(SettingsFile& settings, QObject* parent = nullptr);

  bool isOn(SafetySwitch item) const;
  /// The number that acts. The file may hold any other.
  int value(SafetyLimit limit) const;

  struct Bounds {
    int least;
    int most;
  };
  static Bounds bounds(SafetyLimit limit);

  std::optional<WithoutEffect> withoutEffect(SafetySwitch item) const;
  std::optional<WithoutEffect> withoutEffect(SafetyLimit limit) const;

  SafetySummary summary() const;
  /// The summary after the switch was turned.
  SafetySummary summaryWith(SafetySwitch item, bool isOn) const;

  /// Deliberate: only what cannot be taken back, which is a secret that was read, and the master switch. A
  /// question before every switch would be answered unread.
  bool asksBefore(SafetySwitch item, bool isOn) const;

  void set(SafetySwitch item, bool isOn);
  void set(SafetyLimit limit, int value);

  /// The defaults and strict withholding.
  bool isAtSafeValues() const;
  void backToSafeValues();

  /// Damaged and untrusted: the defaults hold, whatever the file says.
  ConfigStore::FileState fileState() const { return settings_.state(); }
  QString fileProblem() const { return settings_.reason(); }

 Q_SIGNALS:
  void changed();
  /// A change could not be written, for this reason. What `isOn` and `value` say goes back.
  void notSaved(const QString& reason);

 private:
  SettingsFile& settings_;
};

/// What an assistant reads where the setting forbids what it wants: the helper's own words, in English. Empty
/// when it reads nothing.
QString refusal(SafetySwitch item);
/// True for the switches that forbid while they are on. The others forbid while they are off.
bool forbidsWhileOn(SafetySwitch item);

}  // namespace tarnwell
