#pragma once

/// Which of the maker's systems is meant: the one for desktop computers.

#define TARGET_OS_MAC 1
#define TARGET_OS_OSX 1
#define TARGET_OS_IPHONE 0
#define TARGET_OS_MACCATALYST 0
#define TARGET_OS_SIMULATOR 0
