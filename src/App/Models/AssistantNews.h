#pragma once

/// What came of connecting or disconnecting an assistant. The page makes a sentence of it.

#include <QString>
#include <cstddef>
#include <exception>
#include <filesystem>
#include <optional>

namespace tarnwell {

struct AssistantNews {
  enum class Kind {
    none,
    connected,
    disconnected,
    undone,
    /// It was as wanted before anything was done.
    alreadyConnected,
    alreadyDisconnected,
    /// Another program has changed the file since the plan was made. Nothing was written; there is a new
    /// plan.
    newPlan,

    /// The file cannot be edited, at `line` and `column` where they are known.
    notJSON,
    notTOML,
    notAnObject,
    ambiguous,
    notUTF8,
    tooLarge,
    /// The file cannot be changed.
    fileUnreadable,
    notWritten,
    notVerified,
    otherWriter,

    /// It has to be closed first.
    assistantRuns,
    neverStarted,
    noHelper,
    helperNotUTF8,
    commandNotStarted,
    commandFailed,
    commandTooSlow,
    commandWithoutEffect,
    onlyByHand,
    /// Its configuration was changed since, so what was there before cannot be put back.
    changedSince,
    /// For a reason that has no sentence of its own.
    failed,
  };

  Kind kind = Kind::none;
  /// The original words of a failure, in English, or what a command printed.
  QString details{};
  std::size_t line = 0;
  std::size_t column = 0;
  /// The copy of the file as it was, when a failure left one.
  std::optional<std::filesystem::path> backup{};

  bool isFailure() const { return kind >= Kind::notJSON; }

  bool operator==(const AssistantNews&) const = default;
};

/// For what looking, planning, carrying out or undoing ended with.
AssistantNews newsOf(const std::exception_ptr& failure);

}  // namespace tarnwell
