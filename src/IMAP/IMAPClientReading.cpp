/// Searching the inbox and fetching from it (RFC 3501, sections 6.4.4, 6.4.5 and 6.4.8).

#include <algorithm>
#include <chrono>
#include <functional>
#include <unordered_map>
#include <utility>

#include "IMAP/Connection/IMAPError.h"
#include "IMAP/Decoding/TextDecoding.h"
#include "IMAP/IMAPClient.h"
#include "Text/ASCIICase.h"
#include "Text/DecimalNumber.h"
#include "Text/UTF8.h"

namespace tarnwell {

namespace {

std::string commaSeparated(const std::vector<std::uint32_t>& uids) {
  std::string text;
  for (const std::uint32_t uid : uids) {
    if (!text.empty()) {
      text += ',';
    }
    text += std::to_string(uid);
  }
  return text;
}

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

}  // namespace

/// RFC 3501, section 9: date-day "-" date-month "-" date-year. The year has four digits and no sign. There is
/// no year 0: the years before year 1 are counted backwards from it.
std::string IMAPClient::imapDate(Instant instant) {
  static constexpr std::string_view months[] = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                                "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
  const std::chrono::year_month_day day{std::chrono::floor<std::chrono::days>(instant)};
  const int year = static_cast<int>(day.year());
  std::string yearText = std::to_string(year > 0 ? year : 1 - year);
  if (yearText.size() < 4) {
    yearText.insert(0, 4 - yearText.size(), '0');
  }
  return std::to_string(static_cast<unsigned>(day.day())) + "-" +
         std::string(months[static_cast<unsigned>(day.month()) - 1]) + "-" + yearText;
}

/// The keys have a fixed order. Texts are always literals, never quoted.
std::vector<IMAPClient::IMAPArg> IMAPClient::buildSearchArgs(const IMAPSearchCriteria& criteria) {
  using enum IMAPArg::Kind;
  std::vector<IMAPArg> keys;
  bool needsCharset = false;
  const auto addText = [&](std::string_view key, const std::optional<std::string>& text) {
    if (text && !text->empty()) {
      keys.push_back({raw, std::string(key)});
      keys.push_back({literal, *text});
      needsCharset = needsCharset || !isASCII(*text);
    }
  };

  if (criteria.unreadOnly) {
    keys.push_back({raw, " UNSEEN"});
  }
  if (criteria.since) {
    keys.push_back({raw, " SINCE " + imapDate(*criteria.since)});
  }
  if (criteria.before) {
    keys.push_back({raw, " BEFORE " + imapDate(*criteria.before)});
  }
  addText(" FROM ", criteria.from);
  addText(" SUBJECT ", criteria.subject);
  addText(" TEXT ", criteria.freeText);
  if (keys.empty()) {
    keys.push_back({raw, " ALL"});
  }
  keys.insert(keys.begin(), {raw, needsCharset ? "UID SEARCH CHARSET UTF-8" : "UID SEARCH"});
  return keys;
}

std::vector<std::uint32_t> IMAPClient::searchInbox(const IMAPSearchCriteria& criteria, std::size_t limit) {
  requireInbox();
  std::vector<std::uint32_t> uids;
  const auto read = [&uids](const std::string& line) {
    if (const auto found = IMAPParser::parseSearch(line)) {
      uids.insert(uids.end(), found->begin(), found->end());
    }
  };
  ensureOK(executeArgs(buildSearchArgs(criteria), read), "UID SEARCH");
  // A server may send millions of UIDs. Only those that are kept are sorted.
  const auto kept = static_cast<std::ptrdiff_t>(std::min(uids.size(), limit));
  std::ranges::partial_sort(uids, uids.begin() + kept, std::greater<>());
  uids.resize(static_cast<std::size_t>(kept));
  return uids;
}

std::vector<IMAPMessage> IMAPClient::fetchMessages(const std::vector<std::uint32_t>& uids) {
  requireInbox();
  if (uids.empty()) {
    return {};
  }
  // Only messages that were asked for have a place.
  std::unordered_map<std::uint32_t, std::optional<IMAPMessage>> messages;
  for (const std::uint32_t uid : uids) {
    messages.emplace(uid, std::nullopt);
  }
  const auto read = [&messages](const std::string& line) {
    const IMAPTokens tokens = IMAPParser::tokenize(line);
    if (std::optional<IMAPMessage> message = IMAPParser::parseFetchMessage(tokens.elements())) {
      if (const auto place = messages.find(message->uid); place != messages.end()) {
        place->second = std::move(message);
      }
    }
  };
  ensureOK(
      execute("UID FETCH " + commaSeparated(uids) + " (UID FLAGS INTERNALDATE ENVELOPE BODYSTRUCTURE)", read),
      "UID FETCH");

  std::vector<IMAPMessage> ordered;
  for (const std::uint32_t uid : uids) {
    if (const std::optional<IMAPMessage>& message = messages[uid]) {
      ordered.push_back(*message);
    }
  }
  return ordered;
}

std::optional<IMAPMessage> IMAPClient::fetchMessage(std::uint32_t uid) {
  std::vector<IMAPMessage> messages = fetchMessages({uid});
  return messages.empty() ? std::nullopt : std::optional(std::move(messages.front()));
}

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

void IMAPClient::fetchBodyTexts(const std::vector<const IMAPMessage*>& messages, const BodyReader& read) {
  requireInbox();
  std::vector<const IMAPMessage*> withText;
  for (const IMAPMessage* message : messages) {
    if (message->bodyInfo.preferredText) {
      withText.push_back(message);
    } else {
      read(*message, {});
    }
  }
  std::string tag = withText.empty() ? "" : requestBody(*withText.front());
  for (auto message = withText.begin(); message != withText.end(); ++message) {
    std::optional<std::string> body = readBody(tag);
    if (const auto next = message + 1; next != withText.end()) {
      tag = requestBody(**next);
    }
    read(**message, bodyText(*(*message)->bodyInfo.preferredText, std::move(body)));
  }
}

/// PEEK leaves the message unread. The command asks for the whole part.
std::string IMAPClient::requestBody(const IMAPMessage& message) {
  const std::string& section = message.bodyInfo.preferredText->section;
  return send("UID FETCH " + std::to_string(message.uid) + " (BODY.PEEK[" + section + "])");
}

/// A body may have tens of megabytes, so the response is cut down to the body in place.
std::optional<std::string> IMAPClient::readBody(const std::string& tag) {
  std::optional<std::string> body;
  const auto read = [&body](std::string line) {
    if (body) {
      return;
    }
    if (const std::optional<std::string_view> literal = extractFirstLiteral(line)) {
      const auto begin = static_cast<std::size_t>(literal->data() - line.data());
      line.resize(begin + literal->size());
      line.erase(0, begin);
      body = std::move(line);
    }
  };
  ensureOK(readUntilTagged(tag, read), "UID FETCH");
  return body;
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
