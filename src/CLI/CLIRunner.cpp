#include "CLI/CLIRunner.h"

#include <filesystem>
#include <optional>
#include <string_view>
#include <system_error>

#include "Assistants/Blocks.h"
#include "CLI/Output.h"
#include "Core/AppLogger.h"
#include "MCP/MCPServer.h"
#include "MCP/MCPTransportStdio.h"
#include "MCP/Tools/MCPTools.h"
#include "Platform/EndSignals.h"
#include "Platform/Process.h"
#include "Text/Text.h"

namespace tarnwell {

namespace {

constexpr std::string_view usage = R"(Tarnwell — CLI helper

USAGE:
  tarnwell <command>

COMMANDS:
  serve             Run as a stdio MCP server (used by Claude / Cowork).
  test-connection   Test the iCloud IMAP login using saved settings.
  status            Print safety settings and readiness as JSON.
  print-config      Print MCP client config JSON (never prints the password).

Settings and the app password are managed by the
"Tarnwell" app and shared with this helper.)";

struct Command {
  std::string_view word;
  int (*run)();
};

constexpr Command commands[] = {
    {"serve", CLIRunner::serve},
    {"test-connection", CLIRunner::testConnection},
    {"status", CLIRunner::status},
    {"print-config", CLIRunner::printConfig},
};

constexpr int exitUsage = 2;

bool asksForHelp(std::string_view word) { return word == "-h" || word == "--help" || word == "help"; }

}  // namespace

int CLIRunner::run(const std::vector<std::string>& arguments) {
  if (arguments.empty()) {
    print(usage);
    return exitUsage;
  }
  const std::string& word = arguments.front();
  for (const Command& command : commands) {
    if (command.word == word) {
      return command.run();
    }
  }
  if (asksForHelp(word)) {
    print(usage);
    return 0;
  }
  printError("Unknown command: " + word + "\n\n");
  print(usage);
  return exitUsage;
}

int CLIRunner::serve() {
  EndSignals::install();
  AppLogger::info(AppLogger::Category::mcp, "tarnwell serve starting");
  MCPServer server(MCPTools::shared());
  MCPTransportStdio(server).run();
  return 0;
}

int CLIRunner::status() {
  const ToolCallResult result = MCPTools::shared().handle("get_status", JSONObject{});
  print(result.structured.prettyString());
  return result.isError ? 1 : 0;
}

int CLIRunner::printConfig() {
  const std::string path = ownExecutablePath().string();
  print(generalBlock(path));
  printError("\n# Add the block above to your MCP client config.\n");
  printError("# (This output never contains your app password.)\n");
  if (!isValidUTF8(path)) {
    printError(
        "# The path of this program is not UTF-8, so JSON cannot name it: the block above is empty.\n");
  }
  return 0;
}

std::filesystem::path CLIRunner::ownExecutablePath() {
  if (const std::optional<std::filesystem::path> path = executablePath()) {
    return *path;
  }
  const std::filesystem::path name = invocationName().empty() ? "tarnwell" : invocationName();
  std::error_code error;  // when the working directory was removed, or a folder may not be read
  const std::filesystem::path path = std::filesystem::absolute(name, error);
  std::filesystem::path resolved = error ? name : std::filesystem::weakly_canonical(path, error);
  return error ? name : resolved;
}

}  // namespace tarnwell
