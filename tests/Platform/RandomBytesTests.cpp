#include "Platform/RandomBytes.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <set>
#include <system_error>

namespace tarnwell {
namespace {

TEST(RandomBytes, areOthersEachTime) {
  std::set<std::array<unsigned char, 32>> seen;
  for (int round = 0; round < 100; ++round) {
    std::array<unsigned char, 32> bytes{};
    fillWithRandom(bytes);
    EXPECT_TRUE(seen.insert(bytes).second);
  }
}

/// Each place takes every value: in 256 times 256 bytes the chance that one value is missing is below 1e-100.
TEST(RandomBytes, takeEveryValue) {
  std::array<bool, 256> seen{};
  for (int round = 0; round < 256; ++round) {
    std::array<unsigned char, 256> bytes{};
    fillWithRandom(bytes);
    for (const unsigned char byte : bytes) {
      seen[byte] = true;
    }
  }
  EXPECT_TRUE(std::ranges::all_of(seen, [](bool isSeen) { return isSeen; }));
}

TEST(RandomBytes, moreThanTheSystemGivesAtOnceIsAnError) {
  std::array<unsigned char, 257> bytes{};
  EXPECT_THROW(fillWithRandom(bytes), std::system_error);
}

}  // namespace
}  // namespace tarnwell
