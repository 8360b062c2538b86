#include "App/Models/ActivityCall.h"

#include <QLatin1String>
#include <algorithm>
#include <iterator>

namespace tarnwell {
namespace {

struct Name {
  const char* text;
  CalledTool tool;
};

constexpr Name names[] = {
    {"get_status", CalledTool::getStatus},
    {"list_folders", CalledTool::listFolders},
    {"search_inbox", CalledTool::searchInbox},
    {"get_message_summary", CalledTool::getMessageSummary},
    {"get_message_body", CalledTool::getMessageBody},
    {"propose_inbox_cleanup", CalledTool::proposeInboxCleanup},
    {"move_message", CalledTool::moveMessage},
    {"mark_as_read", CalledTool::markAsRead},
    {"trash_message", CalledTool::trashMessage},
};

}  // namespace

CalledTool calledTool(const QString& name) {
  const auto* const found = std::find_if(std::begin(names), std::end(names),
                                         [&](const Name& each) { return name == QLatin1String(each.text); });
  return found == std::end(names) ? CalledTool::other : found->tool;
}

}  // namespace tarnwell
