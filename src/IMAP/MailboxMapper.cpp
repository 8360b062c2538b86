#include "IMAP/MailboxMapper.h"

#include <algorithm>
#include <array>

#include "Platform/Text.h"

namespace tarnwell {

namespace {

constexpr std::array<std::string_view, 5> usualTrashNames{"trash", "deleted messages", "deleted items",
                                                          "deleted", "ゴミ箱"};

bool isUsualTrashName(const std::string& text) {
  return std::ranges::find(usualTrashNames, lowercased(text)) != usualTrashNames.end();
}

template <class Predicate>
std::optional<IMAPFolder> firstOf(const std::vector<IMAPFolder>& folders, Predicate matches) {
  const auto found = std::ranges::find_if(folders, matches);
  return found == folders.end() ? std::nullopt : std::optional(*found);
}

}  // namespace

std::optional<IMAPFolder> MailboxMapper::resolve(std::string_view name,
                                                 const std::vector<IMAPFolder>& folders) {
  const std::string wanted = lowercased(name);
  std::optional<IMAPFolder> byPath =
      firstOf(folders, [&](const IMAPFolder& folder) { return lowercased(folder.path) == wanted; });
  if (byPath) {
    return byPath;
  }
  return firstOf(folders, [&](const IMAPFolder& folder) { return lowercased(folder.name) == wanted; });
}

std::optional<IMAPFolder> MailboxMapper::trashFolder(const std::vector<IMAPFolder>& folders) {
  std::optional<IMAPFolder> marked = firstOf(
      folders, [](const IMAPFolder& folder) { return folder.specialUse == rawValue(SpecialUse::trash); });
  if (marked) {
    return marked;
  }
  return firstOf(folders, [](const IMAPFolder& folder) {
    return isUsualTrashName(folder.name) || isUsualTrashName(folder.path);
  });
}

}  // namespace tarnwell
