/// Searching the inbox and fetching summaries from it (RFC 3501, sections 6.4.4, 6.4.5 and 6.4.8).

#include <algorithm>
#include <chrono>
#include <functional>
#include <unordered_map>
#include <utility>

#include "IMAP/Connection/IMAPError.h"
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
  beginInInbox();
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
  beginInInbox();
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

}  // namespace tarnwell
