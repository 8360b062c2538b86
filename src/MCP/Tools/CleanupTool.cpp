/// propose_inbox_cleanup.

#include "IMAP/Decoding/TextDecoding.h"
#include "MCP/Tools/CleanupHeuristics.h"
#include "MCP/Tools/MCPTools.h"
#include "MCP/Tools/MailScreen.h"
#include "MCP/Tools/MessageJSON.h"

namespace tarnwell {

namespace {

constexpr std::int64_t previewMaxChars = 200;

/// The texts of the array under "categories". The default list when there is no array.
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

/// The beginning of the body, or `withheldText`. Null when the body has no text.
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

ToolOutcome MCPTools::proposeInboxCleanup(const JSONValue& arguments, const CallWatch& watch) const {
  const std::vector<std::string> categories = allowedCategories(arguments);
  return listMessages(
      arguments, watch, {}, {Leaving::Form::asPreview, previewMaxChars},
      [&](const IMAPMessage& message, const ScreenedBody& body) {
        return itemJSON(message, preview(body), categories);
      },
      [&](JSONArray items, std::int64_t /*limit*/) {
        return JSONObject{
            {"categories", JSONValue::strings(categories)},
            {"note",
             "Heuristic hints only — the bridge does not classify with an LLM. Use these as input and decide "
             "categories/moves yourself."},
            {"items", std::move(items)},
        };
      });
}

}  // namespace tarnwell
