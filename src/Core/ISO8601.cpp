#include "Core/ISO8601.h"

#include <algorithm>
#include <cstdio>

#include "Text/DecimalNumber.h"

namespace tarnwell {
namespace {

using std::chrono::hours;
using std::chrono::minutes;
using std::chrono::seconds;

/// Reads fields of fixed width from left to right. If one of them does not fit, the whole text fails.
class FixedFields {
 public:
  explicit FixedFields(std::string_view text) : rest_(text) {}

  int number(std::size_t digits) {
    const std::optional<int> value = decimalNumber<int>(rest_.substr(0, digits));
    if (rest_.size() < digits || !value) {
      return fail();
    }
    rest_.remove_prefix(digits);
    return *value;
  }

  void expect(char wanted) {
    if (!accept(wanted)) {
      fail();
    }
  }

  bool accept(char wanted) {
    if (!rest_.starts_with(wanted)) {
      return false;
    }
    rest_.remove_prefix(1);
    return true;
  }

  bool isWhole() const { return !failed_ && rest_.empty(); }

 private:
  int fail() {
    failed_ = true;
    return 0;
  }

  std::string_view rest_;
  bool failed_ = false;
};

std::chrono::year_month_day readDay(FixedFields& fields) {
  std::chrono::year year(fields.number(4));
  fields.expect('-');
  std::chrono::month month(static_cast<unsigned>(fields.number(2)));
  fields.expect('-');
  return year / month / std::chrono::day(static_cast<unsigned>(fields.number(2)));
}

struct ClockTime {
  int hour, minute, second;
};

ClockTime readTime(FixedFields& fields) {
  int hour = fields.number(2);
  fields.expect(':');
  int minute = fields.number(2);
  fields.expect(':');
  return {hour, minute, fields.number(2)};
}

/// How far the clocks of a zone are ahead of UTC. "Z" is UTC itself.
struct ZoneOffset {
  int sign, hour, minute;
};

ZoneOffset readZone(FixedFields& fields) {
  if (fields.accept('Z')) {
    return {1, 0, 0};
  }
  int sign = fields.accept('-') ? -1 : 1;
  if (sign > 0) {
    fields.expect('+');
  }
  int hour = fields.number(2);
  fields.expect(':');
  return {sign, hour, fields.number(2)};
}

// RFC 3339, section 1, allows only the years 0000 to 9999.
constexpr Instant firstInstant = std::chrono::sys_days(std::chrono::year(0) / 1 / 1);
constexpr Instant lastInstant = std::chrono::sys_days(std::chrono::year(10000) / 1 / 1) - seconds(1);

}  // namespace

Instant currentInstant() { return std::chrono::floor<seconds>(std::chrono::system_clock::now()); }

std::string formatISO8601(Instant instant) {
  // For an instant outside of these years, the nearest one inside is shown.
  Instant shown = std::clamp(instant, firstInstant, lastInstant);

  auto day = std::chrono::floor<std::chrono::days>(shown);
  std::chrono::year_month_day date(day);
  std::chrono::hh_mm_ss time(shown - day);
  // The 64 extra bytes are never used. They only satisfy the compiler, which does not know the range of each
  // field.
  char text[sizeof "0000-00-00T00:00:00Z" + 64];
  int length = std::snprintf(text, sizeof text, "%04d-%02u-%02uT%02d:%02d:%02dZ", int(date.year()),
                             unsigned(date.month()), unsigned(date.day()), int(time.hours().count()),
                             int(time.minutes().count()), int(time.seconds().count()));
  return std::string(text, static_cast<std::size_t>(length));
}

std::optional<Instant> parseISO8601(std::string_view text) {
  FixedFields fields(text);
  auto day = readDay(fields);
  fields.expect('T');
  auto [hour, minute, second] = readTime(fields);
  auto zone = readZone(fields);

  // A leap second (":60") is refused: a count of seconds since 1970 cannot represent it.
  bool isTimeOfDay = hour < 24 && minute < 60 && second < 60 && zone.hour < 24 && zone.minute < 60;
  if (!fields.isWhole() || !day.ok() || !isTimeOfDay) {
    return std::nullopt;
  }
  auto offset = zone.sign * (hours(zone.hour) + minutes(zone.minute));
  const Instant instant =
      std::chrono::sys_days(day) + hours(hour) + minutes(minute) + seconds(second) - offset;
  // The zone can move the instant out of the years that a UTC text and an IMAP date can show.
  if (instant < firstInstant || instant > lastInstant) {
    return std::nullopt;
  }
  return instant;
}

std::optional<Instant> parseISO8601Day(std::string_view text) {
  FixedFields fields(text);
  auto day = readDay(fields);
  if (!fields.isWhole() || !day.ok()) {
    return std::nullopt;
  }
  return std::chrono::sys_days(day);
}

}  // namespace tarnwell
