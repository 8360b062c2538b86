/// What clients leave behind that close their connection while their call waits.

#include <gtest/gtest.h>
#include <malloc.h>

#include "MCP/HTTP/HTTPFixture.h"

namespace tarnwell::test {
namespace {

class HTTPLeavingMemory : public HTTPTest {};

/// The bytes that are allocated. A sanitizer's allocator does not count them.
TEST_F(HTTPLeavingMemory, isThatOfNoConnectionAndNoBody) {
  startHTTP();
  LoopbackClient running = connect();
  running.send(post(slowCall));
  ASSERT_TRUE(gate.awaitArrivals(1));
  const std::string body(std::size_t{1024} * 1024, ' ');
  awaitQueue();
  const std::size_t before = ::mallinfo2().uordblks + ::mallinfo2().hblkhd;
  for (int i = 0; i < 100; ++i) {
    LoopbackClient leaving = connect();
    leaving.send(post(body));
    awaitQueue();
  }
  for (int i = 0; i < 1000; ++i) {
    connect().send(post(slowCall));
  }
  awaitQueue();
  const std::size_t after = ::mallinfo2().uordblks + ::mallinfo2().hblkhd;
  EXPECT_LT(after, before + 2 * body.size());
}

}  // namespace
}  // namespace tarnwell::test
