/// A session that another thread gives up: at every wait, at once, and never between a change and its answer.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <thread>

#include "IMAP/ClientOf.h"
#include "IMAP/Connection/IMAPError.h"
#include "IMAP/InboxSession.h"
#include "support/FakeIMAPServer.h"
#include "support/FullListener.h"

namespace tarnwell::test {
namespace {

using Clock = std::chrono::steady_clock;
using namespace std::chrono_literals;

/// Far below the 10 seconds that a wait may take, and far above what a busy machine needs.
constexpr auto soon = 3s;

/// Runs the operation and cancels it from another thread once it waits. True when it ended with `Cancelled`.
template <class Operation>
bool isCancelledDuring(IMAPClient& client, const Operation& operation,
                       const std::function<void()>& awaitTheWait) {
  SessionWatch watch;
  client.watch(watch);
  std::thread canceller([&] {
    awaitTheWait();
    watch.cancellation.cancel();
  });
  const Clock::time_point begin = Clock::now();
  bool isCancelled = false;
  try {
    operation();
  } catch (const Cancelled&) {
    isCancelled = true;
  } catch (const IMAPError& error) {
    ADD_FAILURE() << error.description();
  }
  canceller.join();
  EXPECT_LT(Clock::now() - begin, soon);
  return isCancelled;
}

Dialogue searchDialogue() {
  return loginDialogue() + Dialogue{
                               expect("A0004 UID SEARCH ALL\r\n"),
                               answer("* SEARCH\r\nA0004 OK done\r\n"),
                               expect("A0005 LOGOUT\r\n"),
                               answer("* BYE\r\nA0005 OK done\r\n"),
                           };
}

/// The server falls silent before each of its answers in turn.
TEST(CancelledSession, endsAtEveryWait) {
  const Dialogue whole = searchDialogue();
  for (std::size_t silent = 0; silent < whole.size(); ++silent) {
    if (whole[silent].kind != Step::Kind::answer || silent + 1 == whole.size()) {
      continue;
    }
    SCOPED_TRACE("silent before step " + std::to_string(silent));
    Dialogue dialogue(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(silent));
    dialogue.push_back(pauseHere());
    dialogue.push_back(stallHere());
    FakeIMAPServer server(dialogue);
    IMAPClient client = clientOf(server);
    EXPECT_TRUE(isCancelledDuring(
        client,
        [&] {
          withInbox(client, IMAPClient::Access::readOnly,
                    [](IMAPClient& session) { return session.searchInbox({}, 20); });
        },
        [&] { server.awaitPause(); }));
    server.resume();
  }
}

TEST(CancelledSession, endsWhileItConnects) {
  const FullListener listener;
  IMAPClient client("localhost", listener.endpoint().port(), testEmail, Secret(testPassword), 10s);
  EXPECT_TRUE(
      isCancelledDuring(client, [&] { client.connect(); }, [] { std::this_thread::sleep_for(50ms); }));
}

TEST(CancelledSession, endsDuringTheHandshake) {
  FakeIMAPServer server({}, {.mute = true});
  IMAPClient client = clientOf(server);
  EXPECT_TRUE(
      isCancelledDuring(client, [&] { client.connect(); }, [] { std::this_thread::sleep_for(50ms); }));
}

TEST(CancelledSession, doesNotBeginAfterTheCancellation) {
  FakeIMAPServer server(loginDialogue());
  IMAPClient client = clientOf(server);
  SessionWatch watch;
  watch.cancellation.cancel();
  client.watch(watch);
  EXPECT_THROW(client.connect(), Cancelled);
  EXPECT_EQ(server.received(), "");
}

/// The command is on the wire when the cancellation comes, so its answer is waited for.
TEST(CancelledSession, changeOnTheWireIsFinished) {
  FakeIMAPServer server(loginDialogue("SELECT INBOX") + Dialogue{
                                                            expect("A0004 UID STORE 7 +FLAGS (\\Seen)\r\n"),
                                                            pauseHere(),
                                                            answer("A0004 OK done\r\n"),
                                                            expect("A0005 LOGOUT\r\n"),
                                                            answer("* BYE\r\nA0005 OK done\r\n"),
                                                        });
  IMAPClient client = clientOf(server);
  EXPECT_FALSE(isCancelledDuring(
      client,
      [&] {
        withInbox(client, IMAPClient::Access::readWrite, [](IMAPClient& session) {
          session.markRead(7);
          return true;
        });
      },
      [&] {
        server.awaitPause();
        std::thread([&server] {
          std::this_thread::sleep_for(100ms);
          server.resume();
        }).detach();
      }));
  EXPECT_EQ(server.mismatch(), "");
}

TEST(CancelledSession, changeAfterTheCancellationIsNotSent) {
  FakeIMAPServer server(loginDialogue("SELECT INBOX"));
  IMAPClient client = clientOf(server);
  SessionWatch watch;
  client.watch(watch);
  client.connectToInbox(IMAPClient::Access::readWrite);
  watch.cancellation.cancel();
  EXPECT_THROW(client.markRead(7), Cancelled);
  client.disconnect();
  server.mismatch();
  EXPECT_THAT(server.received(), testing::Not(testing::HasSubstr("STORE")));
}

/// The cancellation comes before the answer to MOVE. That refuses, so nothing has changed yet.
TEST(CancelledSession, copyIsNotBegunAfterARefusedMove) {
  FakeIMAPServer server(loginDialogue("SELECT INBOX") + Dialogue{
                                                            expect("A0004 UID MOVE 7 \"Archive\"\r\n"),
                                                            pauseHere(),
                                                            answer("A0004 NO no\r\n"),
                                                            expect("A0005 LOGOUT\r\n"),
                                                            answer("* BYE\r\nA0005 OK done\r\n"),
                                                        });
  IMAPClient client = clientOf(server);
  SessionWatch watch;
  client.watch(watch);
  std::thread canceller([&] {
    server.awaitPause();
    watch.cancellation.cancel();
    server.resume();
  });
  EXPECT_THROW(withInbox(client, IMAPClient::Access::readWrite,
                         [](IMAPClient& session) {
                           return session.move(7, "Archive", IMAPClient::CopyFallback::allowed);
                         }),
               Cancelled);
  canceller.join();
  EXPECT_EQ(server.mismatch(), "");
  EXPECT_THAT(server.received(), testing::Not(testing::HasSubstr("COPY")));
}

TEST(SessionStages, areReportedInOrderAsFarAsTheSessionCame) {
  using enum SessionStage;
  const std::vector<SessionStage> all{nameFound, connected, secured, signedIn, inboxOpened};
  const Dialogue refused{answer("* OK ready\r\n"),
                         expect("A0001 LOGIN \"user@example.org\" \"app-pass-word\"\r\n"),
                         answer("A0001 NO no\r\n")};
  const struct {
    Dialogue dialogue;
    FakeServerOptions options;
    std::size_t reached;
  } rows[] = {
      {loginDialogue(), {}, 5},
      {refused, {}, 3},
      {{}, {.certificate = {.selfSigned = true}}, 2},
  };
  for (const auto& row : rows) {
    FakeIMAPServer server(row.dialogue, row.options);
    IMAPClient client = clientOf(server);
    std::vector<SessionStage> reached;
    client.watch({.reached = [&](SessionStage stage) { reached.push_back(stage); }});
    try {
      client.connectToInbox(IMAPClient::Access::readOnly);
    } catch (const std::exception&) {
      EXPECT_LT(row.reached, all.size());
    }
    EXPECT_EQ(reached, std::vector(all.begin(), all.begin() + static_cast<std::ptrdiff_t>(row.reached)));
  }
}

}  // namespace
}  // namespace tarnwell::test
