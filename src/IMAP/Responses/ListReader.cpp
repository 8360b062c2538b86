#include <algorithm>
#include <utility>

#include "IMAP/Responses/IMAPParser.h"
#include "IMAP/Responses/TokenReading.h"
#include "Text/ASCIICase.h"

namespace tarnwell {
namespace {

/// The text after the last delimiter. Splits the path from the front.
std::string lastComponent(std::string_view path, std::string_view delimiter) {
  if (delimiter.empty()) {
    return std::string(path);
  }
  std::size_t begin = 0;
  for (std::size_t found; (found = path.find(delimiter, begin)) != std::string_view::npos;) {
    begin = found + delimiter.size();
  }
  return std::string(path.substr(begin));
}

std::optional<std::string> firstSpecialUse(const std::vector<std::string>& flags) {
  const auto found =
      std::find_if(flags.begin(), flags.end(), [](const auto& flag) { return specialUse(flag).has_value(); });
  return found == flags.end() ? std::nullopt : std::optional(*found);
}

}  // namespace

/// RFC 3501, section 9: mailbox-data = "LIST" SP mailbox-list / "LSUB" SP mailbox-list / ...
///                      mailbox-list = "(" [mbx-list-flags] ")" SP
///                                     (DQUOTE QUOTED-CHAR DQUOTE / nil) SP mailbox
std::optional<IMAPFolder> IMAPParser::parseList(IMAPTokenList tokens) {
  ElementReader elements(tokens);
  const auto star = elements.next();
  const auto name = elements.next();
  const auto attributes = elements.next();
  const auto delimiter = elements.next();
  std::optional<std::string> path = textOf(elements.next());
  // When there is a mailbox, the four elements before it exist too.
  if (!path || path->empty() || star->kind() != IMAPToken::Kind::atom || !star->textEquals("*") ||
      !(name->textEquals("LIST") || name->textEquals("LSUB"))) {
    return std::nullopt;
  }
  const std::vector<std::string> flags = textsOf(listOf(attributes));
  IMAPFolder folder;
  folder.path = *std::move(path);
  // Deliberate: NIL, which means that there is no hierarchy, is read as a slash.
  folder.delimiter = textOf(delimiter).value_or("/");
  folder.name = lastComponent(folder.path, folder.delimiter);
  folder.specialUse = firstSpecialUse(flags);
  folder.selectable = std::none_of(flags.begin(), flags.end(), [](const std::string& flag) {
    return equalsIgnoringASCIICase(flag, "\\Noselect");
  });
  return folder;
}

}  // namespace tarnwell
