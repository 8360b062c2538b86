#include "App/Models/AccountNews.h"

#include <string>

#include "Core/KeychainStore.h"

namespace tarnwell {

namespace {

using Kind = AccountNews::Kind;

bool isAboutCertificate(const IMAPError& error) {
  return error.description().find("certificate is not accepted") != std::string::npos;
}

/// Nobody can be trusted, because the variable for the trusted certificates names no file.
bool isAboutTrust(const IMAPError& error) {
  return error.description().find("SSL_CERT_FILE") != std::string::npos;
}

/// How a connection fails that has no session yet, by the last stage that it reached.
Kind kindBeforeSession(const IMAPError& error, std::optional<SessionStage> reached) {
  const bool isTooSlow = error.kind() == IMAPError::Kind::timeout;
  if (!reached) {
    return isAboutTrust(error) ? Kind::testFailed : Kind::hostNotFound;
  }
  if (reached == SessionStage::nameFound) {
    return Kind::notReachable;
  }
  if (isTooSlow) {
    return Kind::tooSlow;
  }
  return isAboutCertificate(error) ? Kind::certificateRefused : Kind::notSecure;
}

Kind kindInSession(const IMAPError& error, SessionStage reached) {
  switch (error.kind()) {
    case IMAPError::Kind::authenticationFailed:
      return Kind::signInRefused;
    case IMAPError::Kind::timeout:
      return Kind::tooSlow;
    case IMAPError::Kind::unexpectedResponse:
      return Kind::notIMAP;
    case IMAPError::Kind::connectionClosed:
    case IMAPError::Kind::connectionFailed:
      return Kind::connectionLost;
    case IMAPError::Kind::commandFailed:
      return reached == SessionStage::signedIn ? Kind::inboxMissing : Kind::testFailed;
    default:
      return Kind::testFailed;
  }
}

}  // namespace

bool AccountNews::isFailure() const {
  switch (kind) {
    case Kind::none:
    case Kind::testSucceeded:
    case Kind::testCancelled:
    case Kind::saved:
    case Kind::removed:
    case Kind::unlocked:
      return false;
    default:
      return true;
  }
}

Kind kindOf(const ConnectionOutcome& outcome) {
  switch (outcome.result) {
    case ConnectionOutcome::Result::succeeded:
      return Kind::testSucceeded;
    case ConnectionOutcome::Result::cancelled:
      return Kind::testCancelled;
    case ConnectionOutcome::Result::failed:
      break;
  }
  if (!outcome.error || outcome.error->kind() == IMAPError::Kind::invalidArgument) {
    return Kind::testFailed;
  }
  return outcome.reached >= SessionStage::secured ? kindInSession(*outcome.error, *outcome.reached)
                                                  : kindBeforeSession(*outcome.error, outcome.reached);
}

Kind kindOf(UnlockOutcome outcome) {
  switch (outcome) {
    case UnlockOutcome::unlocked:
      return Kind::unlocked;
    case UnlockOutcome::dismissed:
      return Kind::unlockDismissed;
    case UnlockOutcome::noService:
      return Kind::keyringMissing;
    case UnlockOutcome::refused:
      return Kind::unlockRefused;
  }
  return Kind::unlockRefused;
}

AccountNews newsOf(const std::exception_ptr& failure, Kind other) {
  AccountNews news{other};
  try {
    std::rethrow_exception(failure);
  } catch (const KeychainError& error) {
    news.details = QString::fromStdString(error.description());
    const bool isStatus = error.kind() == KeychainError::Kind::unexpectedStatus;
    news.kind = isStatus && error.status() == SecretStatus::notAvailable            ? Kind::keyringMissing
                : isStatus && error.status() == SecretStatus::interactionNotAllowed ? Kind::keyringLocked
                                                                                    : Kind::keyringRefused;
  } catch (const std::exception& error) {
    news.details = QString::fromUtf8(error.what());
  }
  return news;
}

}  // namespace tarnwell
