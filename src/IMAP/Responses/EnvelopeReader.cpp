#include "IMAP/Decoding/Readings.h"
#include "IMAP/Decoding/TextDecoding.h"
#include "IMAP/Responses/IMAPParser.h"
#include "IMAP/Responses/TokenReading.h"
#include "Text/UTF8.h"

namespace tarnwell {
namespace {

std::optional<std::string> decodedTextOf(const std::optional<IMAPToken>& token) {
  std::optional<std::string> text = textOf(token);
  if (text && text->find("=?") != std::string::npos) {
    text = TextDecoding::decodeRFC2047(*text);
  }
  return text;
}

/// RFC 3501, section 9: address = "(" addr-name SP addr-adl SP addr-mailbox SP addr-host ")"
/// Deliberate: the markers of a group (section 7.4.2), which have no host, are read like other addresses.
std::vector<IMAPAddress> addressesOf(const std::optional<IMAPToken>& token) {
  std::vector<IMAPAddress> addresses;
  for (const IMAPToken address : listOf(token)) {
    ElementReader fields(address.list());
    const auto name = fields.next();
    fields.next();  // the source route
    const auto mailbox = fields.next();
    const auto host = fields.next();
    if (host) {
      addresses.push_back({decodedTextOf(name), textOf(mailbox), textOf(host)});
    }
  }
  return addresses;
}

std::string beginningOf(const std::optional<IMAPToken>& token) {
  const std::optional<std::string> bytes = token ? token->bytes() : std::nullopt;
  return std::string(bytePrefix(bytes ? std::string_view(*bytes) : "", TextDecoding::mostBytesOfAField));
}

}  // namespace

/// RFC 3501, section 9: envelope = "(" env-date SP env-subject SP env-from SP env-sender SP
///                                 env-reply-to SP env-to SP env-cc SP env-bcc SP
///                                 env-in-reply-to SP env-message-id ")"
IMAPEnvelope IMAPParser::parseEnvelope(IMAPTokenList elements) {
  ElementReader fields(elements);
  return {
      .date = textOf(fields.next()),
      .subject = decodedTextOf(fields.next()),
      .from = addressesOf(fields.next()),
      .sender = addressesOf(fields.next()),
      .replyTo = addressesOf(fields.next()),
      .to = addressesOf(fields.next()),
      .cc = addressesOf(fields.next()),
      .bcc = addressesOf(fields.next()),
      .inReplyTo = textOf(fields.next()),
      .messageID = textOf(fields.next()),
  };
}

HeaderBytes IMAPParser::parseHeaderBytes(IMAPTokenList elements) {
  ElementReader fields(elements);
  fields.next();  // the date
  HeaderBytes bytes;
  bytes.subject = beginningOf(fields.next());
  const IMAPTokenList senders = listOf(fields.next());
  if (!senders.empty()) {
    bytes.sender = beginningOf((*senders.begin()).list()[0]);
  }
  return bytes;
}

}  // namespace tarnwell
