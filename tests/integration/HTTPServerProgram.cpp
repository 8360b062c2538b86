/// Serves the tools over HTTP on a free loopback port, for tests that drive it with real clients.
///
/// Prints the endpoint's URL on a line of its own, and stops when its standard input ends: exit status 0, and
/// 1 when it could not listen.

#include <iostream>
#include <limits>

#include "MCP/HTTP/MCPHTTPServer.h"

int main() {
  using namespace tarnwell;
  MCPServer server(MCPTools::shared());
  MCPHTTPServer http(server, 0);
  http.onStateChange([](bool, const std::optional<std::string>& failure) {
    if (failure) {
      std::cerr << *failure << std::endl;
    }
  });
  http.start();
  if (!http.isRunning()) {
    return 1;
  }
  std::cout << http.endpointURL() << std::endl;
  std::cin.ignore(std::numeric_limits<std::streamsize>::max());
  http.stop();
  return 0;
}
