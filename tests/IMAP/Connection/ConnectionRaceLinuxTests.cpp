// Races over loopback. All addresses are 127.0.0.1 with ports of their own.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <poll.h>

#include <algorithm>
#include <boost/asio/steady_timer.hpp>
#include <deque>
#include <filesystem>
#include <string>

#include "IMAP/Connection/ConnectionRace.h"
#include "support/FullListener.h"
#include "support/RowName.h"

namespace tarnwell::test {
namespace {

using namespace std::chrono_literals;
using boost::asio::ip::tcp;
using boost::system::error_code;
using Clock = std::chrono::steady_clock;

/// A bound that no test waits for, and what a race may take on a busy machine.
constexpr auto patience = 20s;
constexpr auto soon = 10s;

/// Addresses by letter: g(ood) connects, r(efused), s(ilent), u(nreachable: a group, which TCP does not
/// have).
class Addresses {
 public:
  explicit Addresses(const std::string& letters) {
    const tcp::endpoint any(boost::asio::ip::address_v4::loopback(), 0);
    for (char letter : letters) {
      if (letter == 'g') {
        endpoints_.push_back(good_.emplace_back(context_, any).local_endpoint());
      } else if (letter == 'r') {
        endpoints_.push_back(refused_.emplace_back(context_, any).local_endpoint());  // nobody listens
      } else if (letter == 's') {
        endpoints_.push_back(silent_.emplace_back().endpoint());
      } else {
        endpoints_.emplace_back(boost::asio::ip::make_address("224.0.0.1"), 993);
      }
    }
  }

  const std::vector<tcp::endpoint>& endpoints() const { return endpoints_; }
  FullListener& silent(std::size_t number) { return silent_[number]; }

 private:
  boost::asio::io_context context_;
  std::deque<tcp::acceptor> good_;
  std::deque<tcp::socket> refused_;
  std::deque<FullListener> silent_;
  std::vector<tcp::endpoint> endpoints_;
};

std::ptrdiff_t openSockets() {
  const std::filesystem::directory_iterator descriptors("/proc/self/fd");
  return std::count_if(begin(descriptors), end(descriptors), [](const auto& descriptor) {
    std::error_code isClosed;
    return read_symlink(descriptor.path(), isClosed).string().starts_with("socket:");
  });
}

struct WinnerRow {
  const char* name;
  const char* addresses;
  std::size_t winner;
  int delays;
};

class RaceWithAWinner : public testing::TestWithParam<WinnerRow> {};

TEST_P(RaceWithAWinner, waitsTheDelaysAloneAndClosesTheOthers) {
  const WinnerRow& row = GetParam();
  const Addresses addresses(row.addresses);
  boost::asio::io_context queue;
  tcp::socket socket(queue);
  const std::ptrdiff_t before = openSockets();
  const Clock::time_point begin = Clock::now();
  const auto outcome = connectToFirst(queue, addresses.endpoints(), begin + patience, socket);
  const Clock::duration duration = Clock::now() - begin;
  EXPECT_EQ(outcome, error_code());
  EXPECT_EQ(socket.remote_endpoint(), addresses.endpoints()[row.winner]);
  EXPECT_GE(duration, row.delays * connectionAttemptDelay);
  EXPECT_LT(duration, soon);
  EXPECT_EQ(openSockets(), before + 1) << "only the winner is open";
  queue.restart();
  EXPECT_EQ(queue.poll(), 0) << "nothing is under way";
}

INSTANTIATE_TEST_SUITE_P(
    Table, RaceWithAWinner,
    testing::Values(WinnerRow{"oneAddress", "g", 0, 0}, WinnerRow{"firstOfThree", "ggg", 0, 0},
                    WinnerRow{"goodBeforeSilent", "gs", 0, 0}, WinnerRow{"refusedFirst", "rg", 1, 0},
                    WinnerRow{"silentFirst", "sg", 1, 1}, WinnerRow{"twoSilent", "ssg", 2, 2},
                    WinnerRow{"silentThenRefused", "srg", 2, 1}, WinnerRow{"refusedThenSilent", "rsg", 2, 1},
                    WinnerRow{"unreachableThenSilent", "usg", 2, 1}),
    rowName);

/// With a delay for each this would take 25 seconds.
TEST(ConnectionRace, refusalStartsTheNextAttemptAtOnce) {
  const Addresses addresses(std::string(100, 'r') + "g");
  boost::asio::io_context queue;
  tcp::socket socket(queue);
  const Clock::time_point begin = Clock::now();
  EXPECT_EQ(connectToFirst(queue, addresses.endpoints(), begin + 60s, socket), error_code());
  EXPECT_LT(Clock::now() - begin, soon);
}

/// With a delay after each this would take 25 seconds.
TEST(ConnectionRace, lastRefusalIsToldAtOnce) {
  const Addresses addresses("r");
  boost::asio::io_context queue;
  tcp::socket socket(queue);
  const Clock::time_point begin = Clock::now();
  for (int race = 0; race < 100; ++race) {
    queue.restart();
    const auto outcome = connectToFirst(queue, addresses.endpoints(), begin + 60s, socket);
    EXPECT_EQ(outcome, error_code(boost::asio::error::connection_refused));
  }
  EXPECT_LT(Clock::now() - begin, soon);
}

struct FailureRow {
  const char* name;
  const char* addresses;
  std::chrono::milliseconds bound;
  std::optional<error_code> expected;
};

class RaceWithoutAWinner : public testing::TestWithParam<FailureRow> {};

TEST_P(RaceWithoutAWinner, tellsTheLastFailureOrThatOneStaysSilent) {
  const FailureRow& row = GetParam();
  const Addresses addresses(row.addresses);
  boost::asio::io_context queue;
  tcp::socket socket(queue);
  const std::ptrdiff_t before = openSockets();
  const Clock::time_point begin = Clock::now();
  EXPECT_EQ(connectToFirst(queue, addresses.endpoints(), begin + row.bound, socket), row.expected);
  const Clock::duration duration = Clock::now() - begin;
  if (!row.expected) {
    EXPECT_GE(duration, row.bound);
  }
  EXPECT_LT(duration, soon);
  EXPECT_FALSE(socket.is_open());
  EXPECT_EQ(openSockets(), before);
  queue.restart();
  EXPECT_EQ(queue.poll(), 0) << "nothing is under way";
}

const error_code refused = boost::asio::error::connection_refused;
const error_code unreachable = boost::asio::error::network_unreachable;

INSTANTIATE_TEST_SUITE_P(Table, RaceWithoutAWinner,
                         testing::Values(FailureRow{"noAddress", "", patience,
                                                    error_code(boost::asio::error::host_not_found)},
                                         FailureRow{"refused", "r", patience, refused},
                                         FailureRow{"unreachable", "u", patience, unreachable},
                                         FailureRow{"refusedLast", "uur", patience, refused},
                                         FailureRow{"unreachableLast", "rru", patience, unreachable},
                                         FailureRow{"silent", "s", 500ms, std::nullopt},
                                         FailureRow{"allSilent", "sss", 1s, std::nullopt},
                                         FailureRow{"endBeforeTheSecondAttempt", "sg", 100ms, std::nullopt},
                                         FailureRow{"endBeforeTheFirst", "g", 0ms, std::nullopt},
                                         FailureRow{"silentBeforeRefused", "sr", 500ms, std::nullopt},
                                         FailureRow{"refusedBeforeSilent", "rs", 500ms, std::nullopt}),
                         rowName);

/// Runs `action` in the midst of a race on this queue.
struct Later {
  template <class Action>
  Later(boost::asio::io_context& queue, std::chrono::milliseconds after, Action action)
      : timer(queue, after) {
    timer.async_wait([action](error_code) { action(); });
  }

  boost::asio::steady_timer timer;
};

TEST(ConnectionRace, earlierAttemptGoesOnWhileLaterOnesWait) {
  Addresses addresses("ss");
  boost::asio::io_context queue;
  tcp::socket socket(queue);
  const Later later(queue, 400ms, [&] { addresses.silent(0).makeRoom(); });
  EXPECT_EQ(connectToFirst(queue, addresses.endpoints(), Clock::now() + patience, socket), error_code());
  EXPECT_EQ(socket.remote_endpoint(), addresses.endpoints()[0]);
}

TEST(ConnectionRace, slowAddressLosesAndSeesNobody) {
  Addresses addresses("sg");
  boost::asio::io_context queue;
  tcp::socket socket(queue);
  const Later later(queue, 100ms, [&] { addresses.silent(0).makeRoom(); });
  EXPECT_EQ(connectToFirst(queue, addresses.endpoints(), Clock::now() + patience, socket), error_code());
  EXPECT_EQ(socket.remote_endpoint(), addresses.endpoints()[1]);
  EXPECT_FALSE(addresses.silent(0).accept(1500ms)) << "the loser's system would try again after a second";
}

/// Whether the peer has ended this connection.
bool hasEnded(tcp::socket& socket, std::chrono::milliseconds bound) {
  pollfd waiting{socket.native_handle(), POLLIN, 0};
  if (::poll(&waiting, 1, static_cast<int>(bound.count())) != 1) {
    return false;
  }
  char byte;
  error_code error;
  socket.read_some(boost::asio::buffer(&byte, 1), error);
  return static_cast<bool>(error);
}

/// Both connect while the queue is busy, so that it finds both when it goes on.
TEST(ConnectionRace, secondOfTwoThatConnectAtOnceIsClosed) {
  Addresses addresses("ss");
  boost::asio::io_context queue;
  tcp::socket socket(queue);
  std::vector<std::optional<tcp::socket>> clients(2);
  const Later later(queue, 400ms, [&] {
    for (std::size_t number = 0; number < 2; ++number) {
      addresses.silent(number).makeRoom();
    }
    for (std::size_t number = 0; number < 2; ++number) {
      clients[number] = addresses.silent(number).accept(soon);
    }
  });
  EXPECT_EQ(connectToFirst(queue, addresses.endpoints(), Clock::now() + 2 * patience, socket), error_code());
  ASSERT_TRUE(clients[0] && clients[1]);
  const std::size_t winner = socket.remote_endpoint() == addresses.endpoints()[0] ? 0 : 1;
  EXPECT_TRUE(hasEnded(*clients[1 - winner], soon));
  EXPECT_FALSE(hasEnded(*clients[winner], 0ms));
}

}  // namespace
}  // namespace tarnwell::test
