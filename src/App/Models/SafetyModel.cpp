#include "App/Models/SafetyModel.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <string_view>

#include "Core/SafetyPolicy.h"
#include "Core/SecurityMail/EmailRiskDetector.h"
#include "Core/SecurityMail/SecretMailRule.h"
#include "IMAP/Connection/IMAPError.h"

namespace tarnwell {

namespace {

constexpr std::int64_t smallest = std::numeric_limits<std::int64_t>::min();
constexpr std::int64_t largest = std::numeric_limits<std::int64_t>::max();

template <class Config>
auto& settingOf(Config& config, SafetySwitch item) {
  switch (item) {
    case SafetySwitch::readOnly:
      return config.safety.readOnly;
    case SafetySwitch::blockAuthCodeBodies:
      return config.safety.blockAuthCodeBodies;
    case SafetySwitch::strictWithholding:
      return config.strictWithholding;
    case SafetySwitch::allowMarkRead:
      return config.safety.allowMarkRead;
    case SafetySwitch::allowMove:
      return config.safety.allowMove;
    case SafetySwitch::allowTrash:
      return config.safety.allowTrash;
    case SafetySwitch::allowCopyMoveFallback:
      break;
  }
  return config.safety.allowCopyMoveFallback;
}

std::int64_t SafetySettings::* fieldOf(SafetyLimit limit) {
  switch (limit) {
    case SafetyLimit::maxMessagesPerCall:
      return &SafetySettings::maxMessagesPerCall;
    case SafetyLimit::maxFetch:
      return &SafetySettings::maxFetch;
    case SafetyLimit::maxBodyChars:
      break;
  }
  return &SafetySettings::maxBodyChars;
}

/// The most that a call gets which asks for everything.
int messagesPerCall(const SafetySettings& settings) {
  return static_cast<int>(SafetyPolicy(settings).clampLimit(largest, BridgeConstants::searchLimitMax));
}

int charactersOfText(const SafetySettings& settings) {
  return static_cast<int>(SafetyPolicy(settings).clampBodyChars(largest));
}

/// What the policy makes of the setting when no other limit is in its way.
int acting(SafetyLimit limit, std::int64_t setting) {
  SafetySettings settings;
  for (const SafetyLimit each : SafetyItems::limits) {
    settings.*fieldOf(each) = largest;
  }
  settings.*fieldOf(limit) = setting;
  return limit == SafetyLimit::maxBodyChars ? charactersOfText(settings) : messagesPerCall(settings);
}

bool isPermitted(const SafetySettings& settings, WriteOperation operation) {
  return SafetyPolicy(settings).decide(operation, false).executes();
}

SafetySummary summaryOf(const AppConfig& config) {
  using enum SafetySummary::Withholding;
  const SafetySettings& settings = config.safety;
  SafetySummary summary{
      .messagesPerCall = messagesPerCall(settings),
      .charactersOfText = charactersOfText(settings),
      .mayMarkRead = isPermitted(settings, WriteOperation::markRead),
      .mayMove = isPermitted(settings, WriteOperation::move),
      .mayTrash = isPermitted(settings, WriteOperation::trash),
  };
  summary.mayCopyInstead = settings.allowCopyMoveFallback && (summary.mayMove || summary.mayTrash);
  if (settings.blockAuthCodeBodies) {
    summary.withholding = config.strictWithholding ? strict : byKeywords;
  }
  return summary;
}

}  // namespace

SafetyModel::SafetyModel(SettingsFile& settings, QObject* parent) : QObject(parent), settings_(settings) {
  connect(&settings_, &SettingsFile::changed, this, &SafetyModel::changed);
  connect(&settings_, &SettingsFile::notSaved, this, &SafetyModel::notSaved);
}

bool SafetyModel::isOn(SafetySwitch item) const { return settingOf(settings_.config(), item); }

int SafetyModel::value(SafetyLimit limit) const {
  return acting(limit, settings_.config().safety.*fieldOf(limit));
}

SafetyModel::Bounds SafetyModel::bounds(SafetyLimit limit) {
  return {acting(limit, smallest), acting(limit, largest)};
}

std::optional<WithoutEffect> SafetyModel::withoutEffect(SafetySwitch item) const {
  const SafetySettings& settings = settings_.config().safety;
  switch (item) {
    case SafetySwitch::readOnly:
    case SafetySwitch::blockAuthCodeBodies:
      return std::nullopt;
    case SafetySwitch::strictWithholding:
      return settings.blockAuthCodeBodies ? std::nullopt : std::optional(WithoutEffect::withholdingIsOff);
    case SafetySwitch::allowMarkRead:
    case SafetySwitch::allowMove:
    case SafetySwitch::allowTrash:
    case SafetySwitch::allowCopyMoveFallback:
      break;
  }
  if (settings.readOnly) {
    return WithoutEffect::everythingIsReadOnly;
  }
  if (item == SafetySwitch::allowCopyMoveFallback && !settings.allowMove && !settings.allowTrash) {
    return WithoutEffect::nothingMayBeMoved;
  }
  return std::nullopt;
}

std::optional<WithoutEffect> SafetyModel::withoutEffect(SafetyLimit limit) const {
  const bool isForText = limit == SafetyLimit::maxBodyChars;
  return !isForText && value(limit) > summary().messagesPerCall
             ? std::optional(WithoutEffect::otherLimitIsSmaller)
             : std::nullopt;
}

SafetySummary SafetyModel::summary() const { return summaryOf(settings_.config()); }

SafetySummary SafetyModel::summaryWith(SafetySwitch item, bool isOn) const {
  AppConfig config = settings_.config();
  settingOf(config, item) = isOn;
  return summaryOf(config);
}

bool SafetyModel::asksBefore(SafetySwitch item, bool isOn) const {
  return !isOn && forbidsWhileOn(item) && this->isOn(item) && !withoutEffect(item);
}

void SafetyModel::set(SafetySwitch item, bool isOn) {
  if (isOn != this->isOn(item)) {
    settings_.change([item, isOn](AppConfig& config) { settingOf(config, item) = isOn; });
  }
}

void SafetyModel::set(SafetyLimit limit, int value) {
  if (value != settings_.config().safety.*fieldOf(limit)) {
    settings_.change([limit, value](AppConfig& config) { config.safety.*fieldOf(limit) = value; });
  }
}

bool SafetyModel::isAtSafeValues() const {
  return settings_.config().safety == SafetySettings{} && settings_.config().strictWithholding;
}

void SafetyModel::backToSafeValues() {
  if (!isAtSafeValues()) {
    settings_.change([](AppConfig& config) {
      config.safety = {};
      config.strictWithholding = true;
    });
  }
}

QString refusal(SafetySwitch item) {
  switch (item) {
    case SafetySwitch::readOnly:
      return QString::fromUtf8(readOnlyRefusal(WriteOperation::move));
    case SafetySwitch::blockAuthCodeBodies:
      return QString::fromUtf8(EmailRiskDetector::shared().assess({.subject = "verification code"}).reason());
    case SafetySwitch::strictWithholding:
      return QString::fromUtf8(
          RiskAssessment{SecretMailRule::signals({.subject = "Confirm your email"})}.reason());
    case SafetySwitch::allowMarkRead:
      return QString::fromUtf8(disabledRefusal(WriteOperation::markRead));
    case SafetySwitch::allowMove:
      return QString::fromUtf8(disabledRefusal(WriteOperation::move));
    case SafetySwitch::allowTrash:
      return QString::fromUtf8(disabledRefusal(WriteOperation::trash));
    case SafetySwitch::allowCopyMoveFallback:
      break;
  }
  return QString::fromUtf8(IMAPError::moveRejected("…").description());
}

bool forbidsWhileOn(SafetySwitch item) {
  return item == SafetySwitch::readOnly || item == SafetySwitch::blockAuthCodeBodies ||
         item == SafetySwitch::strictWithholding;
}

}  // namespace tarnwell
