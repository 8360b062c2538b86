#include <sys/stat.h>

#include <algorithm>
#include <cstdlib>

#include "Platform/Secrets/SessionBus.h"

namespace tarnwell {
namespace {

/// A result below 0 is an error number of the library.
int orThrow(int result) {
  if (result < 0) {
    throw BusError();
  }
  return result;
}

/// The microseconds that are left, at least 1: the library takes 0 for its own default.
std::uint64_t microsecondsUntil(Deadline deadline) {
  const auto left =
      std::chrono::duration_cast<std::chrono::microseconds>(deadline - std::chrono::steady_clock::now());
  return static_cast<std::uint64_t>(std::max<std::int64_t>(left.count(), 1));
}

/// Escapes a value for an address (D-Bus specification, "Server Addresses").
std::string escaped(std::string_view value) {
  constexpr std::string_view digits = "0123456789abcdef";
  constexpr std::string_view plain = "-_/.\\*";
  std::string text;
  for (const char character : value) {
    const auto byte = static_cast<unsigned char>(character);
    const bool isPlain = (character >= '0' && character <= '9') || (character >= 'A' && character <= 'Z') ||
                         (character >= 'a' && character <= 'z') || plain.find(character) != plain.npos;
    if (isPlain) {
      text += character;
    } else {
      text.append(1, '%').append(1, digits[byte >> 4]).append(1, digits[byte & 0x0F]);
    }
  }
  return text;
}

/// Keeps only the Unix sockets of a list of addresses, which semicolons separate.
std::optional<std::string> unixAddresses(std::string_view addresses) {
  std::string kept;
  for (std::size_t begin = 0; begin < addresses.size();) {
    const std::size_t end = std::min(addresses.find(';', begin), addresses.size());
    const std::string_view address = addresses.substr(begin, end - begin);
    if (address.starts_with("unix:")) {
      kept.append(kept.empty() ? "" : ";").append(address);
    }
    begin = end + 1;
  }
  return kept.empty() ? std::nullopt : std::optional(kept);
}

}  // namespace

std::optional<std::string> sessionBusAddress() {
  if (const char* address = std::getenv("DBUS_SESSION_BUS_ADDRESS"); address != nullptr && *address != '\0') {
    return unixAddresses(address);
  }
  const char* directory = std::getenv("XDG_RUNTIME_DIR");
  if (directory == nullptr || *directory != '/') {
    return std::nullopt;
  }
  const std::string path = std::string(directory) + "/bus";
  struct stat status{};
  if (::stat(path.c_str(), &status) < 0 || !S_ISSOCK(status.st_mode)) {
    return std::nullopt;
  }
  return "unix:path=" + escaped(path);
}

void BusMessage::appendText(const std::string& text) {
  orThrow(sd_bus_message_append_basic(message_.get(), SD_BUS_TYPE_STRING, text.c_str()));
}

void BusMessage::appendPath(const std::string& path) {
  orThrow(sd_bus_message_append_basic(message_.get(), SD_BUS_TYPE_OBJECT_PATH, path.c_str()));
}

void BusMessage::appendFlag(bool flag) {
  const int value = flag ? 1 : 0;
  orThrow(sd_bus_message_append_basic(message_.get(), SD_BUS_TYPE_BOOLEAN, &value));
}

void BusMessage::appendBytes(std::string_view bytes) {
  orThrow(sd_bus_message_append_array(message_.get(), SD_BUS_TYPE_BYTE, bytes.data(), bytes.size()));
}

void BusMessage::open(char kind, const char* contents) {
  orThrow(sd_bus_message_open_container(message_.get(), kind, contents));
}

void BusMessage::close() { orThrow(sd_bus_message_close_container(message_.get())); }

void BusMessage::holdsSecret() { orThrow(sd_bus_message_sensitive(message_.get())); }

std::optional<std::string> BusMessage::read(char kind) {
  const char* text = nullptr;
  const bool isThere =
      orThrow(sd_bus_message_read_basic(message_.get(), kind, static_cast<void*>(&text))) > 0;
  return isThere ? std::optional<std::string>(text) : std::nullopt;
}

std::optional<std::string> BusMessage::readText() { return read(SD_BUS_TYPE_STRING); }

std::optional<std::string> BusMessage::readPath() { return read(SD_BUS_TYPE_OBJECT_PATH); }

bool BusMessage::enter(char kind, const char* contents) {
  return orThrow(sd_bus_message_enter_container(message_.get(), kind, contents)) > 0;
}

void BusMessage::exit() { orThrow(sd_bus_message_exit_container(message_.get())); }

bool BusMessage::readFlag() {
  int value = 0;
  orThrow(sd_bus_message_read_basic(message_.get(), SD_BUS_TYPE_BOOLEAN, &value));
  return value != 0;
}

std::uint64_t BusMessage::readNumber() {
  std::uint64_t value = 0;
  orThrow(sd_bus_message_read_basic(message_.get(), SD_BUS_TYPE_UINT64, &value));
  return value;
}

std::string_view BusMessage::readBytes() {
  const void* bytes = nullptr;
  std::size_t size = 0;
  orThrow(sd_bus_message_read_array(message_.get(), SD_BUS_TYPE_BYTE, &bytes, &size));
  return {static_cast<const char*>(bytes), size};
}

void BusMessage::skip(const char* contents) { orThrow(sd_bus_message_skip(message_.get(), contents)); }

bool BusMessage::isSignal(const std::string& path, const char* interface, const char* member) const {
  const char* sentPath = sd_bus_message_get_path(message_.get());
  return orThrow(sd_bus_message_is_signal(message_.get(), interface, member)) > 0 && sentPath != nullptr &&
         sentPath == path;
}

SessionBus::SessionBus(const std::string& address, Deadline deadline) {
  sd_bus* bus = nullptr;
  orThrow(sd_bus_new(&bus));
  bus_.reset(bus);
  orThrow(sd_bus_set_address(bus, address.c_str()));
  orThrow(sd_bus_set_bus_client(bus, 1));
  orThrow(sd_bus_start(bus));
  // Wait here with a bound of our own: a call would wait for the end of the handshake without one.
  while (sd_bus_is_ready(bus) <= 0) {
    if (orThrow(sd_bus_process(bus, nullptr)) > 0) {
      continue;
    }
    if (std::chrono::steady_clock::now() >= deadline) {
      throw BusError();
    }
    orThrow(sd_bus_wait(bus, microsecondsUntil(deadline)));
  }
}

bool SessionBus::isOpen() {
  // Only signals and the end of the connection can have come. The signals are ignored.
  while (sd_bus_process(bus_.get(), nullptr) > 0) {
  }
  return sd_bus_is_ready(bus_.get()) > 0;
}

BusMessage SessionBus::methodCall(const char* destination, const std::string& path, const char* interface,
                                  const char* member) {
  sd_bus_message* message = nullptr;
  orThrow(sd_bus_message_new_method_call(bus_.get(), &message, destination, path.c_str(), interface, member));
  return BusMessage(message);
}

BusMessage SessionBus::call(const BusMessage& request, Deadline deadline) {
  sd_bus_error error = SD_BUS_ERROR_NULL;
  sd_bus_message* reply = nullptr;
  const int result =
      sd_bus_call(bus_.get(), request.message_.get(), microsecondsUntil(deadline), &error, &reply);
  const std::string errorName = error.name != nullptr ? error.name : "";
  sd_bus_error_free(&error);
  if (result < 0) {
    throw BusError(errorName);
  }
  return BusMessage(reply);
}

void SessionBus::subscribe(const std::string& rule, Deadline deadline) {
  constexpr const char* bus = "org.freedesktop.DBus";
  BusMessage request = methodCall(bus, "/org/freedesktop/DBus", bus, "AddMatch");
  request.appendText(rule);
  call(request, deadline);
}

std::optional<BusMessage> SessionBus::nextSignal(Deadline deadline) {
  for (;;) {
    sd_bus_message* received = nullptr;
    const int work = orThrow(sd_bus_process(bus_.get(), &received));
    if (received != nullptr) {
      BusMessage message(received);
      if (orThrow(sd_bus_message_is_signal(received, nullptr, nullptr)) > 0) {
        return message;
      }
    } else if (work == 0) {
      if (std::chrono::steady_clock::now() >= deadline) {
        return std::nullopt;
      }
      orThrow(sd_bus_wait(bus_.get(), microsecondsUntil(deadline)));
    }
  }
}

}  // namespace tarnwell
