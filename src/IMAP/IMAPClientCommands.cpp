/// How the client writes commands and collects the answers (RFC 3501, sections 2.2 and 7.5).

#include <algorithm>

#include "IMAP/Connection/IMAPError.h"
#include "IMAP/IMAPClient.h"
#include "Text/Text.h"
#include "Text/UTF8.h"

namespace tarnwell {

namespace {

constexpr std::string_view lineEnd = "\r\n";

bool holdsControlCharacter(std::string_view text) {
  for (std::size_t position = 0; position < text.size();) {
    if (isControlCharacter(nextCodePoint(text, position))) {
      return true;
    }
  }
  return false;
}

/// Escapes a text for a quoted string (RFC 3501, section 9).
void appendEscaped(Secret& line, std::string_view text) {
  for (const char byte : text) {
    if (byte == '\\' || byte == '"') {
      line.append('\\');
    }
    line.append(byte);
  }
}

/// Replaces control and format characters by blanks, and invalid UTF-8 by U+FFFD. `Text` is a string or a
/// secret.
template <class Text>
void appendBlanked(Text& result, std::string_view text) {
  for (std::size_t position = 0; position < text.size();) {
    const std::size_t begin = position;
    bool isValid = true;
    const char32_t codePoint = nextCodePoint(text, position, &isValid);
    const bool isBlank = isControlCharacter(codePoint) || isFormatCharacter(codePoint);
    result.append(isBlank ? " " : isValid ? text.substr(begin, position - begin) : "\uFFFD");
  }
}

}  // namespace

IMAPConnection& IMAPClient::connection() {
  if (!connection_ || !connection_->isAlive()) {
    throw IMAPError::connectionClosed();
  }
  return *connection_;
}

std::string IMAPClient::nextTag() {
  std::string number = std::to_string(++tagCounter_);
  if (number.size() < 4) {
    number.insert(0, 4 - number.size(), '0');
  }
  return "A" + number;
}

IMAPParser::Completion IMAPClient::execute(std::string_view command, const ResponseReader& read) {
  const std::string tag = queue(command);
  sendQueued();
  return readUntilTagged(tag, read);
}

/// Returns the tag of the command, which goes out with the next `sendQueued`.
std::string IMAPClient::queue(std::string_view command) {
  connection();  // throws before a tag is used
  std::string tag = nextTag();
  underWay_.push_back(tag);
  queued_.append(tag);
  queued_.append(' ');
  queued_.append(command);
  queued_.append(lineEnd);
  return tag;
}

void IMAPClient::sendQueued() {
  if (!queued_.empty()) {
    connection().sendBytes(queued_.view());
    queued_.clear();
  }
}

IMAPParser::Completion IMAPClient::executeArgs(const std::vector<IMAPArg>& arguments,
                                               const ResponseReader& read) {
  connection();  // throws before a tag is used
  const std::string tag = nextTag();
  Secret line(tag + " ");
  for (const IMAPArg& argument : arguments) {
    if (argument.kind == IMAPArg::Kind::literal) {
      requestContinuation(line, argument.text.size());
    }
    line.append(argument.text);
  }
  line.append(lineEnd);
  connection().sendBytes(line.view());
  underWay_.push_back(tag);  // a refused literal has had its answer
  return readUntilTagged(tag, read);
}

/// Announces a literal, sends the line so far and waits for the server's "+". The literal then begins the
/// next piece to send.
/// Deliberate: any other line ends the command, because a literal must not follow a possible refusal. This
/// holds even for an untagged response, which a server may send at any time (RFC 3501, section 7).
void IMAPClient::requestContinuation(Secret& line, std::size_t literalSize) {
  line.append('{');
  line.append(std::to_string(literalSize));
  line.append('}');
  line.append(lineEnd);
  connection().sendBytes(line.view());
  line.clear();
  const std::string answer = connection().readLogicalLine();
  if (!answer.starts_with('+')) {
    throw IMAPError::unexpectedResponse(serverText(answer));
  }
}

/// Passes over the answers to earlier commands.
IMAPParser::Completion IMAPClient::readUntilTagged(const std::string& tag, const ResponseReader& read) {
  for (;;) {
    if (Tagged answer = readTagged(read); answer.tag == tag) {
      return std::move(answer.completion);
    }
  }
}

/// Reads until one of the commands under way is answered. A server may answer them in any order.
IMAPClient::Tagged IMAPClient::readTagged(const ResponseReader& read) {
  for (;;) {
    std::string line = connection().readLogicalLine();
    const auto answered = std::ranges::find(underWay_, std::string_view(line).substr(0, line.find(' ')));
    if (answered != underWay_.end() && line.size() > answered->size()) {
      std::optional<IMAPParser::Completion> completion = IMAPParser::parseCompletion(line, *answered);
      if (!completion) {
        throw IMAPError::unexpectedResponse(serverText(line));
      }
      Tagged answer{std::move(*answered), *std::move(completion)};
      underWay_.erase(answered);
      return answer;
    }
    if (!line.starts_with('+')) {
      read(std::move(line));
    }
  }
}

/// Deliberate: the error names only the first word of the command. A failed "UID SEARCH" is a failed UID.
void IMAPClient::ensureOK(const IMAPParser::Completion& completion, std::string_view command) const {
  if (completion.status != IMAPParser::Completion::Status::ok) {
    throw IMAPError::commandFailed(std::string(command.substr(0, command.find(' '))),
                                   serverText(completion.text));
  }
}

void IMAPClient::appendQuoted(Secret& line, std::string_view text) {
  if (holdsControlCharacter(text)) {
    throw IMAPError::invalidArgument("control character in IMAP argument");
  }
  line.append('"');
  appendEscaped(line, text);
  line.append('"');
}

std::string IMAPClient::quoted(std::string_view text) {
  Secret line;
  appendQuoted(line, text);
  return std::string(line.view());
}

/// Searches for the password after both texts were blanked and trimmed, because a server may send a tab for a
/// blank. Searches before the cut, because the cut may leave a part of the password.
std::string IMAPClient::safeSummary(std::string_view text, const Secret& password) {
  constexpr std::size_t maximumLength = 200;
  std::string blanked;
  appendBlanked(blanked, text);
  Secret plain;
  appendBlanked(plain, password.view());
  Secret escaped;
  appendEscaped(escaped, plain.view());
  const std::string discreet = masked(blanked, {trimmed(plain.view()), trimmed(escaped.view())});
  return std::string(characterPrefix(trimmed(discreet), maximumLength));
}

}  // namespace tarnwell
