#include "Assistants/Blocks.h"

#include <string_view>

#include "MCP/JSON/JSONValue.h"
#include "Text/Text.h"

namespace tarnwell {
namespace {

/// A text in double quotes, as TOML 1.0 (basic strings) and YAML 1.2 (section 5.7) read it. Both know the
/// escapes of JSON, and want them for some characters that JSON leaves as they are: U+007F to U+009F.
std::string inDoubleQuotes(std::string_view text) {
  const std::string json = JSONValue(text).serialized();
  std::string result;
  constexpr std::string_view digits = "0123456789ABCDEF";
  const auto escape = [&](unsigned character) {
    result += "\\u00";
    result += digits[character >> 4];
    result += digits[character & 15];
  };
  for (std::size_t i = 0; i < json.size(); ++i) {
    const auto byte = static_cast<unsigned char>(json[i]);
    const auto next = static_cast<unsigned char>(i + 1 < json.size() ? json[i + 1] : 0);
    if (byte == 0x7F) {
      escape(byte);
    } else if (byte == 0xC2 && next < 0xA0) {  // UTF-8 of U+0080 to U+009F
      escape(next);
      ++i;
    } else {
      result += json[i];
    }
  }
  return result;
}

std::string codexTOML(const std::string& path) {
  return "[mcp_servers.tarnwell]\ncommand = " + inDoubleQuotes(path) + "\nargs = [\"serve\"]\n";
}

std::string gooseYAML(const std::string& path) {
  return "extensions:\n"
         "  tarnwell:\n"
         "    type: stdio\n"
         "    name: tarnwell\n"
         "    enabled: true\n"
         "    cmd: " +
         inDoubleQuotes(path) +
         "\n"
         "    args: [\"serve\"]\n"
         "    timeout: 300\n";
}

std::string continueYAML(const std::string& path) {
  return "mcpServers:\n"
         "  - name: tarnwell\n"
         "    command: " +
         inDoubleQuotes(path) +
         "\n"
         "    args: [\"serve\"]\n";
}

JSONValue commandEntry(const std::string& path) {
  return JSONObject{{"command", path}, {"args", JSONValue::strings({"serve"})}};
}

JSONValue serversJSON(const std::string& path) {
  JSONValue entry = commandEntry(path);
  entry.objectValue()->emplace("type", "stdio");
  return JSONObject{{"servers", JSONObject{{"tarnwell", std::move(entry)}}}};
}

JSONValue opencodeJSON(const std::string& path) {
  return JSONObject{
      {"mcp", JSONObject{{"tarnwell", JSONObject{{"type", "local"},
                                                 {"command", JSONValue::strings({path, "serve"})},
                                                 {"enabled", JSONValue::of(true)}}}}}};
}

}  // namespace

std::string generalBlock(const std::filesystem::path& helper) {
  const JSONValue block = JSONObject{{"mcpServers", JSONObject{{"tarnwell", commandEntry(helper.string())}}}};
  return block.prettyString();
}

std::string connectionBlock(BlockFormat format, const std::filesystem::path& helper) {
  const std::string path = helper.string();
  const bool canBeNamed = isValidUTF8(path);
  switch (format) {
    case BlockFormat::serversJSON:
      return serversJSON(path).prettyString();
    case BlockFormat::opencodeJSON:
      return opencodeJSON(path).prettyString();
    case BlockFormat::codexTOML:
      return canBeNamed ? codexTOML(path) : "";
    case BlockFormat::gooseYAML:
      return canBeNamed ? gooseYAML(path) : "";
    case BlockFormat::continueYAML:
      return canBeNamed ? continueYAML(path) : "";
    case BlockFormat::mcpServersJSON:
      break;
  }
  return generalBlock(helper);
}

}  // namespace tarnwell
