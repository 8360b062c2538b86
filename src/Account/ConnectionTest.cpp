#include "Account/ConnectionTest.h"

#include <utility>

#include "Core/BridgeConstants.h"
#include "IMAP/InboxSession.h"

namespace tarnwell {

ConnectionOutcome testConnection(const AppConfig& config, Secret password, SessionWatch watch) {
  using Result = ConnectionOutcome::Result;
  ConnectionOutcome outcome;
  IMAPClient client(config.imapHost, config.imapPort, config.email, std::move(password),
                    BridgeConstants::networkTimeoutSeconds);
  const auto callersReport = std::move(watch.reached);
  watch.reached = [&](SessionStage stage) {
    outcome.reached = stage;
    if (callersReport) {
      callersReport(stage);
    }
  };
  client.watch(std::move(watch));
  try {
    outcome.capabilities = withInbox(client, IMAPClient::Access::readOnly, [&](const IMAPClient& session) {
      outcome.supportsMove = session.supportsMove();
      return session.serverCapabilities();
    });
  } catch (const Cancelled&) {
    outcome.result = Result::cancelled;
  } catch (const IMAPError& error) {
    outcome.result = Result::failed;
    outcome.error = error;
  } catch (const std::exception&) {
    outcome.result = Result::failed;
  }
  return outcome;
}

}  // namespace tarnwell
