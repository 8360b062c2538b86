#include <gtest/gtest.h>

#include "Platform/Desktop/LogFollower.h"

namespace tarnwell::test {
namespace {

TEST(LogFollowerApple, saysThatTheLogCannotBeFollowed) {
  std::vector<LogFollower::News> heard;
  const LogFollower follower({.subsystem = "app.tarnwell.Tarnwell"},
                             [&](LogFollower::News news) { heard.push_back(std::move(news)); });
  ASSERT_EQ(heard.size(), 1U);
  EXPECT_EQ(heard[0].access, LogAccess::notSupported);
  EXPECT_TRUE(heard[0].entries.empty());
}

}  // namespace
}  // namespace tarnwell::test
