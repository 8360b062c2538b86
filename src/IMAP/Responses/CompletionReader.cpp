#include <array>

#include "IMAP/Responses/IMAPParser.h"
#include "Text/ASCIICase.h"
#include "Text/Text.h"

namespace tarnwell {
namespace {

/// White space within a line: the tab and the space separators (category Zs) of Unicode 15.
constexpr std::array<std::string_view, 18> blanks{"\t",           " ",
                                                  "\xC2\xA0",     "\xE1\x9A\x80",
                                                  "\xE2\x80\x80", "\xE2\x80\x81",
                                                  "\xE2\x80\x82", "\xE2\x80\x83",
                                                  "\xE2\x80\x84", "\xE2\x80\x85",
                                                  "\xE2\x80\x86", "\xE2\x80\x87",
                                                  "\xE2\x80\x88", "\xE2\x80\x89",
                                                  "\xE2\x80\x8A", "\xE2\x80\xAF",
                                                  "\xE2\x81\x9F", "\xE3\x80\x80"};

std::string_view withoutLeadingBlanks(std::string_view text) {
  for (auto blank = blanks.begin(); blank != blanks.end();) {
    if (text.starts_with(*blank)) {
      text.remove_prefix(blank->size());
      blank = blanks.begin();
    } else {
      ++blank;
    }
  }
  return text;
}

struct StatusWord {
  std::string_view word;
  IMAPParser::Completion::Status status;
};

constexpr std::array<StatusWord, 3> statusWords{{{"OK", IMAPParser::Completion::Status::ok},
                                                 {"NO", IMAPParser::Completion::Status::no},
                                                 {"BAD", IMAPParser::Completion::Status::bad}}};

}  // namespace

/// RFC 3501, section 9: response-tagged = tag SP resp-cond-state CRLF
///                      resp-cond-state = ("OK" / "NO" / "BAD") SP resp-text
/// Deliberate: the blanks after the tag and after the status word are not required. The caller passes only
/// lines with its own tag, and servers differ when the text is empty.
std::optional<IMAPParser::Completion> IMAPParser::parseCompletion(std::string_view line,
                                                                  std::string_view tag) {
  line = trimmed(line);
  if (!line.starts_with(tag)) {
    return std::nullopt;
  }
  const std::string_view condition = withoutLeadingBlanks(line.substr(tag.size()));
  for (const auto& [word, status] : statusWords) {
    if (startsWithIgnoringASCIICase(condition, word)) {
      // The end of the line is already trimmed.
      return Completion{status, repairedUTF8(withoutLeadingBlanks(condition.substr(word.size())))};
    }
  }
  return std::nullopt;
}

}  // namespace tarnwell
