#include "IMAP/Connection/TLSContext.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <string>

#include "support/ScopedEnvironment.h"
#include "support/TemporaryDirectory.h"
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

/// What is trusted must be a file; a link to one is fine. Were the pipe or the device read, this would not
/// end.
TEST_F(TLSContext, fileOfCertificatesMustBeARegularFile) {
  const TemporaryDirectory directory;
  const fs::path pipe = directory / "pipe";
  ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
  fs::create_symlink(pipe, directory / "link to a pipe");
  fs::create_symlink(directory / "nowhere", directory / "dangling link");
  const std::string trusted = getenv("SSL_CERT_FILE");
  for (const fs::path& path :
       {directory.path(), pipe, directory / "link to a pipe", directory / "dangling link",
        directory / "missing", fs::path("/dev/null"), fs::path("/dev/zero")}) {
    const ScopedEnvironment environment({{"SSL_CERT_FILE", path.string()}});
    try {
      sharedTLSContext();
      ADD_FAILURE() << "no error for " << path;
    } catch (const TrustError& error) {
      EXPECT_EQ(std::string(error.what()), "SSL_CERT_FILE names no regular file (" + path.string() + ")");
    }
  }
  fs::create_symlink(trusted, directory / "link to a file");
  for (const std::string& name : {(directory / "link to a file").string(), std::string()}) {
    const ScopedEnvironment environment({{"SSL_CERT_FILE", name}});
    EXPECT_NE(sharedTLSContext(), nullptr) << name;
  }
}

TEST_F(TLSContext, isNotKeptForAListOfDirectories) {
  const ScopedEnvironment twoDirectories({{"SSL_CERT_DIR", std::string("/nonexistent/a:/nonexistent/b")}});
  EXPECT_NE(sharedTLSContext(), sharedTLSContext());
}

}  // namespace
}  // namespace tarnwell::test
