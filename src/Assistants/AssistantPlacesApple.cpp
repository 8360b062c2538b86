#include "Assistants/AssistantPlaces.h"

namespace tarnwell {

FolderLayout ownFolderLayout() { return FolderLayout::macOS; }

}  // namespace tarnwell
