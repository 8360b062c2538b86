#pragma once

/// Method calls on the user's session bus (D-Bus specification), each with a deadline. Linux only. Include
/// this header only in source files: it brings the library's headers with it.
///
///     SessionBus bus(*sessionBusAddress(), deadline);
///     BusMessage request = bus.methodCall("org.example.Shelf", "/shelf", "org.example.Shelf", "Find");
///     request.appendText("tea");
///     BusMessage reply = bus.call(request, deadline);
///     for (reply.enter('a', "o"); std::optional<std::string> path = reply.readPath();) { ... }
///
/// Every failure is a `BusError`.
///
/// Threads: one at a time for each bus and its messages. Starts no thread.

#include <systemd/sd-bus.h>
#include <chrono>
#include <cstdint>
#include <exception>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace tarnwell {

using Deadline = std::chrono::steady_clock::time_point;

/// Says why there is no answer. `name` is the D-Bus name of the error that the other side sent. It is empty
/// when the bus cannot be reached, the connection broke, the deadline passed, or the answer has other types
/// than expected.
class BusError : public std::exception {
 public:
  explicit BusError(std::string name = {}) : name_(std::move(name)) {}

  const std::string& name() const { return name_; }
  const char* what() const noexcept override { return "no answer from the session bus"; }

 private:
  std::string name_;
};

/// The bus address from the environment, else that of the socket that systemd and elogind put into the
/// runtime directory (sd_bus_default_user(3)). Absent when there is neither. Only Unix sockets are kept.
/// Other kinds of address would start a program or ask a name server, and nothing would bound that time.
std::optional<std::string> sessionBusAddress();

/// A message to write or to read, from its first argument to its last.
///
/// `kind` is a character of a D-Bus signature. `contents` is a signature: of the elements for 'a', of the
/// contents for 'v', of the members for 'r' and 'e'.
class BusMessage {
 public:
  explicit BusMessage(sd_bus_message* message) : message_(message) {}

  /// Texts are UTF-8 without U+0000. Paths are D-Bus object paths.
  void appendText(const std::string& text);
  void appendPath(const std::string& path);
  void appendFlag(bool flag);
  void appendBytes(std::string_view bytes);
  void open(char kind, const char* contents);
  void close();

  /// Makes the library overwrite the message's memory before it frees it.
  void holdsSecret();

  /// After the last element of an array, the reads return absent and `enter` returns false.
  std::optional<std::string> readText();
  std::optional<std::string> readPath();
  bool enter(char kind, const char* contents);
  void exit();

  bool readFlag();
  std::uint64_t readNumber();
  /// Valid as long as the message lives.
  std::string_view readBytes();
  void skip(const char* contents);

  bool isSignal(const std::string& path, const char* interface, const char* member) const;

 private:
  friend class SessionBus;

  struct Release {
    void operator()(sd_bus_message* message) const { sd_bus_message_unref(message); }
  };
  std::optional<std::string> read(char kind);

  std::unique_ptr<sd_bus_message, Release> message_;
};

class SessionBus {
 public:
  /// Opens a connection of its own.
  SessionBus(const std::string& address, Deadline deadline);

  /// False when the other side has closed the connection. Never waits.
  bool isOpen();

  BusMessage methodCall(const char* destination, const std::string& path, const char* interface,
                        const char* member);

  /// Sends the request and waits for its answer.
  BusMessage call(const BusMessage& request, Deadline deadline);

  /// Asks the bus for the signals that fit a rule (D-Bus specification, "Match Rules").
  void subscribe(const std::string& rule, Deadline deadline);

  /// The next signal. Absent when none comes before the deadline.
  std::optional<BusMessage> nextSignal(Deadline deadline);

 private:
  struct Close {
    void operator()(sd_bus* bus) const { sd_bus_close_unref(bus); }
  };
  std::unique_ptr<sd_bus, Close> bus_;
};

}  // namespace tarnwell
