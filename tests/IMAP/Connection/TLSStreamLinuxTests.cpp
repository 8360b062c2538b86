#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <pthread.h>
#include <sys/prctl.h>
#include <sys/syscall.h>

#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <cerrno>
#include <chrono>
#include <cstddef>
#include <iterator>

#include "IMAP/Connection/ConnectionRace.h"
#include "IMAP/Connection/IMAPError.h"
#include "IMAP/Connection/TLSStream.h"
#include "support/FakeIMAPServer.h"
#include "support/ForkedProcess.h"
#include "support/FullListener.h"
#include "support/MountNamespace.h"

namespace tarnwell::test {
namespace {

using namespace std::chrono_literals;
using boost::asio::ip::tcp;
using testing::HasSubstr;

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
  TLSStream stream("localhost", 993, 10s);
  try {
    stream.connect();
    FAIL() << "connected";
  } catch (const IMAPError& error) {
    EXPECT_EQ(error.kind(), IMAPError::Kind::connectionFailed);
    EXPECT_THAT(error.description(), HasSubstr("localhost:993: Resource temporarily unavailable"));
  }
}

/// "connected", or the text of the error.
std::string outcomeOfConnecting(TLSStream& stream) {
  try {
    stream.connect();
    return "connected";
  } catch (const IMAPError& error) {
    return error.description();
  }
}

/// From now on the system has no descriptor left for an event queue. All others it still gives: the
/// sanitizers need some while an exception is on its way.
bool refuseEventQueues() {
  sock_filter program[] = {
      BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr)),
      BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, SYS_epoll_create1, 0, 1),
      BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | EMFILE),
      BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW),
  };
  const sock_fprog filter{static_cast<unsigned short>(std::size(program)), program};
  return prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0 &&
         prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &filter) == 0;
}

TEST(TLSStream, missingDescriptorFailsToConnect) {
  const std::string outcome = inForkedProcess([] {
    TLSStream stream("127.0.0.1", 993, 10s);
    return refuseEventQueues() ? outcomeOfConnecting(stream) : "this test needs seccomp(2)";
  });
  EXPECT_EQ(outcome, "Could not connect to the IMAP server: 127.0.0.1:993: Too many open files");
}

/// In a view of the file system in which "localhost" has these addresses, in this order.
void nameLocalhost(const std::string& hosts) {
  enterMountNamespace({});
  replaceFile("/etc/hosts", hosts);
}

TEST(TLSStream, addressThatSwallowsEverythingDoesNotHoldUpTheNext) {
  const std::string outcome = inForkedProcess([]() -> std::string {
    nameLocalhost("::1 localhost\n127.0.0.1 localhost\n");
    FakeIMAPServer server({stallHere()});
    const FullListener silent({boost::asio::ip::address_v6::loopback(), server.port()});
    TLSStream stream("localhost", server.port(), 20s);
    const auto begin = std::chrono::steady_clock::now();
    const std::string connecting = outcomeOfConnecting(stream);
    const auto duration = std::chrono::steady_clock::now() - begin;
    if (duration < connectionAttemptDelay) {
      return "the silent address was not tried first: " + connecting;
    }
    return duration < 10s ? connecting : "too late: " + connecting;
  });
  EXPECT_EQ(outcome, "connected");
}

TEST(TLSStream, certificateOfTheAddressThatAnswersIsHeldAgainstTheName) {
  const std::string outcome = inForkedProcess([] {
    nameLocalhost("::1 localhost\n127.0.0.1 localhost\n");
    FakeIMAPServer server({stallHere()}, {.certificate = {.subjectAltName = "DNS:mail.example.org"}});
    const FullListener silent({boost::asio::ip::address_v6::loopback(), server.port()});
    TLSStream stream("localhost", server.port(), 20s);
    return outcomeOfConnecting(stream);
  });
  EXPECT_THAT(outcome, HasSubstr("(hostname mismatch)"));
}

TEST(TLSStream, addressThatIsSilentToTheEndMakesATimeoutOfARefusal) {
  const std::string outcome = inForkedProcess([] {
    nameLocalhost("::1 localhost\n127.0.0.1 localhost\n");
    boost::asio::io_context context;
    const tcp::socket bound(context, tcp::endpoint(boost::asio::ip::address_v4::loopback(), 0));
    const std::uint16_t port = bound.local_endpoint().port();  // bound, but nobody listens
    const FullListener silent({boost::asio::ip::address_v6::loopback(), port});
    TLSStream stream("localhost", port, 1s);
    return outcomeOfConnecting(stream);
  });
  EXPECT_EQ(outcome, IMAPError::timeout().description());
}

TEST(TLSStream, refusalByEveryAddressIsToldAtOnce) {
  const std::string outcome = inForkedProcess([] {
    nameLocalhost("::1 localhost\n127.0.0.1 localhost\n");
    boost::asio::io_context context;
    const tcp::socket bound(context, tcp::endpoint(boost::asio::ip::address_v4::loopback(), 0));
    TLSStream stream("localhost", bound.local_endpoint().port(), 600s);
    return outcomeOfConnecting(stream);
  });
  EXPECT_THAT(outcome, HasSubstr(": Connection refused"));
}

}  // namespace
}  // namespace tarnwell::test
