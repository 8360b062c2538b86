#include "Assistants/AssistantPlaces.h"

namespace tarnwell {

FolderLayout ownFolderLayout() { return FolderLayout::linuxDesktop; }

}  // namespace tarnwell
