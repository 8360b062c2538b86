// Any text is read or refused at one of its lines. The block for any path gives the path back.

#include <algorithm>
#include <string>
#include <variant>

#include "Assistants/Blocks.h"
#include "Assistants/TOMLReader.h"
#include "Fuzzing.h"
#include "Text/Text.h"

namespace tarnwell {
namespace {

using fuzz::require;

void requireReading(std::string_view text) {
  const std::variant<JSONValue, std::size_t> document = decodeTOML(text);
  if (const std::size_t* line = std::get_if<std::size_t>(&document)) {
    const auto lines = 1 + static_cast<std::size_t>(std::ranges::count(text, '\n'));
    require(*line >= 1 && *line <= lines, "the line is one of the text");
    return;
  }
  const JSONValue& value = std::get<JSONValue>(document);
  require(value.objectValue() != nullptr, "a document is an object");
  require(JSONValue::decode(value.serialized()) == value, "a document has only what JSON has");
}

void requireBlock(std::string_view path) {
  const std::string block = connectionBlock(BlockFormat::codexTOML, std::string(path));
  require(block.empty() == !isValidUTF8(path), "only a path that is not UTF-8 has no block");
  const std::variant<JSONValue, std::size_t> document = decodeTOML(block);
  require(std::holds_alternative<JSONValue>(document), "a block can be read");
  if (!block.empty()) {
    const JSONValue& entry = std::get<JSONValue>(document)["mcp_servers"]["tarnwell"];
    require(entry["command"].stringValue() == std::string(path), "a block gives the path back");
    require(entry["args"] == JSONValue::strings({"serve"}), "a block gives the argument back");
  }
}

}  // namespace
}  // namespace tarnwell

FUZZ_TARGET(std::string_view input) {
  requireReading(input);
  if (input.size() < 4096) {
    requireBlock(input);
  }
}
