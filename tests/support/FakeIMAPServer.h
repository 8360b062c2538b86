#pragma once

/// An IMAP server on a loopback port, with real TLS. It plays one dialogue for each connection.
///
///     FakeIMAPServer server({
///         answer("* OK ready\r\n"),
///         expect("A0001 LOGIN \"user@example.org\" \"pass\"\r\n"),
///         answer("A0001 OK done\r\n"),
///     });
///     ... let a client connect to server.port() ...
///     EXPECT_EQ(server.mismatch(), "");
///
/// Bytes are compared exactly. At the first difference the server closes the connection, and `mismatch` says
/// what was expected and what came. `received` keeps every byte from every client.
///
/// Whatever the dialogue says, the destructor fails the test when a client sent a forbidden command
/// (`WireGuard`): one that expunges, that creates, renames or deletes a mailbox, or that fills one or changes
/// its access rights.

#include <chrono>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "support/TestCertificates.h"

namespace tarnwell::test {

struct Step {
  enum class Kind {
    expect,        // read exactly these bytes
    answer,        // send these bytes
    answerSlowly,  // send them one byte at a time
    close,         // close with the closing message of TLS
    cut,           // close without it
    drip,          // send the bytes for ever, one byte after each `interval`, until the client leaves
    halfClose,     // close only the server's direction, and go on reading
    pause,         // send nothing until `resume`
    reset,         // TCP reset
    stall,         // send nothing more until the client leaves
    wait,          // send nothing for this `interval`
  };
  Kind kind;
  std::string bytes;
  /// How many times the answer is sent. It is repeated while it is sent, so a hundred megabytes need no
  /// memory.
  std::size_t times = 1;
  std::chrono::milliseconds interval{0};
};

inline Step expect(std::string bytes) { return {Step::Kind::expect, std::move(bytes)}; }
inline Step answer(std::string bytes, std::size_t times = 1) {
  return {Step::Kind::answer, std::move(bytes), times};
}
inline Step answerSlowly(std::string bytes) { return {Step::Kind::answerSlowly, std::move(bytes)}; }
inline Step closeHere() { return {Step::Kind::close, {}}; }
inline Step cutHere() { return {Step::Kind::cut, {}}; }
inline Step dripHere(std::string bytes, std::chrono::milliseconds interval) {
  return {Step::Kind::drip, std::move(bytes), 1, interval};
}
inline Step halfCloseHere() { return {Step::Kind::halfClose, {}}; }
inline Step pauseHere() { return {Step::Kind::pause, {}}; }
inline Step resetHere() { return {Step::Kind::reset, {}}; }
inline Step stallHere() { return {Step::Kind::stall, {}}; }
inline Step waitHere(std::chrono::milliseconds interval) { return {Step::Kind::wait, {}, 1, interval}; }

using Dialogue = std::vector<Step>;

struct FakeServerOptions {
  CertificateOptions certificate{};
  /// Speaks without TLS.
  bool plainText = false;
  /// The highest version of TLS, as OpenSSL numbers it. 0 means any.
  int maximumTLSVersion = 0;
  /// Accepts the connection and sends nothing, not even for TLS.
  bool mute = false;
  /// Where it listens: an IPv4 address of loopback.
  std::string address = "127.0.0.1";
};

class FakeIMAPServer {
 public:
  explicit FakeIMAPServer(Dialogue dialogue, FakeServerOptions options = {});
  ~FakeIMAPServer();
  FakeIMAPServer(const FakeIMAPServer&) = delete;
  FakeIMAPServer& operator=(const FakeIMAPServer&) = delete;

  std::uint16_t port() const;
  int acceptCount() const;
  std::string received() const;

  /// Waits until a connection reaches a pause. False when none does.
  bool awaitPause();
  /// Continues the paused connection.
  void resume();

  /// Waits until the connections so far have ended. Empty when every dialogue was played to its end, else
  /// what went wrong.
  std::string mismatch();

 private:
  struct State;
  std::unique_ptr<State> state_;
};

/// The dialogue of a session up to the selected inbox: greeting, login, capabilities, EXAMINE.
Dialogue loginDialogue(const std::string& select = "EXAMINE INBOX");

/// `first` followed by `second`.
Dialogue operator+(Dialogue first, const Dialogue& second);

/// All that the client has said by the end of the dialogue.
std::string expectedBytes(const Dialogue& dialogue);

inline constexpr const char* testEmail = "user@example.org";
inline constexpr const char* testPassword = "app-pass-word";

}  // namespace tarnwell::test
