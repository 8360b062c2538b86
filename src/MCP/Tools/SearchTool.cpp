/// search_inbox, and the code that it shares with propose_inbox_cleanup.

#include "Core/BridgeConstants.h"
#include "Core/SafetyPolicy.h"
#include "IMAP/Decoding/TextDecoding.h"
#include "IMAP/IMAPClient.h"
#include "MCP/Tools/LogText.h"
#include "MCP/Tools/MCPTools.h"
#include "MCP/Tools/MailScreen.h"
#include "MCP/Tools/MessageJSON.h"
#include "MCP/Tools/ToolArguments.h"

namespace tarnwell {

namespace {

constexpr std::int64_t snippetMaxChars = 200;

std::optional<Instant> dateArg(const JSONValue& arguments, std::string_view key) {
  const std::optional<std::string> text = textArg(arguments, key);
  return text ? parseISODate(*text) : std::nullopt;
}

IMAPSearchCriteria searchCriteria(const JSONValue& arguments) {
  return {
      .freeText = textArg(arguments, "query"),
      .unreadOnly = arguments["unreadOnly"].boolValue().value_or(false),
      .since = dateArg(arguments, "since"),
      .before = dateArg(arguments, "before"),
      .from = textArg(arguments, "from"),
      .subject = textArg(arguments, "subject"),
  };
}

/// The short form of a message.
JSONValue messageHeaderJSON(const IMAPMessage& message, const ScreenedBody& body) {
  return JSONObject{
      {"uid", message.uid},
      {"messageId", JSONValue::of(message.envelope.messageID)},
      {"subject", JSONValue::of(message.envelope.subject)},
      {"from", JSONValue::of(senderText(message))},
      {"date", JSONValue::of(message.envelope.date)},
      {"flags", JSONValue::strings(message.flags)},
      {"unread", message.isUnread()},
      {"hasAttachments", message.hasAttachments()},
      {"snippet",
       body.isWithheld ? std::string(withheldText) : TextDecoding::snippet(body.text, snippetMaxChars).text},
      {"detectedRiskSignals", riskSignalsJSON(body.assessment.signals)},
  };
}

}  // namespace

ToolOutcome MCPTools::listMessages(const JSONValue& arguments, const CallWatch& watch,
                                   const IMAPSearchCriteria& criteria, Leaving leaving,
                                   const ItemMaker& itemOf, const ListMaker& resultOf) const {
  const AppConfig config = configStore_.load();
  const std::int64_t limit =
      SafetyPolicy(config.safety).clampLimit(arguments["limit"].intValue(), BridgeConstants::searchLimitMax);
  const MailScreen screen(detector_, config);

  return withIMAP(config, IMAPClient::Access::readOnly, watch, [&](IMAPClient& client) {
    std::vector<IMAPMessage> messages =
        client.fetchMessages(client.searchInbox(criteria, static_cast<std::size_t>(limit)));
    JSONArray items(messages.size());
    int withheldCount = 0;
    std::int64_t readCount = 0;
    screen.fetchBodies(client, messages, leaving, [&](std::size_t index, const ScreenedBody& body) {
      screen.maskCodes(messages[index], body.judgement());
      items[index] = itemOf(messages[index], body);
      withheldCount += body.isWithheld ? 1 : 0;
      ++readCount;
      if (watch.progressed) {
        watch.progressed(readCount, static_cast<std::int64_t>(items.size()));
      }
    });
    const auto count = static_cast<std::int64_t>(items.size());
    JSONObject result = resultOf(std::move(items), limit);
    result.emplace("count", count);
    return ToolOutcome{{std::move(result)},
                       counted(count, "message") +
                           (withheldCount > 0 ? ", " + std::to_string(withheldCount) + " withheld" : "")};
  });
}

ToolOutcome MCPTools::searchInbox(const JSONValue& arguments, const CallWatch& watch) const {
  return listMessages(arguments, watch, searchCriteria(arguments),
                      {Leaving::Form::asSnippet, snippetMaxChars}, messageHeaderJSON,
                      [](JSONArray hits, std::int64_t limit) {
                        return JSONObject{{"limit", limit}, {"messages", std::move(hits)}};
                      });
}

}  // namespace tarnwell
