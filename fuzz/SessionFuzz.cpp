// A server's whole side of a search. However it answers, the session ends, sends only what it may, and reads
// each message once. No response is the body of two messages.

#include <algorithm>
#include <chrono>
#include <map>
#include <memory>

#include "Fuzzing.h"
#include "IMAP/Connection/IMAPError.h"
#include "IMAP/InboxSession.h"
#include "SilentLog.h"
#include "support/WireGuard.h"

namespace tarnwell {
namespace {

/// Hands out the server's bytes whatever the client sends, and then ends.
class DeafServer : public ByteStream {
 public:
  DeafServer(const fuzz::Cuts& cuts, std::string_view bytes, test::WireGuard& guard) : guard_(guard) {
    cuts.forEachPiece(bytes, [this](std::string_view piece) { pieces_.push_back(piece); });
  }

  void endBy(std::chrono::steady_clock::time_point) override {}
  void connect() override {}
  void send(std::string_view bytes) override { guard_.clientSent(bytes); }
  std::string_view receive() override {
    const std::string_view piece = next_ < pieces_.size() ? pieces_[next_++] : std::string_view();
    guard_.serverSent(piece);
    return piece;
  }
  void close() noexcept override {}

 private:
  test::WireGuard& guard_;
  std::vector<std::string_view> pieces_;
  std::size_t next_ = 0;
};

/// The most bodies that the bytes can hold.
std::size_t literalsIn(std::string_view bytes) {
  return static_cast<std::size_t>(std::ranges::count(bytes, '{'));
}

}  // namespace
}  // namespace tarnwell

FUZZ_TARGET(std::string_view input) {
  static const SilentLog silent;
  const Cuts cuts(input);
  test::WireGuard guard;
  IMAPClient client(
      [&] { return std::make_unique<IMAPConnection>(std::make_unique<DeafServer>(cuts, input, guard)); },
      "user@example.org", Secret("app-pass-word"));
  std::size_t bodies = 0;
  try {
    withInbox(client, IMAPClient::Access::readOnly, [&](IMAPClient& session) {
      const std::vector<IMAPMessage> messages = session.fetchMessages(session.searchInbox({}, 100));
      std::map<const IMAPMessage*, int> readings;
      std::vector<const IMAPMessage*> pointers;
      for (const IMAPMessage& message : messages) {
        pointers.push_back(&message);
      }
      session.fetchBodyTexts(pointers, [&](const IMAPMessage& message, const IMAPClient::BodyText& body) {
        require(++readings[&message] == 1, "a message is read once");
        bodies += body.hadBody ? 1 : 0;
      });
      require(readings.size() == messages.size(), "each message is read");
      return true;
    });
  } catch (const IMAPError&) {
    // Most inputs are no session.
  }
  require(bodies <= literalsIn(input), "no response is the body of two messages");
  require(guard.violation().empty(), "only what may be sent is sent");
}
