#include "IMAP/Connection/ConnectionRace.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "support/RowName.h"

namespace tarnwell {
namespace {

using boost::asio::ip::tcp;

struct OrderRow {
  const char* name;
  std::vector<std::string> resolved;
  std::vector<std::string> expected;
};

class AlternatingFamilies : public testing::TestWithParam<OrderRow> {};

TEST_P(AlternatingFamilies, takesTurnsAndKeepsTheOrderOfEachFamily) {
  const OrderRow& row = GetParam();
  std::vector<tcp::endpoint> endpoints;
  for (const std::string& address : row.resolved) {
    endpoints.emplace_back(boost::asio::ip::make_address(address), 993);
  }
  std::vector<std::string> order;
  for (const tcp::endpoint& endpoint : alternatingFamilies(endpoints)) {
    EXPECT_EQ(endpoint.port(), 993);
    order.push_back(endpoint.address().to_string());
  }
  EXPECT_EQ(order, row.expected);
}

INSTANTIATE_TEST_SUITE_P(
    Table, AlternatingFamilies,
    testing::Values(OrderRow{"none", {}, {}}, OrderRow{"one", {"::1"}, {"::1"}},
                    OrderRow{"onlyIPv4", {"192.0.2.3", "192.0.2.1"}, {"192.0.2.3", "192.0.2.1"}},
                    OrderRow{"onlyIPv6", {"2001:db8::3", "2001:db8::1"}, {"2001:db8::3", "2001:db8::1"}},
                    OrderRow{"IPv6BeforeIPv4",
                             {"2001:db8::1", "2001:db8::2", "192.0.2.1", "192.0.2.2"},
                             {"2001:db8::1", "192.0.2.1", "2001:db8::2", "192.0.2.2"}},
                    OrderRow{"IPv4BeforeIPv6",
                             {"192.0.2.1", "192.0.2.2", "2001:db8::1", "2001:db8::2"},
                             {"192.0.2.1", "2001:db8::1", "192.0.2.2", "2001:db8::2"}},
                    OrderRow{"inTurnsAlready",
                             {"192.0.2.1", "2001:db8::1", "192.0.2.2"},
                             {"192.0.2.1", "2001:db8::1", "192.0.2.2"}},
                    OrderRow{"moreOfTheFirstFamily",
                             {"2001:db8::1", "2001:db8::2", "2001:db8::3", "2001:db8::4", "192.0.2.1"},
                             {"2001:db8::1", "192.0.2.1", "2001:db8::2", "2001:db8::3", "2001:db8::4"}},
                    OrderRow{"moreOfTheSecondFamily",
                             {"2001:db8::1", "192.0.2.1", "192.0.2.2", "192.0.2.3"},
                             {"2001:db8::1", "192.0.2.1", "192.0.2.2", "192.0.2.3"}},
                    OrderRow{"IPv4InsideIPv6",
                             {"::ffff:192.0.2.1", "2001:db8::1", "192.0.2.1"},
                             {"::ffff:192.0.2.1", "192.0.2.1", "2001:db8::1"}},
                    OrderRow{"sameAddressTwice", {"192.0.2.1", "192.0.2.1"}, {"192.0.2.1", "192.0.2.1"}}),
    rowName);

}  // namespace
}  // namespace tarnwell
