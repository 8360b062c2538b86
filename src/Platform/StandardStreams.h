#pragma once

/// The standard streams and closed pipes of a process, the same on every system with POSIX.

namespace tarnwell {

/// The part of `prepareProcess` (Platform/Process.h) that all systems share: opens /dev/null on each of the
/// descriptors 0 to 2 that is closed, and ignores SIGPIPE and SIGXFSZ.
void secureStandardStreams();

}  // namespace tarnwell
