#include "Platform/SystemLog.h"

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <cstdint>
#include <cstring>

#include "Text/UTF8.h"

namespace tarnwell {
namespace {

constexpr std::size_t maxMessageBytes = std::size_t{32} * 1024;

/// The priorities of syslog (RFC 5424, section 6.2.1), which the journal also uses.
std::string_view priority(SystemLogType type) {
  switch (type) {
    case SystemLogType::debug:
      return "7";
    case SystemLogType::info:
      return "6";
    case SystemLogType::standard:
      return "5";
    case SystemLogType::error:
      return "3";
  }
  return "5";
}

/// Writes the length before a value that contains a line feed, as 64 bits little-endian. A text then cannot
/// end its own field and begin another.
void appendField(std::string& datagram, std::string_view name, std::string_view value) {
  datagram.append(name);
  if (value.find('\n') == std::string_view::npos) {
    datagram.append("=");
  } else {
    datagram.append("\n");
    for (unsigned shift = 0; shift < 64; shift += 8) {
      datagram.push_back(static_cast<char>(static_cast<std::uint64_t>(value.size()) >> shift));
    }
  }
  datagram.append(value).append("\n");
}

}  // namespace

struct SystemLog::State {
  State(std::string subsystemName, std::string socketPath)
      : subsystem(std::move(subsystemName)), address(std::move(socketPath)) {}
  State(const State&) = delete;
  ~State() {
    if (socket >= 0) {
      ::close(socket);
    }
  }

  std::string subsystem;
  std::string address;
  int socket = ::socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);  // never connected
};

SystemLog::SystemLog(std::string subsystem, std::string address)
    : state_(std::make_unique<State>(std::move(subsystem), std::move(address))) {}

SystemLog::~SystemLog() = default;

// The journal drops entries by its own settings, and does not tell them to the programs.
bool SystemLog::isEnabled(SystemLogType /*type*/, std::string_view /*category*/) const {
  return state_->socket >= 0;
}

void SystemLog::write(SystemLogType type, std::string_view category, std::string_view message) const {
  sockaddr_un journal{};
  journal.sun_family = AF_UNIX;
  if (state_->socket < 0 || state_->address.size() >= sizeof journal.sun_path) {
    return;
  }
  std::memcpy(journal.sun_path, state_->address.data(), state_->address.size());

  std::string datagram;
  appendField(datagram, "MESSAGE", bytePrefix(message, maxMessageBytes));
  appendField(datagram, "PRIORITY", priority(type));
  appendField(datagram, "SYSLOG_IDENTIFIER", "tarnwell");
  appendField(datagram, "SUBSYSTEM", state_->subsystem);
  appendField(datagram, "CATEGORY", category);
  // Each datagram carries the address, so a restarted journal is found again. The result is ignored: an entry
  // that the journal does not take is lost, without other harm.
  (void)::sendto(state_->socket, datagram.data(), datagram.size(), MSG_NOSIGNAL,
                 reinterpret_cast<const sockaddr*>(&journal), sizeof journal);
}

std::string SystemLog::defaultAddress() { return "/run/systemd/journal/socket"; }

}  // namespace tarnwell
