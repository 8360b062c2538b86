#include "IMAP/MailboxMapper.h"

#include <algorithm>
#include <array>

#include "Text/Text.h"

namespace tarnwell {

namespace {

constexpr std::array<std::string_view, 5> usualTrashNames{"trash", "deleted messages", "deleted items",
                                                          "deleted", "ゴミ箱"};

bool isUsualTrashName(const std::string& text) {
  return std::ranges::find(usualTrashNames, lowercased(text)) != usualTrashNames.end();
}

/// Returns one of the texts that name a folder.
using Spelling = std::string (*)(const IMAPFolder&);

std::string pathAsSent(const IMAPFolder& folder) { return folder.path; }
std::string nameAsSent(const IMAPFolder& folder) { return folder.name; }

template <class Predicate>
std::optional<IMAPFolder> firstOf(const std::vector<IMAPFolder>& folders, Predicate matches) {
  const auto found = std::ranges::find_if(folders, matches);
  return found == folders.end() ? std::nullopt : std::optional(*found);
}

}  // namespace

std::optional<IMAPFolder> MailboxMapper::resolve(std::string_view name,
                                                 const std::vector<IMAPFolder>& folders) {
  const std::string wanted = lowercased(name);
  for (const Spelling spelling : {pathAsSent, nameAsSent, readablePath, readableName}) {
    std::optional<IMAPFolder> found =
        firstOf(folders, [&](const IMAPFolder& folder) { return lowercased(spelling(folder)) == wanted; });
    if (found) {
      return found;
    }
  }
  return std::nullopt;
}

std::optional<IMAPFolder> MailboxMapper::trashFolder(const std::vector<IMAPFolder>& folders) {
  std::optional<IMAPFolder> marked = firstOf(
      folders, [](const IMAPFolder& folder) { return folder.specialUse == rawValue(SpecialUse::trash); });
  if (marked) {
    return marked;
  }
  std::optional<IMAPFolder> namedAsSent = firstOf(folders, [](const IMAPFolder& folder) {
    return isUsualTrashName(folder.name) || isUsualTrashName(folder.path);
  });
  if (namedAsSent) {
    return namedAsSent;
  }
  return firstOf(folders, [](const IMAPFolder& folder) {
    return isUsualTrashName(readableName(folder)) || isUsualTrashName(readablePath(folder));
  });
}

}  // namespace tarnwell
