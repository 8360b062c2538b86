#include <utility>

#include "IMAP/Responses/IMAPParser.h"
#include "IMAP/Responses/TokenReading.h"
#include "IMAP/Responses/Words.h"

namespace tarnwell {
namespace {

/// The elements of the parenthesised list after the word FETCH.
std::optional<IMAPTokenList> fetchAttributeList(IMAPTokenList tokens) {
  for (auto token = tokens.begin(); token != tokens.end(); ++token) {
    if ((*token).textEquals("FETCH")) {
      ++token;
      return token != tokens.end() && isList(*token) ? std::optional((*token).list()) : std::nullopt;
    }
  }
  return std::nullopt;
}

/// Collects the values of the attributes. A value of the wrong kind changes nothing.
class MessageReader {
 public:
  explicit MessageReader(IMAPMessage& message) : message_(message) {}

  void read(IMAPToken name, IMAPToken value) {
    if (name.textEquals("UID")) {
      const std::optional<std::string> text = value.text();
      if (const auto uid = text ? unsigned32(*text) : std::nullopt) {
        message_.uid = *uid;
        hasUID_ = true;
      }
    } else if (name.textEquals("INTERNALDATE")) {
      if (std::optional<std::string> text = value.text()) {
        message_.internalDate = std::move(text);
      }
    } else if (isList(value)) {
      readList(name, value.list());
    }
  }

  bool hasUID() const { return hasUID_; }

 private:
  void readList(IMAPToken name, IMAPTokenList list) {
    if (name.textEquals("FLAGS")) {
      message_.flags = textsOf(list);
    } else if (name.textEquals("ENVELOPE")) {
      message_.envelope = IMAPParser::parseEnvelope(list);
      message_.headerBytes = IMAPParser::parseHeaderBytes(list);
    } else if (name.textEquals("BODYSTRUCTURE") || name.textEquals("BODY")) {
      message_.bodyInfo = IMAPParser::parseBodyStructure(list);
    }
  }

  IMAPMessage& message_;
  bool hasUID_ = false;
};

}  // namespace

/// RFC 3501, section 9: message-data = nz-number SP ("EXPUNGE" / ("FETCH" SP msg-att))
///                      msg-att      = "(" (msg-att-dynamic / msg-att-static)
///                                     *(SP (msg-att-dynamic / msg-att-static)) ")"
std::optional<IMAPMessage> IMAPParser::parseFetchMessage(IMAPTokenList tokens) {
  const std::optional<IMAPTokenList> attributes = fetchAttributeList(tokens);
  if (!attributes) {
    return std::nullopt;
  }
  std::optional<IMAPMessage> message(std::in_place);
  MessageReader reader(*message);
  for (auto element = attributes->begin(); element != attributes->end(); ++element) {
    const IMAPToken name = *element;
    if (name.kind() != IMAPToken::Kind::atom) {
      continue;
    }
    // An unknown name is skipped together with its value.
    if (++element == attributes->end()) {
      break;
    }
    reader.read(name, *element);
  }
  if (!reader.hasUID()) {
    message.reset();
  }
  return message;
}

}  // namespace tarnwell
