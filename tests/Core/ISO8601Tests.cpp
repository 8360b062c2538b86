#include "Core/ISO8601.h"

namespace tarnwell {
namespace {

using std::chrono::hours;
using std::chrono::minutes;
using std::chrono::seconds;
using std::chrono::sys_days;
using namespace std::chrono_literals;

const Instant may = sys_days(2024y / 5 / 1) + 9h + 30min;

struct ParseRow {
  const char* text;
  std::optional<Instant> expected;
};

TEST(ISO8601, datesWithTimeAndZone) {
  const ParseRow rows[] = {
      {"2024-05-01T09:30:00Z", may},
      {"2024-05-01T18:30:00+09:00", may},
      {"2024-05-01T04:00:00-05:30", may},
      {"2024-05-01T09:30:00-00:00", may},
      {"2024-04-30T23:30:00-10:00", may},
      {"1970-01-01T00:00:00Z", Instant{}},
      {"1969-12-31T23:59:59Z", Instant{-1s}},
      {"2024-02-29T00:00:00Z", sys_days(2024y / 2 / 29)},
      {"0000-01-01T00:00:00Z", sys_days(0y / 1 / 1)},
      {"9999-12-31T23:59:59Z", sys_days(9999y / 12 / 31) + 24h - 1s},
      {"2024-05-01T00:00:00+23:59", sys_days(2024y / 4 / 30) + 1min},
  };
  for (const ParseRow& row : rows) {
    EXPECT_EQ(parseISO8601(row.text), row.expected) << row.text;
  }
}

TEST(ISO8601, everythingElseIsAbsent) {
  const char* texts[] = {
      "",
      "2024",
      "2024-05-01",
      "2024-05-01T09:30",
      "2024-05-01T09:30Z",
      "2024-05-01T09:30:00",
      "2024-05-01 09:30:00Z",
      "2024-05-01t09:30:00Z",
      "2024-05-01T09:30:00z",
      " 2024-05-01T09:30:00Z",
      "2024-05-01T09:30:00Z ",
      "2024-05-01T09:30:00ZZ",
      "2024-05-01T09:30:00.5Z",
      "2024-05-01T09:30:00,5Z",
      "2024-5-1T9:30:0Z",
      "24-05-01T09:30:00Z",
      "20240501T093000Z",
      "+2024-05-01T09:30:00Z",
      "-024-05-01T09:30:00Z",
      "2024-+5-01T09:30:00Z",
      "2024-05- 1T09:30:00Z",
      "2024-13-01T09:30:00Z",
      "2024-00-01T09:30:00Z",
      "2024-05-00T09:30:00Z",
      "2024-05-32T09:30:00Z",
      "2024-04-31T09:30:00Z",
      "2023-02-29T09:30:00Z",
      "1900-02-29T09:30:00Z",
      "2024-05-01T24:00:00Z",
      "2024-05-01T23:60:00Z",
      "2024-05-01T23:59:60Z",
      "2024-05-01T09:30:00+9:00",
      "2024-05-01T09:30:00+0900",
      "2024-05-01T09:30:00+09",
      "2024-05-01T09:30:00+24:00",
      "2024-05-01T09:30:00+00:60",
      "2024-05-01T09:30:00 +09:00",
      "2024-05-01T09:30:00GMT",
      "2024-05-01T09:30:00+",
      "２０２４-05-01T09:30:00Z",
      "9999-12-31T23:59:59-00:01",
      "0000-01-01T00:00:00+00:01",
  };
  for (const char* text : texts) {
    EXPECT_EQ(parseISO8601(text), std::nullopt) << text;
  }
}

TEST(ISO8601, zeroByteIsNoEnd) {
  EXPECT_EQ(parseISO8601(std::string_view("2024-05-01T09:30:00Z\0", 21)), std::nullopt);
}

TEST(ISO8601, everyTruncationIsAbsent) {
  const std::string_view text = "2024-05-01T18:30:00+09:00";
  for (std::size_t size = 0; size < text.size(); ++size) {
    EXPECT_EQ(parseISO8601(text.substr(0, size)), std::nullopt) << text.substr(0, size);
  }
}

TEST(ISO8601, daysAreMidnightUTC) {
  const ParseRow rows[] = {
      {"2024-05-01", sys_days(2024y / 5 / 1)},
      {"2024-02-29", sys_days(2024y / 2 / 29)},
      {"2023-02-29", std::nullopt},
      {"2024-5-1", std::nullopt},
      {"2024-05-01Z", std::nullopt},
      {"2024-05-01T00:00:00Z", std::nullopt},
      {" 2024-05-01", std::nullopt},
      {"2024/05/01", std::nullopt},
      {"2024-05", std::nullopt},
      {"", std::nullopt},
  };
  for (const ParseRow& row : rows) {
    EXPECT_EQ(parseISO8601Day(row.text), row.expected) << row.text;
  }
}

TEST(ISO8601, formatsInUTC) {
  EXPECT_EQ(formatISO8601(may), "2024-05-01T09:30:00Z");
  EXPECT_EQ(formatISO8601(Instant{}), "1970-01-01T00:00:00Z");
  EXPECT_EQ(formatISO8601(Instant{-1s}), "1969-12-31T23:59:59Z");
  EXPECT_EQ(formatISO8601(sys_days(0y / 3 / 1)), "0000-03-01T00:00:00Z");
}

TEST(ISO8601, instantsOutsideOfTheFourDigitYearsAreMovedInside) {
  EXPECT_EQ(formatISO8601(sys_days(10000y / 1 / 1)), "9999-12-31T23:59:59Z");
  EXPECT_EQ(formatISO8601(Instant::max()), "9999-12-31T23:59:59Z");
  EXPECT_EQ(formatISO8601(sys_days(-1y / 12 / 31)), "0000-01-01T00:00:00Z");
  EXPECT_EQ(formatISO8601(Instant::min()), "0000-01-01T00:00:00Z");
}

TEST(ISO8601, whatWasFormattedIsReadAgain) {
  for (Instant instant{-62167219200s}; instant < Instant{253402300800s}; instant += 86399s * 1009) {
    ASSERT_EQ(parseISO8601(formatISO8601(instant)), instant) << formatISO8601(instant);
  }
}

TEST(ISO8601, currentInstantIsNow) {
  auto before = std::chrono::floor<seconds>(std::chrono::system_clock::now());
  Instant instant = currentInstant();
  EXPECT_LE(before, instant);
  EXPECT_LE(instant, std::chrono::system_clock::now());
}

}  // namespace
}  // namespace tarnwell
