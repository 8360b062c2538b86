#pragma once

/// Method calls on the user's session bus (D-Bus specification), each of which ends in time. Linux only;
/// included by source files alone, since it brings the library's headers with it.
///
///     SessionBus bus(*sessionBusAddress(), deadline);
///     BusMessage request = bus.methodCall("org.example.Shelf", "/shelf", "org.example.Shelf", "Find");
///     request.appendText("tea");
///     BusMessage reply = bus.call(request, deadline);
///     for (reply.enter('a', "o"); std::optional<std::string> path = reply.readPath();) { ... }
///
/// Whatever goes wrong is a `BusError`.
///
/// Threads: one at a time for each bus and its messages. No thread is started.

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

/// Why there is no answer: the D-Bus name of the error that came instead; empty when the bus cannot be
/// reached, the connection broke, the deadline passed, or the answer is not of the expected types.
class BusError : public std::exception {
 public:
  explicit BusError(std::string name = {}) : name_(std::move(name)) {}

  const std::string& name() const { return name_; }
  const char* what() const noexcept override { return "no answer from the session bus"; }

 private:
  std::string name_;
};

/// The address in the environment, else that of the socket that systemd and elogind put into the runtime
/// directory (sd_bus_default_user(3)); absent without either. Of the address only the Unix sockets are
/// taken: other kinds would start a program or ask a name server, in a time that nothing bounds.
std::optional<std::string> sessionBusAddress();

/// A message that is being written or read, from its first argument to its last.
///
/// The characters are those of D-Bus signatures: 'a' with the signature of the elements, 'v' with that of
/// the contents, 'r' and 'e' with those of the members.
class BusMessage {
 public:
  explicit BusMessage(sd_bus_message* message) : message_(message) {}

  /// Texts are UTF-8 without U+0000; paths are paths of objects.
  void appendText(const std::string& text);
  void appendPath(const std::string& path);
  void appendFlag(bool flag);
  void appendBytes(std::string_view bytes);
  void open(char kind, const char* contents);
  void close();

  /// Has the message's memory overwritten before it is given back.
  void holdsSecret();

  /// Absent, or false for `enter`, behind the last element of an array.
  std::optional<std::string> readText();
  std::optional<std::string> readPath();
  bool enter(char kind, const char* contents);
  void exit();

  bool readFlag();
  std::uint64_t readNumber();
  /// Valid as long as the message.
  std::string_view readBytes();
  void skip(const char* contents);

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
  /// Connects on a connection that nobody shares.
  SessionBus(const std::string& address, Deadline deadline);

  /// False when the other side has closed the connection. Never waits.
  bool isOpen();

  BusMessage methodCall(const char* destination, const std::string& path, const char* interface,
                        const char* member);

  /// Sends the request and waits for its answer.
  BusMessage call(const BusMessage& request, Deadline deadline);

 private:
  struct Close {
    void operator()(sd_bus* bus) const { sd_bus_close_unref(bus); }
  };
  std::unique_ptr<sd_bus, Close> bus_;
};

}  // namespace tarnwell
