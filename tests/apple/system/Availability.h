#pragma once

/// The oldest system that the program shall run on, as newer libraries ask for it: macOS 13.3.

#include <AvailabilityMacros.h>

#define __MAC_10_6 1060
#define __MAC_OS_X_VERSION_MIN_REQUIRED MAC_OS_X_VERSION_MIN_REQUIRED
