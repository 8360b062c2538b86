#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <pthread.h>

#include <chrono>

#include "IMAP/IMAPError.h"
#include "IMAP/TLSStream.h"

namespace tarnwell::test {
namespace {

/// While it lives, no thread can be started: none gets the memory for its stack.
class NoNewThreads {
 public:
  NoNewThreads() {
    pthread_getattr_default_np(&usual_);
    pthread_attr_t excessive;
    pthread_getattr_default_np(&excessive);
    pthread_attr_setstacksize(&excessive, std::size_t{1} << 62);
    pthread_setattr_default_np(&excessive);
  }
  ~NoNewThreads() { pthread_setattr_default_np(&usual_); }
  NoNewThreads(const NoNewThreads&) = delete;

 private:
  pthread_attr_t usual_;
};

TEST(TLSStream, lookUpThatCannotBeStartedFailsToConnect) {
  const NoNewThreads noNewThreads;
  TLSStream stream("localhost", 993, std::chrono::seconds(10));
  try {
    stream.connect();
    FAIL() << "connected";
  } catch (const IMAPError& error) {
    EXPECT_EQ(error.kind(), IMAPError::Kind::connectionFailed);
    EXPECT_THAT(error.description(), testing::HasSubstr("localhost:993: Resource temporarily unavailable"));
  }
}

}  // namespace
}  // namespace tarnwell::test
