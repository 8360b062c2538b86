#pragma once

#include <functional>
#include <stdexcept>

#include "Assistants/FakeMachine.h"

namespace tarnwell::test {

/// A configuration with the entry of another server.
inline constexpr const char* none = R"({"mcpServers":{"a":{"command":"b"}}})";

/// A client whose command notes its words and then does what the test wants: it copies "next", a file in the
/// home directory, over its configuration.
class CommandsOfClients : public testing::Test {
 protected:
  std::filesystem::path program(const std::string& name) const { return fake.home() / ".local/bin" / name; }
  void putClient(const std::string& name, const std::string& file, const std::string& script = "") const {
    FakeMachine::putProgram(
        program(name), "echo \"$*\" >> \"$HOME/calls\"\n" + script +
                           "\n[ ! -e \"$HOME/next\" ] || /bin/cat \"$HOME/next\" > \"$HOME/" + file + "\"");
  }
  /// What the next command leaves behind.
  void willWrite(const std::string& text) const { fake.put("next", text); }
  std::string calls() const { return fileContents(fake.home() / "calls"); }
  std::string helper() const { return fake.machine.helper.string(); }
  std::string entry(const std::string& command, const std::string& more = "") const {
    return R"({"mcpServers":{"a":{"command":"b"},"tarnwell":{"command":")" + command +
           R"(","args":["serve"])" + more + "}}}";
  }
  std::string toml(const std::string& command, const std::string& more = "") const {
    return "# mine\nmodel = 'x'\n[mcp_servers.tarnwell]\ncommand = \"" + command +
           "\"\nargs = [\"serve\"]\n" + more;
  }
  AssistantError::Kind errorOf(const std::function<void()>& work) const {
    try {
      work();
    } catch (const AssistantError& error) {
      details = error.details();
      return error.kind();
    }
    throw std::runtime_error("nothing was thrown");
  }

  FakeMachine fake;
  mutable std::string details;
};

}  // namespace tarnwell::test
