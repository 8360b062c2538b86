#include "support/WireGuard.h"

#include <algorithm>
#include <charconv>

namespace tarnwell::test {

namespace {

constexpr std::string_view forbiddenCommands[] = {"EXPUNGE", "CLOSE",  "CREATE", "DELETE",
                                                  "RENAME",  "APPEND", "SETACL"};

/// Removes the first word from the text and returns it in capitals.
std::string takeCapitals(std::string_view& text) {
  text.remove_prefix(std::min(text.find_first_not_of(" \t"), text.size()));
  const std::size_t end = std::min(text.find_first_of(" \t\r\n"), text.size());
  std::string word(text.substr(0, end));
  text.remove_prefix(end);
  std::ranges::transform(word, word.begin(),
                         [](char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; });
  return word;
}

bool isForbidden(std::string_view line) {
  takeCapitals(line);  // the tag
  std::string command = takeCapitals(line);
  if (command == "UID") {
    command = takeCapitals(line);
  }
  return std::ranges::find(forbiddenCommands, command) != std::end(forbiddenCommands);
}

std::string_view withoutLineEnd(std::string_view line) {
  return line.substr(0, line.find_last_not_of("\r\n") + 1);
}

/// The announcement of a literal at the end of a line, as in "{5}" or "{5+}".
struct Announcement {
  std::size_t size;
  bool waits;
};

std::optional<Announcement> announcementAtEnd(std::string_view line) {
  line = withoutLineEnd(line);
  if (!line.ends_with('}')) {
    return std::nullopt;
  }
  line.remove_suffix(1);
  const bool waits = !line.ends_with('+');
  if (!waits) {
    line.remove_suffix(1);
  }
  const std::size_t brace = line.rfind('{');
  if (brace == std::string_view::npos) {
    return std::nullopt;
  }
  line.remove_prefix(brace + 1);
  std::size_t size = 0;
  const auto [end, error] = std::from_chars(line.data(), line.data() + line.size(), size);
  if (error != std::errc() || end != line.data() + line.size()) {
    return std::nullopt;
  }
  return Announcement{size, waits};
}

}  // namespace

void WireGuard::clientSent(std::string_view bytes) {
  for (const char byte : bytes) {
    decideAboutLiteral();
    if (literalLeft_ > 0) {
      --literalLeft_;
      continue;
    }
    line_ += byte;
    if (byte == '\n') {
      endLine();
    }
  }
}

void WireGuard::serverSent(std::string_view bytes) {
  for (const char byte : bytes) {
    isGranted_ = isGranted_ || (isServerAtLineStart_ && byte == '+');
    isServerAtLineStart_ = byte == '\n';
  }
}

/// At the first byte after an announcement it is known whether the client may send the literal.
void WireGuard::decideAboutLiteral() {
  if (announced_) {
    literalLeft_ = isGranted_ ? *announced_ : 0;
    isCommandStart_ = !isGranted_;
    announced_.reset();
  }
}

void WireGuard::endLine() {
  if (isCommandStart_ && violation_.empty() && isForbidden(line_)) {
    violation_ = withoutLineEnd(line_);
  }
  isCommandStart_ = true;
  if (const std::optional<Announcement> literal = announcementAtEnd(line_)) {
    if (literal->waits) {
      announced_ = literal->size;
      isGranted_ = false;
    } else {
      literalLeft_ = literal->size;
      isCommandStart_ = false;
    }
  }
  line_.clear();
}

}  // namespace tarnwell::test
