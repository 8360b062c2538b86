#pragma once

/// Finds a port for the endpoint when the one that was wanted is taken.
///
///     if (http.startFailure() == std::errc::address_in_use) {
///       std::optional<std::uint16_t> other = freeLoopbackPort(8766);  // 8766 in most cases
///     }
///
/// Threads: any. Lasts a moment.

#include <cstdint>
#include <optional>

namespace tarnwell {

/// The first port of 127.0.0.1 from this one on that nobody listens at, within the next hundred ports and
/// from 1024 on; if they are all taken, one that the system chooses. From 0 on: one that the system chooses.
/// It is free when this returns, and another program may take it right after. Absent when there is none.
std::optional<std::uint16_t> freeLoopbackPort(std::uint16_t from);

}  // namespace tarnwell
