#include <utility>

#include "IMAP/IMAPParser.h"
#include "IMAP/TextDecoding.h"
#include "IMAP/TokenReading.h"

namespace tarnwell {
namespace {

std::optional<std::string> decodedTextOf(const std::optional<IMAPToken>& token) {
  std::optional<std::string> text = textOf(token);
  const bool mayHaveEncodedWords = text && text->find("=?") != std::string::npos;
  return mayHaveEncodedWords ? IMAPParser::decodeRFC2047(*text) : std::move(text);
}

/// RFC 3501, section 9: address = "(" addr-name SP addr-adl SP addr-mailbox SP addr-host ")"
/// Deliberate: the markers of a group (section 7.4.2), which have no host, are addresses like any other.
std::vector<IMAPAddress> addressesOf(const std::optional<IMAPToken>& token) {
  std::vector<IMAPAddress> addresses;
  for (const IMAPToken address : listOf(token)) {
    const auto [name, sourceRoute, mailbox, host] = leadingElements<4>(address.list());
    if (host) {
      addresses.push_back({decodedTextOf(name), textOf(mailbox), textOf(host)});
    }
  }
  return addresses;
}

}  // namespace

/// RFC 3501, section 9: envelope = "(" env-date SP env-subject SP env-from SP env-sender SP
///                                 env-reply-to SP env-to SP env-cc SP env-bcc SP
///                                 env-in-reply-to SP env-message-id ")"
IMAPEnvelope IMAPParser::parseEnvelope(IMAPTokenList elements) {
  const auto [date, subject, from, sender, replyTo, to, cc, bcc, inReplyTo, messageID] =
      leadingElements<10>(elements);
  return {
      .date = textOf(date),
      .subject = decodedTextOf(subject),
      .from = addressesOf(from),
      .sender = addressesOf(sender),
      .replyTo = addressesOf(replyTo),
      .to = addressesOf(to),
      .cc = addressesOf(cc),
      .bcc = addressesOf(bcc),
      .inReplyTo = textOf(inReplyTo),
      .messageID = textOf(messageID),
  };
}

}  // namespace tarnwell
