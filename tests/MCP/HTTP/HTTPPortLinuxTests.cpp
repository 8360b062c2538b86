/// A port that an ordinary program may not have, whoever runs the tests.

#include <gtest/gtest.h>
#include <linux/capability.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <array>
#include <stdexcept>

#include "MCP/HTTP/MCPHTTPServer.h"
#include "support/ForkedProcess.h"
#include "support/PrivateNetwork.h"

namespace tarnwell::test {
namespace {

/// Also takes the right to privileged ports away.
void dropCapabilities() {
  __user_cap_header_struct header{.version = _LINUX_CAPABILITY_VERSION_3, .pid = 0};
  std::array<__user_cap_data_struct, 2> none{};
  if (::syscall(SYS_capset, &header, none.data()) != 0) {
    throw std::runtime_error("cannot drop the capabilities, which this test needs");
  }
}

TEST(HTTPPort, privilegedOneIsRefusedByName) {
  EXPECT_EQ(inForkedProcess([] {
              enterPrivateNetwork();
              dropCapabilities();
              MCPServer dispatcher(MCPTools::shared());
              MCPHTTPServer server(dispatcher, 80);
              server.start();
              return server.startFailure() == std::errc::permission_denied ? "refused"
                                                                           : server.startFailure().message();
            }),
            "refused");
}

}  // namespace
}  // namespace tarnwell::test
