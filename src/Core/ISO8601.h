#pragma once

/// Instants as ISO 8601 internet date-times (RFC 3339) in whole seconds.
///
/// Threads: all functions are pure, except that `currentInstant` reads the clock.

#include <chrono>
#include <optional>
#include <string>
#include <string_view>

namespace tarnwell {

/// An instant in UTC, whole seconds.
using Instant = std::chrono::sys_seconds;

/// The present moment, cut to whole seconds.
Instant currentInstant();

/// For example "2024-05-01T09:30:00Z". Outside of the years 0000 to 9999 it shows the nearest instant inside.
std::string formatISO8601(Instant instant);

/// Reads date, time and time zone ("2024-05-01T09:30:00Z", "2024-05-01T18:30:00+09:00"). Absent for any other
/// text: also for a date alone, fractions of seconds and trailing characters. Absent for an instant that lies
/// outside of the years 0000 to 9999 in UTC.
std::optional<Instant> parseISO8601(std::string_view text);

/// Reads a date alone ("2024-05-01") as midnight UTC of that day. Absent for any other text.
std::optional<Instant> parseISO8601Day(std::string_view text);

}  // namespace tarnwell
