#pragma once

/// Starting programs, with the name that macOS 10.15 and newer have for changing the folder.

#include_next <spawn.h>

extern "C" int posix_spawn_file_actions_addchdir_np(posix_spawn_file_actions_t* actions, const char* folder);
