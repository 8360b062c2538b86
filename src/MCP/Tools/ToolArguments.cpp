#include "MCP/Tools/ToolArguments.h"

#include <utility>

namespace tarnwell {

std::optional<std::uint32_t> uidArg(const JSONValue& arguments) {
  const std::optional<std::int64_t> uid = arguments["uid"].intValue();
  if (!uid || *uid == 0 || !std::in_range<std::uint32_t>(*uid)) {
    return std::nullopt;
  }
  return static_cast<std::uint32_t>(*uid);
}

std::string noMessageText(std::uint32_t uid) {
  return "No message with UID " + std::to_string(uid) + " in INBOX.";
}

std::optional<std::string> textArg(const JSONValue& arguments, std::string_view key) {
  std::optional<std::string> text = arguments[key].stringValue();
  return text && !text->empty() ? std::move(text) : std::nullopt;
}

std::optional<bool> requestedDryRun(const JSONValue& arguments) {
  const JSONValue& wish = arguments["dryRun"];
  return wish.isNull() ? std::nullopt : std::optional(wish.boolValue().value_or(true));
}

std::optional<Instant> parseISODate(std::string_view text) {
  const std::optional<Instant> instant = parseISO8601(text);
  return instant ? instant : parseISO8601Day(text);
}

}  // namespace tarnwell
