/// search_inbox.

#include "Core/BridgeConstants.h"
#include "Core/SafetyPolicy.h"
#include "IMAP/Decoding/TextDecoding.h"
#include "IMAP/IMAPClient.h"
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

JSONValue searchHit(const IMAPMessage& message, const ScreenedBody& body) {
  return messageHeaderJSON(
      message,
      body.isWithheld ? std::nullopt : std::optional(TextDecoding::snippet(body.text, snippetMaxChars).text),
      body.assessment.signals);
}

}  // namespace

ToolCallResult MCPTools::searchInbox(const JSONValue& arguments) const {
  const AppConfig config = configStore_.load();
  const std::int64_t limit =
      SafetyPolicy(config.safety).clampLimit(arguments["limit"].intValue(), BridgeConstants::searchLimitMax);
  const IMAPSearchCriteria criteria = searchCriteria(arguments);
  const MailScreen screen(detector_, config);

  return withIMAP(config, IMAPClient::Access::readOnly, [&](IMAPClient& client) {
    std::vector<IMAPMessage> messages =
        client.fetchMessages(client.searchInbox(criteria, static_cast<std::size_t>(limit)));
    JSONArray hits(messages.size());
    screen.fetchBodies(client, messages, {Leaving::Form::asSnippet, snippetMaxChars},
                       [&](std::size_t index, const ScreenedBody& body) {
                         screen.maskCodes(messages[index], body.judgement());
                         hits[index] = searchHit(messages[index], body);
                       });
    const auto count = static_cast<std::int64_t>(hits.size());
    return ToolCallResult{JSONObject{{"count", count}, {"limit", limit}, {"messages", std::move(hits)}}};
  });
}

}  // namespace tarnwell
