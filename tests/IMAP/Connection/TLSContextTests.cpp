#include "IMAP/Connection/TLSContext.h"

#include <gtest/gtest.h>
#include <openssl/ssl.h>
#include <sys/stat.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
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

  static int trustedCertificates() {
    auto context = newTLSContext();
    X509_STORE* store = SSL_CTX_get_cert_store(context.native_handle());
    return sk_X509_OBJECT_num(X509_STORE_get0_objects(store));
  }
};

/// A certificate that the user withdraws or adds counts from the next connection on.
TEST_F(TLSContext, fileRewrittenInItsPlaceIsReadAnew) {
  const std::string trusted = getenv("SSL_CERT_FILE");
  const TemporaryDirectory directory;
  const fs::path file = directory / "trusted.pem";
  const ScopedEnvironment environment({{"SSL_CERT_FILE", file.string()}});
  const auto rewrite = [&file](const std::string& text) { std::ofstream(file, std::ios::trunc) << text; };
  std::stringstream authority;
  authority << std::ifstream(fs::path(trusted)).rdbuf();
  rewrite("nobody\n");
  EXPECT_EQ(trustedCertificates(), 0);
  rewrite(authority.str());
  EXPECT_EQ(trustedCertificates(), 1);
  rewrite("nobody\n");
  EXPECT_EQ(trustedCertificates(), 0);
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
      newTLSContext();
      ADD_FAILURE() << "no error for " << path;
    } catch (const TrustError& error) {
      EXPECT_EQ(std::string(error.what()), "SSL_CERT_FILE names no regular file (" + path.string() + ")");
    }
  }
  fs::create_symlink(trusted, directory / "link to a file");
  for (const std::string& name : {(directory / "link to a file").string(), std::string()}) {
    const ScopedEnvironment environment({{"SSL_CERT_FILE", name}});
    EXPECT_NO_THROW(newTLSContext()) << name;
  }
}

}  // namespace
}  // namespace tarnwell::test
