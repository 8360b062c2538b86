#include "Core/Secret.h"

#include <memory>
#include <new>
#include <string>
#include <type_traits>
#include <vector>

namespace tarnwell {

struct WatchedByte {
  char value;
};

}  // namespace tarnwell

/// Records the content of the memory of watched bytes when it is given back.
template <>
struct std::allocator<tarnwell::WatchedByte> {
  using value_type = tarnwell::WatchedByte;
  static inline std::string givenBack;

  value_type* allocate(std::size_t count) { return static_cast<value_type*>(::operator new(count)); }
  void deallocate(value_type* memory, std::size_t count) {
    givenBack.append(&memory->value, count);
    ::operator delete(memory);
  }
};

namespace tarnwell {
namespace {

TEST(SecretTest, holdsWhatItWasGiven) {
  Secret secret("app-");
  secret.append("pass");
  secret.append('!');
  EXPECT_EQ(secret.view(), "app-pass!");
  EXPECT_EQ(secret.size(), 9U);
  EXPECT_FALSE(secret.empty());
  secret.clear();
  EXPECT_TRUE(secret.empty());
  EXPECT_EQ(Secret(std::string_view("a\0b", 3)).size(), 3U);
}

TEST(SecretTest, clearingWipesTheBytesWhereTheyLie) {
  Secret secret("app-pass");
  const std::string_view before = secret.view();
  secret.clear();
  // The memory is kept for the next text, so the test may look at it.
  secret.append('x');
  ASSERT_EQ(secret.view().data(), before.data());
  EXPECT_EQ(before, std::string("x") + std::string(7, '\0'));
}

TEST(SecretTest, areEqualWhenAllBytesAre) {
  const std::string_view texts[] = {"",
                                    "a",
                                    "b",
                                    "aa",
                                    "ab",
                                    "ba",
                                    "abab",
                                    "ababab",
                                    std::string_view("\0", 1),
                                    std::string_view("a\0", 2),
                                    "\xff",
                                    "app-pass",
                                    "app-pasS",
                                    "App-pass"};
  for (const std::string_view left : texts) {
    for (const std::string_view right : texts) {
      EXPECT_EQ(Secret(left) == Secret(right), left == right) << left << " and " << right;
    }
  }
}

TEST(SecretTest, cannotBecomeATextByAccident) {
  EXPECT_FALSE((std::is_convertible_v<Secret, std::string>));
  EXPECT_FALSE((std::is_convertible_v<Secret, std::string_view>));
  EXPECT_FALSE((std::is_convertible_v<std::string, Secret>));
}

TEST(Wipe, overwritesEveryByteAndNoOther) {
  std::string bytes(100, 'x');
  wipe(bytes.data() + 10, 80);
  EXPECT_EQ(bytes, std::string(10, 'x') + std::string(80, '\0') + std::string(10, 'x'));
  wipe(bytes.data(), 0);
  EXPECT_EQ(bytes[0], 'x');
  wipe(nullptr, 0);
}

TEST(WipingAllocator, memoryIsOverwrittenBeforeItIsGivenBack) {
  std::allocator<WatchedByte>::givenBack.clear();
  {
    std::vector<WatchedByte, WipingAllocator<WatchedByte>> bytes;
    for (int count = 0; count < 1000; ++count) {
      bytes.push_back({'s'});  // grows many times
    }
  }
  std::string givenBack = std::allocator<WatchedByte>::givenBack;
  EXPECT_GE(givenBack.size(), 1000U + 512U);
  EXPECT_EQ(givenBack, std::string(givenBack.size(), '\0'));
}

}  // namespace
}  // namespace tarnwell
