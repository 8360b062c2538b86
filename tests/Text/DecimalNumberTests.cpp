#include "Text/DecimalNumber.h"

#include <gtest/gtest.h>

#include <cstdint>

namespace tarnwell::test {
namespace {

using Number = std::optional<std::int64_t>;

constexpr auto absent = std::nullopt;

/// The number that a text gives under each rule about the sign.
struct NumberRow {
  const char* name;
  const char* text;
  Number none;
  Number plus;
  Number plusOrMinus;
};

const NumberRow numberRows[] = {
    {"empty", "", absent, absent, absent},
    {"zero", "0", 0, 0, 0},
    {"leading zeros", "007", 7, 7, 7},
    {"plus", "+7", absent, 7, 7},
    {"minus", "-7", absent, absent, -7},
    {"negative zero", "-0", absent, absent, 0},
    {"sign alone", "+", absent, absent, absent},
    {"minus alone", "-", absent, absent, absent},
    {"two plus", "++7", absent, absent, absent},
    {"plus and minus", "+-7", absent, absent, absent},
    {"minus and plus", "-+7", absent, absent, absent},
    {"blank before", " 7", absent, absent, absent},
    {"blank after", "7 ", absent, absent, absent},
    {"blank after the sign", "+ 7", absent, absent, absent},
    {"fraction", "7.0", absent, absent, absent},
    {"exponent", "7e1", absent, absent, absent},
    {"hexadecimal", "0x7", absent, absent, absent},
    {"letter", "7a", absent, absent, absent},
    {"full-width digit", "\uFF17", absent, absent, absent},
    {"greatest", "9223372036854775807", INT64_MAX, INT64_MAX, INT64_MAX},
    {"beyond the greatest", "9223372036854775808", absent, absent, absent},
    {"least", "-9223372036854775808", absent, absent, INT64_MIN},
    {"beyond the least", "-9223372036854775809", absent, absent, absent},
    {"greatest after zeros", "0000000000000000000009223372036854775807", INT64_MAX, INT64_MAX, INT64_MAX},
};

TEST(DecimalNumber, isReadWithTheSignThatIsAllowed) {
  for (const NumberRow& row : numberRows) {
    EXPECT_EQ(decimalNumber<std::int64_t>(row.text), row.none) << row.name;
    EXPECT_EQ(decimalNumber<std::int64_t>(row.text, Sign::plus), row.plus) << row.name;
    EXPECT_EQ(decimalNumber<std::int64_t>(row.text, Sign::plusOrMinus), row.plusOrMinus) << row.name;
  }
}

TEST(DecimalNumber, fitsItsType) {
  EXPECT_EQ(decimalNumber<std::uint32_t>("4294967295"), 4294967295u);
  EXPECT_EQ(decimalNumber<std::uint32_t>("4294967296"), std::nullopt);
  EXPECT_EQ(decimalNumber<std::uint32_t>("-1", Sign::plusOrMinus), std::nullopt);
  EXPECT_EQ(decimalNumber<std::uint64_t>("18446744073709551615"), 18446744073709551615u);
  EXPECT_EQ(decimalNumber<std::uint64_t>("18446744073709551616"), std::nullopt);
}

}  // namespace
}  // namespace tarnwell::test
