#include "IMAP/Connection/Cancellation.h"

#include <gtest/gtest.h>

#include <thread>
#include <vector>

namespace tarnwell::test {
namespace {

TEST(Cancellation, isOffUntilItComes) {
  const Cancellation cancellation;
  EXPECT_FALSE(cancellation.isCancelled());
  EXPECT_NO_THROW(cancellation.throwIfCancelled());
  cancellation.cancel();
  EXPECT_TRUE(cancellation.isCancelled());
  EXPECT_THROW(cancellation.throwIfCancelled(), Cancelled);
}

TEST(Cancellation, copiesShareOneState) {
  const Cancellation cancellation;
  const Cancellation copy = cancellation;  // NOLINT(performance-unnecessary-copy-initialization)
  copy.cancel();
  EXPECT_TRUE(cancellation.isCancelled());
  EXPECT_FALSE(Cancellation().isCancelled());
}

TEST(Cancellation, wakesEachWakerOnceWhileItLives) {
  const Cancellation cancellation;
  std::vector<int> woken;
  const Cancellation::Waker first(cancellation, [&] { woken.push_back(1); });
  {
    const Cancellation::Waker gone(cancellation, [&] { woken.push_back(2); });
  }
  const Cancellation::Waker third(cancellation, [&] { woken.push_back(3); });
  cancellation.cancel();
  cancellation.cancel();
  const Cancellation::Waker late(cancellation, [&] { woken.push_back(4); });
  EXPECT_EQ(woken, (std::vector<int>{1, 3}));
}

TEST(Cancellation, manyThreadsRegisterWhileOneCancels) {
  const Cancellation cancellation;
  std::vector<std::thread> threads;
  for (int thread = 0; thread < 4; ++thread) {
    threads.emplace_back([&cancellation] {
      while (!cancellation.isCancelled()) {
        int calls = 0;
        {
          const Cancellation::Waker waker(cancellation, [&calls] { ++calls; });
        }
        EXPECT_LE(calls, 1);
      }
    });
  }
  cancellation.cancel();
  for (std::thread& thread : threads) {
    thread.join();
  }
}

}  // namespace
}  // namespace tarnwell::test
