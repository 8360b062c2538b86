#include "JSONEditor/JSONLayout.h"

#include <algorithm>
#include <utility>

namespace tarnwell {
namespace {

std::size_t beginOfLine(std::string_view text, std::size_t place) {
  const std::size_t lineEnd = text.substr(0, place).find_last_of("\r\n");
  if (lineEnd != std::string_view::npos) {
    return lineEnd + 1;
  }
  return text.starts_with(byteOrderMark) ? byteOrderMark.size() : 0;
}

/// What a member's line has more than the line of its object. Absent when the lines show no such step.
std::optional<std::string> stepAt(std::string_view text, std::size_t object, const MemberPlace& member) {
  const std::string_view outer = indentationAt(text, object);
  const std::string_view inner = indentationAt(text, member.range.begin);
  return beginsLine(text, member.range.begin) && inner.starts_with(outer)
             ? std::optional(std::string(inner.substr(outer.size())))
             : std::nullopt;
}

bool isSimple(const JSONValue& value) { return !value.arrayValue() && !value.objectValue(); }

/// Writes a value. One level deeper, its lines begin one step further to the right.
class Writer {
 public:
  explicit Writer(const JSONLayout& layout)
      : layout_(layout), lineBegin_(layout.lineEnd + layout.indentation) {}

  std::string text() && { return std::move(text_); }

  void write(const JSONValue& value) {
    if (const JSONObject* members = value.objectValue()) {
      writeParts('{', '}', *members, layout_.isOnLines,
                 [this](const JSONMember& member) { writeMember(member.first, member.second); });
    } else if (const JSONArray* elements = value.arrayValue()) {
      const bool isOnLines = layout_.isOnLines && !std::ranges::all_of(*elements, isSimple);
      writeParts('[', ']', *elements, isOnLines, [this](const JSONValue& element) { write(element); });
    } else {
      text_ += value.serialized();
    }
  }

  void writeMember(std::string_view key, const JSONValue& value) {
    text_ += JSONValue(key).serialized();
    text_ += layout_.isSpaced ? ": " : ":";
    write(value);
  }

 private:
  template <class Parts, class WritePart>
  void writeParts(char open, char close, const Parts& parts, bool isOnLines, const WritePart& writePart) {
    text_ += open;
    const std::size_t outer = lineBegin_.size();
    lineBegin_ += layout_.step;
    for (bool isFirst = true; const auto& part : parts) {
      const bool isAfterAnother = !std::exchange(isFirst, false);
      text_ += isAfterAnother ? "," : "";
      text_ += isOnLines ? lineBegin_ : isAfterAnother && layout_.isSpaced ? " " : "";
      writePart(part);
    }
    lineBegin_.resize(outer);
    text_ += isOnLines && parts.begin() != parts.end() ? lineBegin_ : "";
    text_ += close;
  }

  const JSONLayout& layout_;
  std::string lineBegin_;
  std::string text_;
};

}  // namespace

std::string JSONLayout::written(const JSONValue& value) const {
  Writer writer(*this);
  writer.write(value);
  return std::move(writer).text();
}

std::string JSONLayout::written(std::string_view key, const JSONValue& value) const {
  Writer writer(*this);
  writer.writeMember(key, value);
  return std::move(writer).text();
}

std::size_t afterLineEnd(std::string_view text, std::size_t place) {
  return text.substr(place).starts_with("\r\n") ? place + 2 : place + 1;
}

std::string_view lineEndNear(std::string_view text, std::size_t place) {
  const std::size_t before = text.substr(0, place).find_last_of("\r\n");
  const std::size_t near = before == std::string_view::npos ? text.find_first_of("\r\n", place) : before;
  if (near == std::string_view::npos) {
    return "\n";
  }
  const bool isHalf = near > 0 && text[near] == '\n' && text[near - 1] == '\r';
  const std::size_t begin = isHalf ? near - 1 : near;
  return text.substr(begin, afterLineEnd(text, begin) - begin);
}

bool beginsLine(std::string_view text, std::size_t place) {
  const std::size_t begin = beginOfLine(text, place);
  return begin + indentationAt(text, place).size() == place;
}

std::string_view indentationAt(std::string_view text, std::size_t place) {
  const std::size_t begin = beginOfLine(text, place);
  const std::size_t end = std::min(text.find_first_not_of(" \t", begin), place);
  return text.substr(begin, end - begin);
}

JSONLayout layoutIn(std::string_view text, const ObjectPlace& outermost, const ObjectPlace& object,
                    const std::optional<MemberPlace>& neighbour, const std::optional<MemberPlace>& holder) {
  JSONLayout layout;
  layout.lineEnd = lineEndNear(text, neighbour ? neighbour->range.end : object.range.begin);
  if (const std::optional<MemberPlace>& any = neighbour ? neighbour : outermost.first) {
    layout.isSpaced = isJSONBlank(text[any->value - 1]);
  }
  if (outermost.first) {
    layout.step = stepAt(text, outermost.range.begin, *outermost.first).value_or(layout.step);
  }
  if (neighbour) {
    layout.isOnLines = beginsLine(text, neighbour->range.begin);
    layout.step = stepAt(text, object.range.begin, *neighbour).value_or(layout.step);
    layout.indentation = indentationAt(text, neighbour->range.begin);
  } else {
    layout.isOnLines = !holder || beginsLine(text, holder->range.begin);
    layout.indentation = std::string(indentationAt(text, object.range.begin)) + layout.step;
  }
  return layout;
}

}  // namespace tarnwell
