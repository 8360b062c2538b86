// Name resolution with a name server that never answers, in a network of the test's own.

#include <gtest/gtest.h>

#include <netinet/in.h>
#include <sys/wait.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>

#include "IMAP/Connection/IMAPError.h"
#include "IMAP/Connection/TLSStream.h"
#include "support/PrivateNetwork.h"

namespace tarnwell::test {
namespace {

/// How the child ended. It cannot report through GoogleTest.
enum Ending : int { timedOut, failedOtherwise, connected, notPrepared };

/// Starts a server that takes questions and never answers. It stays open until the process ends.
void startMuteNameServer() {
  const int descriptor = socket(AF_INET, SOCK_DGRAM, 0);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(53);
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  if (bind(descriptor, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) {
    throw std::runtime_error("port 53 of the namespace cannot be bound");
  }
}

Ending connectToAName() {
  try {
    enterPrivateNetwork();
    startMuteNameServer();
    // The system's resolver would try for ten minutes.
    replaceFile("/etc/resolv.conf", "nameserver 127.0.0.1\noptions timeout:30 attempts:20\n");
  } catch (const std::runtime_error& error) {
    std::fprintf(stderr, "%s\n", error.what());
    return notPrepared;
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
  ASSERT_NE(WEXITSTATUS(status), notPrepared) << "the test has written why";
  EXPECT_EQ(WEXITSTATUS(status), timedOut);
}

}  // namespace
}  // namespace tarnwell::test
