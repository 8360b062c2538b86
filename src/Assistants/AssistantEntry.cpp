#include "Assistants/AssistantEntry.h"

#include <algorithm>
#include <system_error>
#include <variant>

#include "Assistants/AssistantPlaces.h"
#include "Assistants/TOMLReader.h"
#include "Text/Text.h"

namespace tarnwell {
namespace {

constexpr const char* entryName = "tarnwell";

std::vector<std::string> texts(const JSONValue& list) {
  std::vector<std::string> result;
  if (const JSONArray* elements = list.arrayValue()) {
    for (const JSONValue& element : *elements) {
      result.push_back(element.stringValue().value_or(element.serialized()));
    }
  }
  return result;
}

/// Clients name the address in their own ways.
std::string addressIn(const JSONValue& value) {
  for (const char* key : {"url", "serverUrl", "httpUrl"}) {
    if (const std::optional<std::string> address = value[key].stringValue()) {
      return *address;
    }
  }
  return "";
}

bool startsProgram(const JSONValue& value) {
  return value["command"].stringValue() && addressIn(value).empty() &&
         value["type"].stringValue().value_or("stdio") == "stdio";
}

AssistantEntry entryOf(JSONValue value) {
  AssistantEntry entry;
  if (startsProgram(value)) {
    entry.command = value["command"].stringValue();
    entry.arguments = texts(value["args"]);
  } else if (std::optional<std::string> path =
                 value["command"]["path"].stringValue()) {  // an old form of Zed
    entry.command = std::move(path);
    entry.arguments = texts(value["command"]["args"]);
  } else {
    entry.address = addressIn(value);
  }
  entry.isSwitchedOff =
      value["disabled"].boolValue().value_or(false) || !value["enabled"].boolValue().value_or(true);
  const JSONObject* members = value.objectValue();
  entry.isPlain = startsProgram(value) && std::ranges::all_of(*members, [](const JSONMember& member) {
                    return member.first == "command" || member.first == "args";
                  });
  entry.value = std::move(value);
  return entry;
}

/// Codex writes all entries anew and drops the comments in them and right above. Any "#" there counts as one,
/// also in a text.
bool hasCommentsAmong(const char* object, std::string_view text) {
  std::size_t begin = text.find(object);
  if (begin == text.npos) {
    return false;
  }
  begin = text.substr(0, begin).rfind('\n') + 1;
  while (begin > 0) {
    const std::size_t before = begin < 2 ? 0 : text.substr(0, begin - 1).rfind('\n') + 1;
    const std::string_view line = trimmed(text.substr(before, begin - before));
    if (!line.empty() && !line.starts_with('#')) {
      break;
    }
    begin = before;
  }
  return text.find('#', begin) != text.npos;
}

AssistantReading readTOML(const AssistantRow& row, std::string_view text) {
  const std::variant<JSONValue, std::size_t> document = decodeTOML(text);
  AssistantReading reading{.hasComments = hasCommentsAmong(row.object, text)};
  if (const std::size_t* line = std::get_if<std::size_t>(&document)) {
    reading.problem = "line " + std::to_string(*line) + ": not TOML";
  } else if (const JSONValue* value = std::get<JSONValue>(document)[row.object].member(entryName)) {
    reading.entry = entryOf(*value);
  }
  return reading;
}

JSONValue valueFor(EntryShape shape, const std::string& helper) {
  JSONObject value{{"command", helper}, {"args", JSONValue::strings({"serve"})}};
  if (shape != EntryShape::command) {
    value.emplace("type", "stdio");
  }
  if (shape == EntryShape::typedCommandWithEnvironment) {
    value.emplace("env", JSONObject{});
  }
  return value;
}

}  // namespace

JSONPath entryPath(const AssistantRow& row) { return {row.object, entryName}; }

AssistantReading readEntry(const Machine& machine, const AssistantRow& row) {
  const std::optional<std::string> text = readConfigurationFile(placeOf(machine, row).file);
  if (!text) {
    return {};
  }
  if (row.shape == EntryShape::tomlTable) {
    return readTOML(row, *text);
  }
  std::optional<JSONValue> value = jsonMember(*text, entryPath(row));
  return value ? AssistantReading{.entry = entryOf(std::move(*value))} : AssistantReading{};
}

bool startsHelper(const Machine& machine, const AssistantEntry& entry) {
  if (!entry.command || entry.arguments != std::vector<std::string>{"serve"}) {
    return false;
  }
  std::filesystem::path program = *entry.command;
  if (!program.has_parent_path()) {
    program = findProgram(machine, *entry.command).value_or(program);
  }
  std::error_code error;  // one of them is missing: then only the names count
  return program.is_absolute() && (std::filesystem::equivalent(program, machine.helper, error) ||
                                   program.lexically_normal() == machine.helper.lexically_normal());
}

std::string withEntry(std::string_view text, const AssistantRow& row, const std::string& helper) {
  const JSONPath path = entryPath(row);
  const std::optional<JSONValue> old = jsonMember(text, path);
  const std::string rest = old && !startsProgram(*old) ? withoutJSONMember(text, path) : std::string(text);
  return withJSONMember(rest, path, valueFor(row.shape, helper));
}

}  // namespace tarnwell
