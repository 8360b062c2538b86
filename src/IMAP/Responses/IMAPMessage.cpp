#include "IMAP/Responses/IMAPMessage.h"

#include "IMAP/Responses/JSONFields.h"
#include "Text/ASCIICase.h"

namespace tarnwell {

constinit const IMAPEnvelope IMAPEnvelope::empty{};
constinit const IMAPBodyInfo IMAPBodyInfo::unknown{};

std::optional<std::string> IMAPAddress::email() const {
  if (!mailbox || !host) {
    return std::nullopt;
  }
  return *mailbox + "@" + *host;
}

std::string IMAPAddress::display() const {
  const std::optional<std::string> address = email();
  if (!address) {
    return name.value_or("");
  }
  return name && !name->empty() ? *name + " <" + *address + ">" : *address;
}

bool IMAPMessage::isUnread() const {
  return std::none_of(flags.begin(), flags.end(),
                      [](const std::string& flag) { return equalsIgnoringASCIICase(flag, "\\Seen"); });
}

void to_json(nlohmann::json& json, const IMAPAddress& address) {
  json = nlohmann::json::object();
  writeOptional(json, "name", address.name);
  writeOptional(json, "mailbox", address.mailbox);
  writeOptional(json, "host", address.host);
}

void from_json(const nlohmann::json& json, IMAPAddress& address) {
  address = {
      .name = readOptional(json, "name"),
      .mailbox = readOptional(json, "mailbox"),
      .host = readOptional(json, "host"),
  };
}

void to_json(nlohmann::json& json, const IMAPEnvelope& envelope) {
  json = {{"from", envelope.from}, {"sender", envelope.sender}, {"replyTo", envelope.replyTo},
          {"to", envelope.to},     {"cc", envelope.cc},         {"bcc", envelope.bcc}};
  writeOptional(json, "date", envelope.date);
  writeOptional(json, "subject", envelope.subject);
  writeOptional(json, "inReplyTo", envelope.inReplyTo);
  writeOptional(json, "messageID", envelope.messageID);
}

void from_json(const nlohmann::json& json, IMAPEnvelope& envelope) {
  using Addresses = std::vector<IMAPAddress>;
  envelope = {
      .date = readOptional(json, "date"),
      .subject = readOptional(json, "subject"),
      .from = json.at("from").get<Addresses>(),
      .sender = json.at("sender").get<Addresses>(),
      .replyTo = json.at("replyTo").get<Addresses>(),
      .to = json.at("to").get<Addresses>(),
      .cc = json.at("cc").get<Addresses>(),
      .bcc = json.at("bcc").get<Addresses>(),
      .inReplyTo = readOptional(json, "inReplyTo"),
      .messageID = readOptional(json, "messageID"),
  };
}

}  // namespace tarnwell
