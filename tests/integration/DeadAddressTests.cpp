// A host with addresses that swallow everything, in a network of the test's own.

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <deque>
#include <filesystem>
#include <string>
#include <vector>

#include "IMAP/Connection/ConnectionRace.h"
#include "IMAP/Connection/IMAPError.h"
#include "IMAP/Connection/TLSStream.h"
#include "support/FakeIMAPServer.h"
#include "support/ForkedProcess.h"
#include "support/FullListener.h"
#include "support/PrivateNetwork.h"
#include "support/RowName.h"

namespace tarnwell::test {
namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

struct DeadAddressRow {
  const char* name;
  std::vector<std::string> dead;
  std::string alive;
};

class DeadAddresses : public testing::TestWithParam<DeadAddressRow> {};

/// The system sorts the addresses of a name (RFC 6724): IPv6 before IPv4, and 127.0.0.1 before 127.0.0.2,
/// because the latter's packets leave from 127.0.0.1.
void nameAddresses(const DeadAddressRow& row) {
  std::string hosts = row.alive + " alive.example.org\n" + row.alive + " mail.example.org\n";
  for (const std::string& address : row.dead) {
    hosts += address + " mail.example.org\n";
  }
  replaceFile("/etc/hosts", hosts);
  ::setenv("RESOLV_MULTI", "on", 1);  // all lines of a name count
  if (std::filesystem::exists("/etc/gai.conf")) {
    replaceFile("/etc/gai.conf", "");  // no order of this machine's own
  }
}

Clock::duration timeToConnect(const std::string& host, std::uint16_t port) {
  TLSStream stream(host, port, 20s);
  const Clock::time_point begin = Clock::now();
  stream.connect();
  return Clock::now() - begin;
}

/// In milliseconds, beyond what the live address alone takes. Of three measurements the shortest counts,
/// because other programs use the machine too.
double costOfDeadAddresses(const DeadAddressRow& row) {
  enterPrivateNetwork();
  addLoopbackAddress("2001:db8::1");
  addLoopbackAddress("2001:db8::2");
  nameAddresses(row);
  const FakeIMAPServer server(
      {stallHere()}, {.certificate = {.subjectAltName = "DNS:mail.example.org,DNS:alive.example.org"},
                      .address = row.alive});
  std::deque<FullListener> dead;
  for (const std::string& address : row.dead) {
    dead.emplace_back(FullListener::tcp::endpoint(boost::asio::ip::make_address(address), server.port()));
  }
  Clock::duration alone = Clock::duration::max();
  Clock::duration withDead = Clock::duration::max();
  for (int measurement = 0; measurement < 3; ++measurement) {
    alone = std::min(alone, timeToConnect("alive.example.org", server.port()));
    withDead = std::min(withDead, timeToConnect("mail.example.org", server.port()));
  }
  if (withDead < row.dead.size() * connectionAttemptDelay) {
    throw std::runtime_error("the live address was tried before a dead one");
  }
  return std::chrono::duration<double, std::milli>(withDead - alone).count();
}

TEST_P(DeadAddresses, costTheDelayEach) {
  const DeadAddressRow& row = GetParam();
  const std::string outcome = inForkedProcess([&] { return std::to_string(costOfDeadAddresses(row)); });
  char* end = nullptr;
  const double cost = std::strtod(outcome.c_str(), &end);
  ASSERT_TRUE(end != outcome.c_str() && *end == '\0') << outcome;
  RecordProperty("milliseconds", outcome);
  EXPECT_LE(cost, 250.0 * static_cast<double>(row.dead.size()) + 100);
}

INSTANTIATE_TEST_SUITE_P(Table, DeadAddresses,
                         testing::Values(DeadAddressRow{"none", {}, "127.0.0.1"},
                                         DeadAddressRow{"oneOfIPv6", {"2001:db8::1"}, "127.0.0.1"},
                                         DeadAddressRow{"oneOfIPv4", {"127.0.0.1"}, "127.0.0.2"},
                                         DeadAddressRow{"twoOfIPv6AndOneOfIPv4",
                                                        {"2001:db8::1", "2001:db8::2", "127.0.0.1"},
                                                        "127.0.0.2"}),
                         rowName);

}  // namespace
}  // namespace tarnwell::test
