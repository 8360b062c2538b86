#include "Platform/Secrets/SecretServiceConversation.h"

#include <chrono>
#include <utility>

namespace tarnwell {
namespace {

constexpr const char* serviceName = "org.freedesktop.secrets";
constexpr const char* servicePath = "/org/freedesktop/secrets";
constexpr const char* serviceInterface = "org.freedesktop.Secret.Service";
constexpr const char* itemInterface = "org.freedesktop.Secret.Item";
constexpr const char* collectionInterface = "org.freedesktop.Secret.Collection";
using Clock = std::chrono::steady_clock;

/// The path that the service sends when there is no prompt or no object.
constexpr std::string_view noObject = "/";

constexpr const char* accessGroupAttribute = "accessGroup";

/// Throws when the answer does not have a text.
std::string required(std::optional<std::string> text) {
  if (!text) {
    throw BusError();
  }
  return std::move(*text);
}

void appendAttribute(BusMessage& message, const char* name, const std::string& value) {
  message.open('e', "ss");
  message.appendText(name);
  message.appendText(value);
  message.close();
}

void appendAttributes(BusMessage& message, const SecretItemQuery& query) {
  message.open('a', "{ss}");
  appendAttribute(message, "service", query.service);
  appendAttribute(message, "account", query.account);
  if (query.accessGroup) {
    appendAttribute(message, accessGroupAttribute, *query.accessGroup);
  }
  message.close();
}

/// The properties of a new item.
void appendItemProperties(BusMessage& message, const SecretItemQuery& query) {
  message.open('a', "{sv}");
  message.open('e', "sv");
  message.appendText(std::string(itemInterface) + ".Label");
  message.open('v', "s");
  message.appendText("Tarnwell");
  message.close();
  message.close();
  message.open('e', "sv");
  message.appendText(std::string(itemInterface) + ".Attributes");
  message.open('v', "a{ss}");
  appendAttributes(message, query);
  message.close();
  message.close();
  message.close();
}

std::vector<std::string> readPaths(BusMessage& message) {
  std::vector<std::string> paths;
  message.enter('a', "o");
  while (std::optional<std::string> path = message.readPath()) {
    paths.push_back(std::move(*path));
  }
  message.exit();
  return paths;
}

std::optional<std::string> readAccessGroup(BusMessage& message) {
  std::optional<std::string> accessGroup;
  message.enter('a', "{ss}");
  while (message.enter('e', "ss")) {
    if (message.readText() == accessGroupAttribute) {
      accessGroup = required(message.readText());
    } else {
      message.skip("s");
    }
    message.exit();
  }
  message.exit();
  return accessGroup;
}

}  // namespace

/// The properties of an item or a collection.
struct SecretServiceConversation::Properties {
  std::optional<bool> isLocked = std::nullopt;
  bool hasAttributes = false;  // always false for a collection
  std::optional<std::string> accessGroup = std::nullopt;
  std::uint64_t modified = 0;

  /// Reads one property, starting with its name.
  void read(BusMessage& message) {
    const std::string name = required(message.readText());
    if (name == "Locked") {
      message.enter('v', "b");
      isLocked = message.readFlag();
    } else if (name == "Modified") {
      message.enter('v', "t");
      modified = message.readNumber();
    } else if (name == "Attributes") {
      message.enter('v', "a{ss}");
      hasAttributes = true;
      accessGroup = readAccessGroup(message);
    } else {
      message.skip("v");
      return;
    }
    message.exit();
  }
};

SecretServiceConversation::SecretServiceConversation(std::string address, Deadline deadline)
    : address_(std::move(address)), deadline_(deadline), bus_(address_, deadline) {}

bool SecretServiceConversation::isOpenAt(const std::string& address) {
  return address == address_ && bus_.isOpen();
}

SecretServiceConversation::Matches SecretServiceConversation::search(const SecretItemQuery& query) {
  const std::optional<Listing> before = std::exchange(listing_, std::nullopt);
  if (query.accessGroup) {
    listing_ = list({query.service, query.account, std::nullopt});
    return listing_ ? listing_->matches(query.accessGroup) : ask(query);
  }
  return before && before->query == query && Clock::now() < before->end ? before->matches(std::nullopt)
                                                                        : ask(query);
}

SecretServiceConversation::Matches SecretServiceConversation::Listing::matches(
    const std::optional<std::string>& accessGroup) const {
  Matches matches;
  for (const Item& item : items) {
    if (item.accessGroup == accessGroup) {
      matches.unlocked.push_back(item.item);
    }
  }
  return matches;
}

std::optional<SecretServiceConversation::Listing> SecretServiceConversation::list(
    const SecretItemQuery& query) {
  constexpr std::chrono::milliseconds use(100);
  Listing listing{query, {}, Clock::now() + use};
  const auto [unlocked, locked] = searchItems(query);
  for (const std::string& path : unlocked) {
    const Properties properties = propertiesOf(path, itemInterface);
    if (properties.isLocked.value_or(true) || !properties.hasAttributes) {
      return std::nullopt;
    }
    listing.items.push_back({{path, properties.modified}, properties.accessGroup});
  }
  return locked.empty() ? std::optional(std::move(listing)) : std::nullopt;
}

SecretServiceConversation::Matches SecretServiceConversation::ask(const SecretItemQuery& query) {
  const auto [unlocked, locked] = searchItems(query);
  Matches matches;
  matches.hasLocked = !locked.empty();
  for (const std::string& path : unlocked) {
    const Properties properties = propertiesOf(path, itemInterface);
    if (!properties.isLocked || !properties.hasAttributes) {
      throw BusError();
    }
    if (*properties.isLocked) {
      matches.hasLocked = true;
    } else if (query.accessGroup || !properties.accessGroup) {
      matches.unlocked.push_back({path, properties.modified});
    }
  }
  return matches;
}

std::pair<std::vector<std::string>, std::vector<std::string>> SecretServiceConversation::searchItems(
    const SecretItemQuery& query) {
  BusMessage request = methodCall(servicePath, serviceInterface, "SearchItems");
  appendAttributes(request, query);
  BusMessage reply = call(request);
  std::vector<std::string> unlocked = readPaths(reply);
  return {std::move(unlocked), readPaths(reply)};
}

void SecretServiceConversation::handOver(const std::string& item, SecretItems::Receiver& receiver) {
  BusMessage request = methodCall(item, itemInterface, "GetSecret");
  request.appendPath(session());
  BusMessage reply = call(request);
  reply.holdsSecret();
  reply.enter('r', "oayays");
  reply.skip("o");
  const std::string_view parameters = reply.readBytes();
  const std::string_view bytes = reply.readBytes();
  if (!key_) {
    receiver.receive(bytes);
  } else if (!key_->decrypt(parameters, bytes, [&](std::string_view secret) { receiver.receive(secret); })) {
    throw BusError();
  }
}

std::optional<std::string> SecretServiceConversation::defaultCollection() {
  BusMessage request = methodCall(servicePath, serviceInterface, "ReadAlias");
  request.appendText("default");
  std::string path = required(call(request).readPath());
  return path == noObject ? std::nullopt : std::optional(std::move(path));
}

bool SecretServiceConversation::isLocked(const std::string& collection) {
  return propertiesOf(collection, collectionInterface).isLocked.value_or(true);
}

bool SecretServiceConversation::create(const std::string& collection, const SecretItemQuery& query,
                                       std::string_view bytes) {
  BusMessage request = methodCall(collection, collectionInterface, "CreateItem");
  request.holdsSecret();
  appendItemProperties(request, query);
  appendSecret(request, bytes);
  request.appendFlag(false);  // do not replace an item with the same attributes
  BusMessage reply = call(request);
  reply.skip("o");
  return required(reply.readPath()) == noObject;
}

bool SecretServiceConversation::erase(const std::string& item) {
  return required(call(methodCall(item, itemInterface, "Delete")).readPath()) == noObject;
}

BusMessage SecretServiceConversation::methodCall(const std::string& path, const char* interface,
                                                 const char* member) {
  return bus_.methodCall(serviceName, path, interface, member);
}

SecretServiceConversation::Properties SecretServiceConversation::propertiesOf(const std::string& path,
                                                                              const char* interface) {
  BusMessage request = methodCall(path, "org.freedesktop.DBus.Properties", "GetAll");
  request.appendText(interface);
  BusMessage reply = call(request);
  Properties properties;
  reply.enter('a', "{sv}");
  while (reply.enter('e', "sv")) {
    properties.read(reply);
    reply.exit();
  }
  return properties;
}

void SecretServiceConversation::appendSecret(BusMessage& request, std::string_view bytes) {
  request.open('r', "oayays");
  request.appendPath(session());
  if (key_) {
    const TransferKey::Encrypted secret = key_->encrypted(bytes);
    request.appendBytes(secret.parameters);
    request.appendBytes(secret.bytes);
  } else {
    request.appendBytes("");
    request.appendBytes(bytes);
  }
  request.appendText("text/plain");
  request.close();
}

/// The session for secrets. Opens it on first use, without encryption if the service does not support that.
const std::string& SecretServiceConversation::session() {
  if (session_.empty()) {
    try {
      openEncryptedSession();
    } catch (const BusError& error) {
      if (error.name() != "org.freedesktop.DBus.Error.NotSupported") {
        throw;
      }
      openPlainSession();
    }
  }
  return session_;
}

void SecretServiceConversation::openEncryptedSession() {
  const KeyAgreement agreement;
  BusMessage request = methodCall(servicePath, serviceInterface, "OpenSession");
  request.appendText("dh-ietf1024-sha256-aes128-cbc-pkcs7");
  request.open('v', "ay");
  request.appendBytes(agreement.publicKey());
  request.close();
  BusMessage reply = call(request);
  reply.enter('v', "ay");
  key_ = agreement.agree(reply.readBytes());
  reply.exit();
  if (!key_) {
    throw BusError();
  }
  session_ = required(reply.readPath());
}

void SecretServiceConversation::openPlainSession() {
  BusMessage request = methodCall(servicePath, serviceInterface, "OpenSession");
  request.appendText("plain");
  request.open('v', "s");
  request.appendText("");
  request.close();
  BusMessage reply = call(request);
  reply.skip("v");
  session_ = required(reply.readPath());
}

}  // namespace tarnwell
