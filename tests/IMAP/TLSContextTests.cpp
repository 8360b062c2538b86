#include "IMAP/TLSContext.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <string>

#include "support/ScopedEnvironment.h"
#include "support/TestCertificates.h"

namespace tarnwell::test {
namespace {

using namespace std::chrono_literals;
namespace fs = std::filesystem;

class TLSContext : public testing::Test {
 protected:
  TLSContext() { TestCertificates::shared(); }  // names a file and a directory of the test's own

  /// As if somebody had written the file anew.
  static void changeFile() {
    const fs::path file = getenv("SSL_CERT_FILE");
    fs::last_write_time(file, fs::last_write_time(file) + 1s);
  }
};

TEST_F(TLSContext, isKeptAsLongAsNothingChanges) {
  const auto context = sharedTLSContext();
  EXPECT_EQ(sharedTLSContext(), context);
  changeFile();
  const auto next = sharedTLSContext();
  EXPECT_NE(next, context);
  EXPECT_EQ(sharedTLSContext(), next);
  {
    const ScopedEnvironment otherDirectory({{"SSL_CERT_DIR", std::string("/nonexistent/certificates")}});
    EXPECT_NE(sharedTLSContext(), next);
  }
}

TEST_F(TLSContext, isNotKeptWhenItsFileCouldNotBeRead) {
  sharedTLSContext();  // what OpenSSL reads when it begins is there
  changeFile();
  rlimit usual{};
  ASSERT_EQ(getrlimit(RLIMIT_NOFILE, &usual), 0);
  const int lowest = open("/dev/null", O_RDONLY | O_CLOEXEC);
  ASSERT_GE(lowest, 0);
  close(lowest);
  const rlimit noMore{static_cast<rlim_t>(lowest), usual.rlim_max};
  ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &noMore), 0);
  const auto trustsNobody = sharedTLSContext();
  ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &usual), 0);
  const auto context = sharedTLSContext();
  EXPECT_NE(context, trustsNobody);
  EXPECT_EQ(sharedTLSContext(), context);
}

TEST_F(TLSContext, isNotKeptForAListOfDirectories) {
  const ScopedEnvironment twoDirectories({{"SSL_CERT_DIR", std::string("/nonexistent/a:/nonexistent/b")}});
  EXPECT_NE(sharedTLSContext(), sharedTLSContext());
}

}  // namespace
}  // namespace tarnwell::test
