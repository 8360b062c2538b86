#pragma once

/// Messages whose bodies a test fetches, and what it reads.

#include <string>
#include <vector>

#include "IMAP/IMAPClient.h"

namespace tarnwell::test {

/// Messages with a plain text in this section.
inline std::vector<IMAPMessage> messagesWithText(const std::vector<std::uint32_t>& uids,
                                                 const std::string& section = "1") {
  std::vector<IMAPMessage> messages(uids.size());
  for (std::size_t i = 0; i < uids.size(); ++i) {
    messages[i].uid = uids[i];
    messages[i].bodyInfo.preferredText =
        IMAPTextPart{.section = section, .encoding = "7bit", .charset = {}, .isHTML = false};
  }
  return messages;
}

/// "UID text" for each message, in the order of reading.
inline std::vector<std::string> bodiesOf(IMAPClient& client, const std::vector<IMAPMessage>& messages) {
  std::vector<std::string> bodies;
  std::vector<const IMAPMessage*> pointers;
  for (const IMAPMessage& message : messages) {
    pointers.push_back(&message);
  }
  client.fetchBodyTexts(pointers, [&](const IMAPMessage& message, const IMAPClient::BodyText& body) {
    bodies.push_back(std::to_string(message.uid) + " " + body.text);
  });
  return bodies;
}

}  // namespace tarnwell::test
