/// Serves the tools over HTTP on a free loopback port, for tests that drive it with real clients.
///
///     http_server_program [TOKEN]
///
/// Asks for the token when it is given one. Prints the endpoint's URL on one line, and stops when its
/// standard input ends. The exit status is 0, or 1 when it could not listen.

#include <iostream>
#include <limits>

#include "MCP/HTTP/MCPHTTPServer.h"

int main(int argc, char** argv) {
  using namespace tarnwell;
  MCPServer server(MCPTools::shared());
  MCPHTTPServer http(server, 0);
  http.onStateChange([](bool, const std::optional<std::string>& failure) {
    if (failure) {
      std::cerr << *failure << std::endl;
    }
  });
  if (argc > 1) {
    http.requireToken(Secret(argv[1]));
  }
  http.start();
  if (!http.isRunning()) {
    return 1;
  }
  std::cout << http.endpointURL() << std::endl;
  std::cin.ignore(std::numeric_limits<std::streamsize>::max());
  http.stop();
  return 0;
}
