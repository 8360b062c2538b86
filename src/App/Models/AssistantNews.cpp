#include "App/Models/AssistantNews.h"

#include "Assistants/Assistants.h"
#include "JSONEditor/JSONEditError.h"

namespace tarnwell {

namespace {

using Kind = AssistantNews::Kind;

Kind kindOf(JSONEditError::Kind kind) {
  switch (kind) {
    case JSONEditError::Kind::notJSON:
      return Kind::notJSON;
    case JSONEditError::Kind::notAnObject:
      return Kind::notAnObject;
    case JSONEditError::Kind::ambiguous:
      return Kind::ambiguous;
    case JSONEditError::Kind::notUTF8:
      return Kind::notUTF8;
    case JSONEditError::Kind::tooLarge:
      return Kind::tooLarge;
  }
  return Kind::failed;
}

Kind kindOf(ConfigurationFileError::Kind kind) {
  switch (kind) {
    case ConfigurationFileError::Kind::unreadable:
      return Kind::fileUnreadable;
    case ConfigurationFileError::Kind::tooLarge:
      return Kind::tooLarge;
    case ConfigurationFileError::Kind::changed:
      return Kind::changedSince;
    case ConfigurationFileError::Kind::notWritten:
      return Kind::notWritten;
    case ConfigurationFileError::Kind::notVerified:
      return Kind::notVerified;
    case ConfigurationFileError::Kind::otherWriter:
      return Kind::otherWriter;
  }
  return Kind::failed;
}

Kind kindOf(AssistantError::Kind kind) {
  switch (kind) {
    case AssistantError::Kind::running:
      return Kind::assistantRuns;
    case AssistantError::Kind::noHelper:
      return Kind::noHelper;
    case AssistantError::Kind::helperNotUTF8:
      return Kind::helperNotUTF8;
    case AssistantError::Kind::neverStarted:
      return Kind::neverStarted;
    case AssistantError::Kind::notStarted:
      return Kind::commandNotStarted;
    case AssistantError::Kind::failed:
      return Kind::commandFailed;
    case AssistantError::Kind::tookTooLong:
      return Kind::commandTooSlow;
    case AssistantError::Kind::withoutEffect:
      return Kind::commandWithoutEffect;
    case AssistantError::Kind::notTOML:
      return Kind::notTOML;
    case AssistantError::Kind::changed:
      return Kind::changedSince;
    case AssistantError::Kind::onlyByHand:
      return Kind::onlyByHand;
  }
  return Kind::failed;
}

}  // namespace

AssistantNews newsOf(const std::exception_ptr& failure) {
  try {
    std::rethrow_exception(failure);
  } catch (const JSONEditError& error) {
    return {kindOf(error.kind()), QString::fromUtf8(error.what()), error.line(), error.column()};
  } catch (const ConfigurationFileError& error) {
    return {
        .kind = kindOf(error.kind()), .details = QString::fromUtf8(error.what()), .backup = error.backup()};
  } catch (const AssistantError& error) {
    return {.kind = kindOf(error.kind()),
            .details = QString::fromStdString(error.details()).trimmed(),
            .backup = error.backup()};
  } catch (const std::exception& error) {
    return {Kind::failed, QString::fromUtf8(error.what())};
  } catch (...) {
    return {Kind::failed};
  }
}

}  // namespace tarnwell
