#include "Core/ISO8601.h"

#include <algorithm>
#include <cstdio>

#include "Text/DecimalNumber.h"

namespace tarnwell {
namespace {

using std::chrono::hours;
using std::chrono::minutes;
using std::chrono::seconds;

/// Reads a text of fixed width from left to right; the first surprise makes the whole reading fail.
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

/// What the zone's clocks are ahead of UTC; "Z" is UTC itself.
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

// RFC 3339, section 1, has room for the years 0000 to 9999 only.
constexpr Instant firstInstant = std::chrono::sys_days(std::chrono::year(0) / 1 / 1);
constexpr Instant lastInstant = std::chrono::sys_days(std::chrono::year(10000) / 1 / 1) - seconds(1);

}  // namespace

Instant currentInstant() { return std::chrono::floor<seconds>(std::chrono::system_clock::now()); }

std::string formatISO8601(Instant instant) {
  // An instant that has no form is moved to the nearest that has one.
  Instant shown = std::clamp(instant, firstInstant, lastInstant);

  auto day = std::chrono::floor<std::chrono::days>(shown);
  std::chrono::year_month_day date(day);
  std::chrono::hh_mm_ss time(shown - day);
  // The room beyond is never used: the compiler warns of what fields of these types could print.
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

  // A leap second (":60") has no place in a count of seconds since 1970 and is refused.
  bool isTimeOfDay = hour < 24 && minute < 60 && second < 60 && zone.hour < 24 && zone.minute < 60;
  if (!fields.isWhole() || !day.ok() || !isTimeOfDay) {
    return std::nullopt;
  }
  auto offset = zone.sign * (hours(zone.hour) + minutes(zone.minute));
  const Instant instant =
      std::chrono::sys_days(day) + hours(hour) + minutes(minute) + seconds(second) - offset;
  // The zone can lead out of the years that can be written, in UTC and in an IMAP date as well.
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
