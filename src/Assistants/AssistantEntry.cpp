#include "Assistants/AssistantEntry.h"

#include <algorithm>
#include <iterator>
#include <system_error>
#include <utility>
#include <variant>

#include "Assistants/AssistantPlaces.h"
#include "Assistants/TOMLReader.h"
#include "Text/Text.h"

namespace tarnwell {
namespace {

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

/// Codex writes all entries anew and drops the comments in them and right above. Any "#" there counts as one,
/// also in a text. When the name of the object is written with escapes, any "#" of the file does.
bool hasCommentsAmong(const char* object, std::string_view text) {
  std::size_t begin = text.find(object);
  if (begin == text.npos) {
    return text.find('#') != text.npos;
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

/// The lines of the entry with what is between them. Where that is something else, it is an empty line.
std::string linesOfEntry(const AssistantRow& row, const std::vector<std::string_view>& statements) {
  std::string lines;
  std::string_view header;
  std::string_view before;  // the line of the entry that comes right before
  for (const std::string_view statement : statements) {
    const bool isHeader = statement.starts_with('[');
    header = isHeader ? statement : header;
    const std::variant<JSONValue, std::size_t> alone =
        decodeTOML(isHeader ? std::string(header) : std::string(header) + std::string(statement));
    const JSONValue* value = std::get_if<JSONValue>(&alone);
    if (value == nullptr || (*value)[row.object].member(entryName) == nullptr) {
      before = {};
      continue;
    }
    if (!before.empty()) {
      lines += std::string_view(before.end(), statement.begin());
    } else if (!lines.empty()) {
      lines += '\n';
    }
    lines += statement;
    before = statement;
  }
  return lines;
}

AssistantReading readTOML(const AssistantRow& row, std::string_view text) {
  std::vector<std::string_view> statements;
  const std::variant<JSONValue, std::size_t> document = decodeTOML(text, &statements);
  AssistantReading reading;
  if (const std::size_t* line = std::get_if<std::size_t>(&document)) {
    reading.problem =
        text.size() > maximumTOMLSize ? "too large" : "line " + std::to_string(*line) + ": not TOML";
    return reading;
  }
  const JSONValue& entries = std::get<JSONValue>(document)[row.object];
  reading.hasComments = !entries.isNull() && hasCommentsAmong(row.object, text);
  if (const JSONValue* value = entries.member(entryName)) {
    reading.entry = entryOf(*value);
    reading.lines = linesOfEntry(row, statements);
  }
  return reading;
}

/// Clients write some members that mean no more than when they are missing.
JSONValue withoutDefaults(const JSONValue& value) {
  const JSONObject* members = value.objectValue();
  if (members == nullptr) {
    return value;
  }
  std::vector<JSONMember> rest;
  std::ranges::remove_copy_if(*members, std::back_inserter(rest), [](const JSONMember& member) {
    const auto& [key, held] = member;
    return (key == "type" && held.stringValue() == "stdio") ||
           (key == "env" && held.objectValue() != nullptr && held.objectValue()->size() == 0) ||
           (key == "args" && held.arrayValue() != nullptr && held.arrayValue()->empty());
  });
  return JSONObject(std::move(rest));
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

JSONObject without(const JSONObject& members, std::string_view key) {
  std::vector<JSONMember> rest;
  std::ranges::copy_if(members, std::back_inserter(rest),
                       [&](const JSONMember& member) { return member.first != key; });
  return JSONObject(std::move(rest));
}

/// The document. Absent when it cannot be read whole: of an array of tables ([[name]]) only one is.
std::optional<JSONValue> documentOf(const AssistantRow& row, std::string_view text) {
  if (row.shape != EntryShape::tomlTable) {
    return jsonDocument(text).value_or(JSONObject{});
  }
  std::variant<JSONValue, std::size_t> document = decodeTOML(text);
  JSONValue* value = text.find("[[") == text.npos ? std::get_if<JSONValue>(&document) : nullptr;
  return value != nullptr ? std::optional(std::move(*value)) : std::nullopt;
}

/// The document without the entry.
std::optional<JSONValue> restOf(const AssistantRow& row, std::string_view text) {
  std::optional<JSONValue> document = documentOf(row, text);
  JSONObject* members = document ? document->objectValue() : nullptr;
  JSONValue* entries = members != nullptr ? members->find(row.object) : nullptr;
  if (entries == nullptr || entries->objectValue() == nullptr) {
    return document;
  }
  JSONObject others = without(*entries->objectValue(), entryName);
  if (others.size() > 0) {
    *entries = std::move(others);
    return document;
  }
  return without(*members, row.object);
}

}  // namespace

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

bool hasSecrets(const AssistantEntry& entry) {
  const auto hasMembers = [&](const char* key) {
    const JSONValue& value = entry.value[key];
    return !value.isNull() && (value.objectValue() == nullptr || value.objectValue()->size() > 0);
  };
  return hasMembers("env") || hasMembers("headers") || entry.address.find_first_of("@?") != std::string::npos;
}

bool isSameEntry(const std::optional<JSONValue>& one, const std::optional<JSONValue>& other) {
  return one && other ? withoutDefaults(*one) == withoutDefaults(*other)
                      : one.has_value() == other.has_value();
}

bool isSameBesidesEntry(const AssistantRow& row, std::string_view one, std::string_view other) {
  const std::optional<JSONValue> rest = restOf(row, one);
  return rest && rest == restOf(row, other);
}

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
