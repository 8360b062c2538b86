// Name resolution with a name server that never answers, in a network of the test's own.

#include <arpa/inet.h>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <net/if.h>
#include <sched.h>
#include <sys/ioctl.h>
#include <sys/mount.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <string>

#include "IMAP/Connection/IMAPError.h"
#include "IMAP/Connection/TLSStream.h"

namespace tarnwell::test {
namespace {

/// How the child ended. It cannot report through GoogleTest.
enum Ending : int {
  timedOut,
  failedOtherwise,
  connected,
  noNamespace,
  noLoopback,
  noNameServer,
  noResolverFile
};

bool writeFile(const char* path, const std::string& text) {
  std::ofstream file(path);
  file << text << std::flush;
  return file.good();
}

/// Enters a network and a view of the file system that no other process sees. Root can do this directly.
/// Other users first become root of a user namespace.
bool enterNamespaces() {
  const uid_t user = getuid();
  const gid_t group = getgid();
  if (unshare(CLONE_NEWNET | CLONE_NEWNS | (user == 0 ? 0 : CLONE_NEWUSER)) != 0) {
    return false;
  }
  if (user != 0) {
    writeFile("/proc/self/setgroups", "deny");
    writeFile("/proc/self/uid_map", "0 " + std::to_string(user) + " 1");
    writeFile("/proc/self/gid_map", "0 " + std::to_string(group) + " 1");
  }
  return mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0;
}

bool raiseLoopback() {
  const int descriptor = socket(AF_INET, SOCK_DGRAM, 0);
  ifreq request{};
  std::strcpy(request.ifr_name, "lo");
  request.ifr_flags = IFF_UP | IFF_RUNNING;
  const bool isUp = ioctl(descriptor, SIOCSIFFLAGS, &request) == 0;
  close(descriptor);
  return isUp;
}

/// Starts a server that takes questions and never answers. It stays open until the process ends.
bool startMuteNameServer() {
  const int descriptor = socket(AF_INET, SOCK_DGRAM, 0);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(53);
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  return bind(descriptor, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
}

/// Makes the system's resolver use that server. It would try for ten minutes.
bool useMuteNameServer() {
  char path[] = "/tmp/tarnwell-resolv-XXXXXX";
  const int descriptor = mkstemp(path);
  const bool isReady = descriptor >= 0 &&
                       writeFile(path, "nameserver 127.0.0.1\noptions timeout:30 attempts:20\n") &&
                       mount(path, "/etc/resolv.conf", nullptr, MS_BIND, nullptr) == 0;
  close(descriptor);
  unlink(path);
  return isReady;
}

Ending connectToAName() {
  if (!enterNamespaces()) {
    return noNamespace;
  }
  if (!raiseLoopback()) {
    return noLoopback;
  }
  if (!startMuteNameServer()) {
    return noNameServer;
  }
  if (!useMuteNameServer()) {
    return noResolverFile;
  }
  TLSStream stream("mail.example.org", 993, std::chrono::milliseconds(500));
  try {
    stream.connect();
    return connected;
  } catch (const IMAPError& error) {
    return error.kind() == IMAPError::Kind::timeout ? timedOut : failedOtherwise;
  }
}

/// The ctest time limit of this test also proves that the process does not wait for the resolver, not even at
/// its end: otherwise the test would exceed the limit.
TEST(Resolver, nameServerThatNeverAnswersDoesNotOutlastTheTimeout) {
  const pid_t child = fork();
  ASSERT_GE(child, 0);
  if (child == 0) {
    // A normal exit, with everything that runs at the end of a process.
    std::exit(connectToAName());
  }
  int status = 0;
  ASSERT_EQ(waitpid(child, &status, 0), child);
  ASSERT_TRUE(WIFEXITED(status));
  ASSERT_NE(WEXITSTATUS(status), noNamespace) << "this system does not let its users make namespaces";
  ASSERT_NE(WEXITSTATUS(status), noLoopback) << "the loopback interface of the namespace cannot be raised";
  ASSERT_NE(WEXITSTATUS(status), noNameServer) << "port 53 of the namespace cannot be bound";
  ASSERT_NE(WEXITSTATUS(status), noResolverFile) << "/etc/resolv.conf cannot be replaced in the namespace";
  EXPECT_EQ(WEXITSTATUS(status), timedOut);
}

}  // namespace
}  // namespace tarnwell::test
