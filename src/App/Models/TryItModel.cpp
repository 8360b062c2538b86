#include "App/Models/TryItModel.h"

#include <algorithm>
#include <utility>

namespace tarnwell {

namespace {

constexpr int moment = 250;  // milliseconds

JSONObject argumentsOf(const TriedQuery& query) {
  JSONObject arguments;
  const auto add = [&arguments](const char* key, const QString& text) {
    if (!text.isEmpty()) {
      arguments.emplace(key, text.toStdString());
    }
  };
  add("query", query.words);
  add("from", query.sender);
  add("subject", query.subject);
  if (query.isUnreadOnly) {
    arguments.emplace("unreadOnly", true);
  }
  if (query.since) {
    add("since", query.since->toString(Qt::ISODate));
  }
  return arguments;
}

bool isSameAccount(const AppConfig& left, const AppConfig& right) {
  return left.email == right.email && left.imapHost == right.imapHost && left.imapPort == right.imapPort;
}

/// True when the tools would answer the same.
bool isSameForTools(const AppConfig& left, const AppConfig& right) {
  return isSameAccount(left, right) && left.safety == right.safety &&
         left.strictWithholding == right.strictWithholding;
}

}  // namespace

TryItModel::TryItModel(SettingsFile& settings, ReadOnlyTools tools, QObject* parent)
    : QObject(parent),
      settings_(settings),
      tools_(std::move(tools)),
      search_(settings),
      reading_(settings),
      listing_(settings),
      change_(settings) {
  moment_.setSingleShot(true);
  moment_.setInterval(moment);
  connect(&moment_, &QTimer::timeout, this, &TryItModel::readText);
  connect(&settings_, &SettingsFile::changed, this, &TryItModel::takeSettings);
}

void TryItModel::search(TriedQuery query) {
  forget();
  query_ = std::move(query);
  config_ = seen_ = settings_.config();
  state_ = State::searching;
  search_.begin(
      tools_, ToolName::searchInbox, argumentsOf(query_),
      [this](ToolCall call) {
        failure_ = triedFailure(call, config_);
        messages_ = triedMessages(call);
        searchCall_ = std::move(call);
        state_ = failure_ ? State::failed : State::found;
        Q_EMIT searchChanged();
      },
      [this](std::int64_t done, std::int64_t total) {
        progress_ = {done, total};
        Q_EMIT progressed();
      });
  Q_EMIT searchChanged();
}

void TryItModel::cancelSearch() {
  if (state_ == State::searching) {
    search_.giveUp();
    state_ = State::cancelled;
    Q_EMIT searchChanged();
  }
}

int TryItModel::withheldCount() const {
  return static_cast<int>(std::ranges::count(messages_, true, &TriedMessage::isWithheld));
}

const TriedMessage* TryItModel::chosen() const { return chosen_ ? &messages_.at(*chosen_) : nullptr; }

void TryItModel::choose(std::optional<std::size_t> index) {
  const bool hasFailed = text_ && text_->kind == TriedText::Kind::failed;
  if (index == chosen_ && !hasFailed) {
    return;
  }
  dropMessage();
  chosen_ = index;
  if (chosen_) {
    moment_.start();
  }
  Q_EMIT chosenChanged();
}

void TryItModel::readText() {
  reading_.begin(tools_, ToolName::getMessageBody, {{"uid", chosen()->uid}}, [this](ToolCall call) {
    text_ = triedText(call);
    textCall_ = std::move(call);
    Q_EMIT messageChanged();
  });
}

void TryItModel::loadFolders() {
  if (listing_.isRunning() || !folders_.empty()) {
    return;
  }
  foldersFailure_.reset();
  listing_.begin(tools_, ToolName::listFolders, {}, [this](const ToolCall& call) {
    foldersFailure_ = triedFailure(call, settings_.config());
    folders_ = triedFolders(call);
    Q_EMIT foldersChanged();
  });
}

void TryItModel::tryChange(TriedChange change, const QString& folder) {
  if (!chosen()) {
    return;
  }
  JSONObject arguments{{"uid", chosen()->uid}};
  if (change == TriedChange::move) {
    arguments.emplace("targetFolder", folder.toStdString());
  }
  outcome_.reset();
  changeCall_.reset();
  change_.begin(tools_, toolOf(change), std::move(arguments), [this, change](ToolCall call) {
    outcome_ = triedOutcome(change, call);
    changeCall_ = std::move(call);
    Q_EMIT messageChanged();
  });
  Q_EMIT messageChanged();
}

std::vector<const ToolCall*> TryItModel::calls() const {
  std::vector<const ToolCall*> calls;
  for (const std::optional<ToolCall>* const call : {&searchCall_, &textCall_, &changeCall_}) {
    if (*call) {
      calls.push_back(&**call);
    }
  }
  return calls;
}

void TryItModel::dropMessage() {
  dropAnswers();
  chosen_.reset();
}

/// What the chosen message got.
void TryItModel::dropAnswers() {
  moment_.stop();
  reading_.giveUp();
  change_.giveUp();
  text_.reset();
  outcome_.reset();
  textCall_.reset();
  changeCall_.reset();
}

void TryItModel::dropFolders() {
  listing_.giveUp();
  folders_.clear();
  foldersFailure_.reset();
}

void TryItModel::forget() {
  search_.giveUp();
  const bool hadMessage = chosen_.has_value();
  const bool hadFolders = !folders_.empty();
  dropMessage();
  dropFolders();
  query_ = {};
  progress_ = {};
  failure_.reset();
  messages_ = {};
  searchCall_.reset();
  isFromBefore_ = false;
  const bool wasEmpty = std::exchange(state_, State::empty) == State::empty;
  if (!wasEmpty) {
    Q_EMIT searchChanged();
  }
  if (hadMessage) {
    Q_EMIT chosenChanged();
  }
  if (hadFolders) {
    Q_EMIT foldersChanged();
  }
}

/// The text and what was decided about a change go: the settings may decide otherwise now.
void TryItModel::takeSettings() {
  if (state_ == State::empty || isSameForTools(settings_.config(), seen_)) {
    return;
  }
  if (!isSameAccount(settings_.config(), config_)) {
    forget();
    return;
  }
  if (search_.isWaiting()) {
    config_ = settings_.config();  // which it will be made with
  }
  seen_ = settings_.config();
  isFromBefore_ = !isSameForTools(seen_, config_);
  dropAnswers();
  if (chosen_) {
    moment_.start();
  }
  Q_EMIT messageChanged();
  Q_EMIT aged();
}

}  // namespace tarnwell
