/// propose_inbox_cleanup.

#include "Core/BridgeConstants.h"
#include "Core/SafetyPolicy.h"
#include "IMAP/Decoding/TextDecoding.h"
#include "MCP/Tools/CleanupHeuristics.h"
#include "MCP/Tools/MCPTools.h"
#include "MCP/Tools/MailScreen.h"
#include "MCP/Tools/MessageJSON.h"

namespace tarnwell {

namespace {

constexpr std::int64_t previewMaxChars = 200;

/// The texts of the array under "categories"; the default list when there is no array.
std::vector<std::string> allowedCategories(const JSONValue& arguments) {
  const JSONArray* labels = arguments["categories"].arrayValue();
  if (!labels) {
    return CleanupHeuristics::defaultCategories();
  }
  std::vector<std::string> categories;
  for (const JSONValue& label : *labels) {
    if (std::optional<std::string> text = label.stringValue()) {
      categories.push_back(std::move(*text));
    }
  }
  return categories;
}

/// The beginning of the body, or what stands for it; null when there is no text.
JSONValue preview(const ScreenedBody& body) {
  if (body.isWithheld) {
    return withheldText;
  }
  std::string snippet = TextDecoding::snippet(body.text, previewMaxChars).text;
  return snippet.empty() ? JSONValue() : JSONValue(std::move(snippet));
}

JSONValue itemJSON(const IMAPMessage& message, JSONValue snippet,
                   const std::vector<std::string>& categories) {
  const std::optional<std::string> sender = senderText(message);
  const CleanupHeuristics::Hint hint = CleanupHeuristics::hint(message.envelope.subject, sender, categories);
  return JSONObject{
      {"uid", message.uid},
      {"subject", JSONValue::of(message.envelope.subject)},
      {"from", JSONValue::of(sender)},
      {"date", JSONValue::of(message.envelope.date)},
      {"snippet", std::move(snippet)},
      {"suggestedCategory", hint.category},
      {"suggestedFolder", JSONValue::of(hint.folder)},
      {"confidence", hint.confidence},
      {"reason", hint.reason},
  };
}

}  // namespace

ToolCallResult MCPTools::proposeInboxCleanup(const JSONValue& arguments) const {
  const AppConfig config = configStore_.load();
  const std::vector<std::string> categories = allowedCategories(arguments);
  const std::int64_t limit =
      SafetyPolicy(config.safety).clampLimit(arguments["limit"].intValue(), BridgeConstants::searchLimitMax);
  const MailScreen screen(detector_, config);

  return withIMAP(config, IMAPClient::Access::readOnly, [&](IMAPClient& client) {
    std::vector<IMAPMessage> messages =
        client.fetchMessages(client.searchInbox({}, static_cast<std::size_t>(limit)));
    JSONArray items(messages.size());
    screen.fetchBodies(client, messages, {Leaving::Form::asPreview, previewMaxChars},
                       [&](std::size_t index, const ScreenedBody& body) {
                         screen.maskCodes(messages[index], body.judgement());
                         items[index] = itemJSON(messages[index], preview(body), categories);
                       });
    const auto count = static_cast<std::int64_t>(items.size());
    return ToolCallResult{JSONObject{
        {"count", count},
        {"categories", JSONValue::strings(categories)},
        {"note",
         "Heuristic hints only — the bridge does not classify with an LLM. Use these as input and decide "
         "categories/moves yourself."},
        {"items", std::move(items)},
    }};
  });
}

}  // namespace tarnwell
