#pragma once

/// Bytes that nobody can guess, from the system's source.
///
///     std::array<unsigned char, 32> bytes;
///     fillWithRandom(bytes);
///
/// Threads: any. Waits only while the system has just begun and has no randomness yet.

#include <span>

namespace tarnwell {

/// At most 256 bytes. Throws `std::system_error` when the system has none to give; then the bytes do not
/// count.
void fillWithRandom(std::span<unsigned char> bytes);

}  // namespace tarnwell
