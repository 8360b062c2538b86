#pragma once

/// What the tools return about a mailbox, read for the page "Try it". All texts of mail are harmless
/// (HarmlessText.h).
///
/// A result that has not the shape which the tool gives yields what can be read of it.
///
/// Threads: plain values, pure functions.

#include <QString>
#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

#include "App/Models/ReadOnlyTools.h"
#include "Core/AppConfig.h"

namespace tarnwell {

/// Why a message is withheld, or would be.
struct TriedSignal {
  enum class Place { subject, sender, text };

  /// Such as "verification_code".
  QString category{};
  /// The word that was found.
  QString term{};
  Place place{};

  bool operator==(const TriedSignal&) const = default;
};

/// A message as a search returns it.
struct TriedMessage {
  std::uint32_t uid = 0;
  QString subject{};
  QString sender{};
  /// As the mail has it.
  QString date{};
  /// The beginning of the text. Empty when it is withheld.
  QString preview{};
  bool isUnread = false;
  bool hasAttachments = false;
  bool isWithheld = false;
  std::vector<TriedSignal> signs{};

  bool operator==(const TriedMessage&) const = default;
};

/// The text of a message, or why there is none.
struct TriedText {
  enum class Kind { returned, withheld, none, failed };

  Kind kind{};
  /// What an assistant reads: the text, or the sentence in its place.
  QString text{};
  /// User-perceived characters of the whole text, and how many of them are returned.
  std::int64_t length = 0;
  std::int64_t returned = 0;
  std::vector<TriedSignal> signs{};
};

struct TriedFolder {
  /// As the server spells it.
  QString path{};
  /// For people.
  QString name{};
};

enum class TriedChange { move, trash, markRead };

/// What would become of a change.
struct TriedOutcome {
  enum class Kind { allowed, refusedAsReadOnly, refusedAsDisabled, failed };

  TriedChange change{};
  Kind kind{};
  /// Where the message would go, for people. Empty when it would stay, or nothing would be done.
  QString folder{};
  /// The sentence that an assistant reads.
  QString told{};
};

/// Why there is no answer from the mailbox.
struct TriedFailure {
  enum class Kind {
    noAccount,
    noPassword,
    keyringMissing,
    keyringLocked,
    keyringRefused,
    signInRefused,
    notReachable,
    tooSlow,
    other,
  };

  Kind kind{};
  /// The sentence that an assistant reads.
  QString told{};
};

std::vector<TriedMessage> triedMessages(const ToolCall& call);
TriedText triedText(const ToolCall& call);
/// The folders that a message of the inbox can be moved to.
std::vector<TriedFolder> triedFolders(const ToolCall& call);
TriedOutcome triedOutcome(TriedChange change, const ToolCall& call);
/// Absent for a call that did not fail. `config` tells an account without a password from none.
std::optional<TriedFailure> triedFailure(const ToolCall& call, const AppConfig& config);

/// The tool that makes the change.
ToolName toolOf(TriedChange change);

}  // namespace tarnwell
