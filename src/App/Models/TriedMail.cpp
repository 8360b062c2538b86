#include "App/Models/TriedMail.h"

#include <algorithm>
#include <string>

#include "App/Models/HarmlessText.h"
#include "Core/KeychainStore.h"
#include "Core/SafetyPolicy.h"
#include "IMAP/Connection/IMAPError.h"
#include "IMAP/Responses/IMAPFolder.h"
#include "MCP/Tools/MessageJSON.h"

namespace tarnwell {

namespace {

QString line(const JSONValue& value) { return harmlessLine(value.stringValue().value_or("")); }

bool isTrue(const JSONValue& value) { return value.boolValue().value_or(false); }

const JSONArray& elements(const JSONValue& value) {
  static const JSONArray none;
  const JSONArray* const array = value.arrayValue();
  return array ? *array : none;
}

TriedSignal::Place placeOf(const JSONValue& location) {
  const std::string name = location.stringValue().value_or("");
  return name == "subject" ? TriedSignal::Place::subject
         : name == "from"  ? TriedSignal::Place::sender
                           : TriedSignal::Place::text;
}

std::vector<TriedSignal> signsOf(const JSONValue& message) {
  std::vector<TriedSignal> signs;
  for (const JSONValue& signal : elements(message["detectedRiskSignals"])) {
    signs.push_back({line(signal["category"]), line(signal["term"]), placeOf(signal["location"])});
  }
  return signs;
}

TriedMessage messageOf(const JSONValue& json) {
  TriedMessage message{
      .uid = static_cast<std::uint32_t>(json["uid"].intValue().value_or(0)),
      .subject = line(json["subject"]),
      .sender = line(json["from"]),
      .date = line(json["date"]),
      .preview = line(json["snippet"]),
      .isUnread = isTrue(json["unread"]),
      .hasAttachments = isTrue(json["hasAttachments"]),
      .signs = signsOf(json),
  };
  // Without a sign nothing is withheld, so a mail cannot pretend to be.
  message.isWithheld = !message.signs.empty() && json["snippet"].stringValue() == withheldText;
  if (message.isWithheld) {
    message.preview.clear();
  }
  return message;
}

QString folderName(const std::string& path, const std::string& delimiter) {
  IMAPFolder folder;
  folder.path = path;
  folder.delimiter = delimiter;
  return harmlessLine(readablePath(folder));
}

QString errorOf(const ToolCall& call) { return line(call.result.structured["error"]); }

bool isKeychainError(const std::string& told, std::int32_t status) {
  return told.starts_with("Keychain error " + std::to_string(status) + ":");
}

TriedFailure::Kind kindOf(const std::string& told, const AppConfig& config) {
  using Kind = TriedFailure::Kind;
  if (told == IMAPError::notConfigured().description()) {
    return config.isConfigured() ? Kind::noPassword : Kind::noAccount;
  }
  if (told == IMAPError::authenticationFailed().description()) {
    return Kind::signInRefused;
  }
  if (told == IMAPError::timeout().description()) {
    return Kind::tooSlow;
  }
  if (told.starts_with(IMAPError::connectionFailed("").description()) ||
      told == IMAPError::connectionClosed().description()) {
    return Kind::notReachable;
  }
  if (isKeychainError(told, SecretStatus::notAvailable)) {
    return Kind::keyringMissing;
  }
  if (isKeychainError(told, SecretStatus::interactionNotAllowed)) {
    return Kind::keyringLocked;
  }
  return told.starts_with("Keychain ") ? Kind::keyringRefused : Kind::other;
}

}  // namespace

std::vector<TriedMessage> triedMessages(const ToolCall& call) {
  std::vector<TriedMessage> messages;
  for (const JSONValue& json : elements(call.result.structured["messages"])) {
    messages.push_back(messageOf(json));
  }
  return messages;
}

TriedText triedText(const ToolCall& call) {
  const JSONValue& json = call.result.structured;
  if (call.result.isError) {
    return {TriedText::Kind::failed, errorOf(call)};
  }
  TriedText text{.signs = signsOf(json)};
  if (!isTrue(json["returned"])) {
    text.kind = isTrue(json["blocked"]) ? TriedText::Kind::withheld : TriedText::Kind::none;
    text.text = line(json["reason"]);
    return text;
  }
  text.kind = TriedText::Kind::returned;
  text.text = harmlessText(json["body"].stringValue().value_or(""));
  text.length = json["charCount"].intValue().value_or(0);
  text.returned = isTrue(json["truncated"])
                      ? std::max<std::int64_t>(json["maxChars"].intValue().value_or(0), 0)
                      : text.length;
  return text;
}

std::vector<TriedFolder> triedFolders(const ToolCall& call) {
  std::vector<TriedFolder> folders;
  for (const JSONValue& json : elements(call.result.structured["folders"])) {
    const std::string path = json["path"].stringValue().value_or("");
    const QString spelled = QString::fromStdString(path);
    if (isTrue(json["selectable"]) && spelled.compare(QLatin1String("INBOX"), Qt::CaseInsensitive) != 0) {
      folders.push_back({spelled, folderName(path, json["delimiter"].stringValue().value_or(""))});
    }
  }
  return folders;
}

TriedOutcome triedOutcome(TriedChange change, const ToolCall& call) {
  using Kind = TriedOutcome::Kind;
  const JSONValue& json = call.result.structured;
  if (call.result.isError) {
    return {change, Kind::failed, {}, errorOf(call)};
  }
  if (isTrue(json["blocked"])) {
    const bool isReadOnly = json["mode"].stringValue() == rawValue(SafetyMode::readOnly);
    return {change, isReadOnly ? Kind::refusedAsReadOnly : Kind::refusedAsDisabled, {}, line(json["reason"])};
  }
  return {change, Kind::allowed, folderName(json["detail"]["to"].stringValue().value_or(""), "/"),
          line(json["reason"])};
}

std::optional<TriedFailure> triedFailure(const ToolCall& call, const AppConfig& config) {
  if (!call.result.isError) {
    return std::nullopt;
  }
  const std::string told = call.result.structured["error"].stringValue().value_or("");
  return TriedFailure{kindOf(told, config), harmlessLine(told)};
}

ToolName toolOf(TriedChange change) {
  switch (change) {
    case TriedChange::move:
      return ToolName::moveMessage;
    case TriedChange::trash:
      return ToolName::trashMessage;
    case TriedChange::markRead:
      break;
  }
  return ToolName::markAsRead;
}

}  // namespace tarnwell
