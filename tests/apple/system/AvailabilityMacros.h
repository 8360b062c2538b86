#pragma once

/// The oldest system that the program shall run on, as libraries ask for it: macOS 13.3.

#define MAC_OS_X_VERSION_MIN_REQUIRED 130300
#define MAC_OS_X_VERSION_10_6 1060
