#pragma once

/// What an assistant would see of the inbox, by its own tools and with the same settings.
///
///     model.search({.words = "invoice"});
///     ... changed ...
///     model.messages().front().isWithheld;
///     model.choose(0);                          // its text follows
///     model.tryChange(TriedChange::trash);      // what would happen; nothing does
///
/// Nothing here is ever kept: `forget` drops every word of mail, and no other place has any. A newer call
/// gives the older one of its kind up. When the settings change, the messages stay and are known to be from
/// before, and the text of the chosen one is read again; when the account changes, all are forgotten.
///
/// Threads: that of the window. Nothing is done before the first call.

#include <QDate>
#include <QObject>
#include <QString>
#include <QTimer>
#include <optional>
#include <vector>

#include "App/Models/SettingsFile.h"
#include "App/Models/TriedMail.h"
#include "App/Models/WatchedCall.h"

namespace tarnwell {

/// What to search for. Empty texts search for nothing.
struct TriedQuery {
  QString words{};
  QString sender{};
  QString subject{};
  bool isUnreadOnly = false;
  std::optional<QDate> since{};
};

class TryItModel : public QObject {
  Q_OBJECT

 public:
  enum class State {
    empty,  // nothing was searched for, or all of it is forgotten
    searching,
    cancelled,
    failed,
    found,  // perhaps no message
  };

  struct Progress {
    std::int64_t done = 0;
    std::int64_t total = 0;  // 0 until the first message was read
  };

  /// `settings` must outlive the model.
  TryItModel(SettingsFile& settings, ReadOnlyTools tools, QObject* parent = nullptr);

  void search(TriedQuery query);
  void searchAgain() { search(query_); }
  void cancelSearch();

  State state() const { return state_; }
  Progress progress() const { return progress_; }
  /// In the state `failed`.
  const std::optional<TriedFailure>& failure() const { return failure_; }
  const std::vector<TriedMessage>& messages() const { return messages_; }
  int withheldCount() const;
  /// The settings have changed since the search: an assistant would see something else now.
  bool isFromBefore() const { return isFromBefore_; }

  /// Shows one of the messages. Its text is read after a moment, so that running through a list does not sign
  /// in for each of its rows. The same one again: nothing, unless its text could not be read. Absent: none.
  void choose(std::optional<std::size_t> index);
  /// A null pointer for none.
  const TriedMessage* chosen() const;
  /// Absent while it is being read.
  const std::optional<TriedText>& text() const { return text_; }

  /// Asks for the folders that a message can be moved to, once until they are forgotten.
  void loadFolders();
  bool isListing() const { return listing_.isRunning(); }
  /// Empty when there is none, too.
  const std::vector<TriedFolder>& folders() const { return folders_; }
  /// Absent unless they could not be read.
  const std::optional<TriedFailure>& foldersFailure() const { return foldersFailure_; }

  /// Asks what would become of the chosen message. `folder` is a path, for a move.
  void tryChange(TriedChange change, const QString& folder = {});
  bool isTrying() const { return change_.isRunning(); }
  /// Of the last change that was tried on the chosen message.
  const std::optional<TriedOutcome>& outcome() const { return outcome_; }

  /// The calls so far, as an assistant would make them: the search, and what the chosen message got.
  std::vector<const ToolCall*> calls() const;

  /// Gives up what runs and drops everything.
  void forget();

 Q_SIGNALS:
  /// The state and the messages.
  void searchChanged();
  /// Whether the messages are from before.
  void aged();
  void progressed();
  /// Another message was chosen, or none. `searchChanged` came before when its list is new.
  void chosenChanged();
  /// The text of the chosen message, or the outcome of a change.
  void messageChanged();
  void foldersChanged();

 private:
  void readText();
  void dropMessage();
  void dropAnswers();
  void dropFolders();
  void takeSettings();

  SettingsFile& settings_;
  ReadOnlyTools tools_;
  AppConfig config_;  // with which the messages were searched for
  AppConfig seen_;    // when it was looked at last

  TriedQuery query_;
  State state_ = State::empty;
  Progress progress_;
  std::optional<TriedFailure> failure_;
  std::vector<TriedMessage> messages_;
  bool isFromBefore_ = false;
  std::optional<std::size_t> chosen_;
  std::optional<TriedText> text_;
  std::vector<TriedFolder> folders_;
  std::optional<TriedFailure> foldersFailure_;
  std::optional<TriedOutcome> outcome_;

  std::optional<ToolCall> searchCall_;
  std::optional<ToolCall> textCall_;
  std::optional<ToolCall> changeCall_;

  QTimer moment_;
  WatchedCall search_;
  WatchedCall reading_;
  WatchedCall listing_;
  WatchedCall change_;
};

}  // namespace tarnwell
