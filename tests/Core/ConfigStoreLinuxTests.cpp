#include "Core/ConfigStore.h"

#include <sched.h>
#include <unistd.h>

#include <fstream>
#include <stdexcept>

#include "Core/LogBuffer.h"
#include "support/ForkedProcess.h"
#include "support/TemporaryDirectory.h"

namespace tarnwell::test {
namespace {

/// Enters a user namespace in which this user has the number 1. It knows no other user.
void becomeUserOne() {
  const uid_t user = ::getuid();
  if (::unshare(CLONE_NEWUSER) < 0) {
    throw std::runtime_error("this test needs root, or user namespaces");
  }
  std::ofstream("/proc/self/uid_map") << "1 " << user << " 1";
}

/// As root, the test gives the file to another user. Otherwise it reads a file of root from a user namespace.
/// There root and every other user appear as nobody.
TEST(ConfigFileOfAnotherUser, givesTheDefaultsWithAnErrorLine) {
  const TemporaryDirectory directory;
  const ConfigStore store(directory.path());
  std::ofstream(store.configURL()) << R"({"email": "user@example.org"})";
  EXPECT_EQ(store.load().email, "user@example.org");
  EXPECT_EQ(inForkedProcess([&] {
              if (::geteuid() == 0) {
                constexpr uid_t nobody = 65534;
                if (::chown(store.configURL().c_str(), nobody, nobody) < 0) {
                  return std::string("root may not give a file away");
                }
              } else {
                std::filesystem::remove(store.configURL());
                std::filesystem::create_symlink("/etc/passwd", store.configURL());
                becomeUserOne();
              }
              LogBuffer::shared().clear();
              const std::string email = store.load().email;
              const std::vector<LogEntry> entries = LogBuffer::shared().snapshot();
              return email + (entries.size() == 1 ? entries[0].message : "other entries");
            }),
            "Config file set aside: another user owns it; using defaults");
}

}  // namespace
}  // namespace tarnwell::test
