#include "CLI/CLIRunner.h"

#include <gtest/gtest.h>

#include "support/ForkedProcess.h"
#include "support/MountNamespace.h"

namespace tarnwell::test {
namespace {

/// What the command prints when it was called by this name and the system tells no path of the program; both
/// streams and the exit status.
std::string printed(const char* name) {
  return inForkedProcess([name] {
    enterMountNamespace({"/proc"});
    std::filesystem::current_path("/");
    std::string invocation = name;
    program_invocation_name = invocation.data();
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    const int status = CLIRunner::printConfig();
    const std::string output = testing::internal::GetCapturedStdout();
    return output + testing::internal::GetCapturedStderr() + std::to_string(status);
  });
}

constexpr const char* notes = R"(

# Add the block above to your MCP client config.
# (This output never contains your app password.)
)";

TEST(PrintConfig, pathThatIsNoUTF8IsToldOnStandardError) {
  EXPECT_EQ(printed("/caf\u00E9/tarnwell"),
            R"({
  "mcpServers": {
    "tarnwell": {
      "args": [
        "serve"
      ],
      "command": "/café/tarnwell"
    }
  }
})" + std::string(notes) +
                "0");
  EXPECT_EQ(
      printed("/caf\xE9/tarnwell"),
      "{}" + std::string(notes) +
          "# The path of this program is not UTF-8, so JSON cannot name it: the block above is empty.\n0");
}

}  // namespace
}  // namespace tarnwell::test
