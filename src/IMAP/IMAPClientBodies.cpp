/// Fetching the readable texts of messages (RFC 3501, sections 6.4.5 and 6.4.8).

#include <algorithm>
#include <utility>

#include "IMAP/Connection/IMAPError.h"
#include "IMAP/Decoding/TextDecoding.h"
#include "IMAP/IMAPClient.h"
#include "IMAP/Responses/Words.h"
#include "Text/ASCIICase.h"
#include "Text/DecimalNumber.h"

namespace tarnwell {

namespace {

IMAPClient::BodyText bodyText(const IMAPTextPart& part, std::optional<std::string> body) {
  if (!body || body->empty()) {
    return {};
  }
  TextDecoding::DecodedPart decoded = TextDecoding::decodePart(*std::move(body), part.encoding, part.charset);
  decoded.source.isHTML = part.isHTML;
  if (part.isHTML) {
    TextDecoding::reduceHTMLToText(decoded.text);
  }
  return {std::move(decoded.text), true, std::move(decoded.source)};
}

/// PEEK leaves the message unread. The command asks for the whole part.
std::string bodyCommand(const IMAPMessage& message) {
  return "UID FETCH " + std::to_string(message.uid) + " (BODY.PEEK[" +
         message.bodyInfo.preferredText->section + "])";
}

}  // namespace

IMAPClient::BodyText IMAPClient::fetchBodyText(std::uint32_t uid) {
  const std::optional<IMAPMessage> message = fetchMessage(uid);
  if (!message) {
    throw IMAPError::unexpectedResponse("Message not found for UID " + std::to_string(uid));
  }
  return fetchBodyText(*message);
}

IMAPClient::BodyText IMAPClient::fetchBodyText(const IMAPMessage& message) {
  BodyText body;
  fetchBodyTexts({&message}, [&body](const IMAPMessage&, BodyText read) { body = std::move(read); });
  return body;
}

/// Sends the commands together, as many as a connection buffers. More would be a risk: while the client still
/// sends, the server may wait until its answers are read.
void IMAPClient::fetchBodyTexts(const std::vector<const IMAPMessage*>& messages, const BodyReader& read) {
  constexpr std::size_t mostBytesUnderWay = 16384;
  beginInInbox();
  std::deque<BodyRequest> waiting;
  for (const IMAPMessage* message : messages) {
    if (message->bodyInfo.preferredText) {
      waiting.push_back({.message = message, .command = bodyCommand(*message)});
    } else {
      read(*message, {});
    }
  }
  std::deque<BodyRequest> sent;
  std::size_t bytesUnderWay = 0;
  const auto size = [](const BodyRequest& request) {
    constexpr std::size_t tagAndLineEnd = 12;
    return request.command.size() + tagAndLineEnd;
  };
  const auto isRoom = [&] {
    return sent.empty() || bytesUnderWay + size(waiting.front()) <= mostBytesUnderWay;
  };
  while (!waiting.empty() || !sent.empty()) {
    while (!waiting.empty() && isRoom()) {
      BodyRequest& request = sent.emplace_back(std::move(waiting.front()));
      waiting.pop_front();
      request.tag = queue(request.command);
      bytesUnderWay += size(request);
    }
    sendQueued();

    const Tagged answer = readTagged([&sent](std::string line) { keepBody(sent, std::move(line)); });
    ensureOK(answer.completion, "UID FETCH");
    const auto answered = std::ranges::find(sent, answer.tag, &BodyRequest::tag);
    BodyRequest request = std::move(*answered);
    sent.erase(answered);
    bytesUnderWay -= size(request);
    read(*request.message, bodyText(*request.message->bodyInfo.preferredText, std::move(request.body)));
  }
}

/// Keeps the body for the request of the message that the FETCH response names. One that names no message is
/// the oldest request's. One of a message that was not asked for is dropped. The first body of a request
/// counts. A body may have tens of megabytes, so the response is cut down to it in place.
void IMAPClient::keepBody(std::deque<BodyRequest>& sent, std::string response) {
  std::string_view words = response;
  const bool isUntagged = takeWord(words) == "*";
  takeWord(words);  // the sequence number
  const bool isFetch = isUntagged && equalsIgnoringASCIICase(takeWord(words).substr(0, 5), "FETCH");
  const std::optional<std::string_view> literal = extractFirstLiteral(response);
  if (!isFetch || !literal) {
    return;
  }
  const std::optional<IMAPMessage> named =
      IMAPParser::parseFetchMessage(IMAPParser::tokenize(response).elements());
  const auto request = std::ranges::find_if(sent, [&](const BodyRequest& candidate) {
    return !named || (candidate.message->uid == named->uid && !candidate.body);
  });
  if (request == sent.end() || request->body) {
    return;
  }
  const auto begin = static_cast<std::size_t>(literal->data() - response.data());
  response.resize(begin + literal->size());
  response.erase(0, begin);
  request->body = std::move(response);
}

std::optional<std::string_view> IMAPClient::extractFirstLiteral(std::string_view response) {
  const std::size_t brace = response.find('{');
  if (brace == std::string_view::npos) {
    return std::nullopt;
  }
  response.remove_prefix(brace + 1);
  const auto digitsEnd = std::ranges::find_if_not(response, isASCIIDigit);
  const std::string_view digits(response.begin(), digitsEnd);
  const std::optional<std::int64_t> size = decimalNumber<std::int64_t>(digits);
  if (!size) {
    return std::nullopt;
  }
  response.remove_prefix(digits.size());
  if (response.starts_with('+')) {
    response.remove_prefix(1);
  }
  constexpr std::string_view announcementEnd = "}\r\n";
  if (!response.starts_with(announcementEnd)) {
    return std::nullopt;
  }
  response.remove_prefix(announcementEnd.size());
  return response.substr(0, static_cast<std::size_t>(*size));
}

}  // namespace tarnwell
