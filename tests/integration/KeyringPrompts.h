#pragma once

/// The questions of a keyring, on a display that nobody sees, answered by keys.
///
///     KeyringPrompts prompts(keyring.bus());
///     ... let the program ask ...
///     prompts.answer("right");              // types the password and presses Return
///
/// Programs needed: Xvfb, xdotool, and the prompter of gcr, which asks for gnome-keyring. Without one of them
/// the test fails and names it.

#include <chrono>
#include <fstream>
#include <optional>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "integration/PrivateKeyring.h"
#include "support/ChildProgram.h"

namespace tarnwell::test {

class KeyringPrompts {
 public:
  explicit KeyringPrompts(const PrivateBus& bus)
      : screen_({"Xvfb", "-displayfd", "1", "-screen", "0", "800x600x24", "-nolisten", "tcp"},
                bus.environment()),
        environment_(bus.environment()) {
    environment_.push_back("DISPLAY=:" + screen_.readLine());
    prompter_.emplace(std::vector<std::string>{prompterProgram()}, environment_);
    until([&] { return bus.hasOwner("org.gnome.keyring.SystemPrompter"); }, "the prompter is on the bus");
  }

  /// Types into the question, which must have appeared by then.
  void answer(const std::string& password) {
    awaitQuestion();
    run({"xdotool", "type", password});
    run({"xdotool", "key", "Return"});
  }
  /// Types a new password into both fields.
  void choose(const std::string& password) {
    awaitQuestion();
    run({"xdotool", "type", password});
    run({"xdotool", "key", "Tab"});
    answer(password);
  }
  void dismiss() {
    awaitQuestion();
    run({"xdotool", "key", "Escape"});
  }

  bool isShown() { return run({"xdotool", "search", "--onlyvisible", "--class", "prompter"}); }

  void awaitQuestion() {
    until([&] { return isShown(); }, "a question is shown");
    // The window is there a little before it takes keys.
    std::this_thread::sleep_for(std::chrono::milliseconds(300));
  }

 private:
  /// Where the release has put the program, as its own description for the bus says.
  static std::string prompterProgram() {
    std::ifstream service("/usr/share/dbus-1/services/org.gnome.keyring.SystemPrompter.service");
    for (std::string line; std::getline(service, line);) {
      if (constexpr std::string_view key = "Exec="; line.starts_with(key)) {
        return line.substr(key.size());
      }
    }
    throw std::runtime_error("the prompter of gcr is missing, which this test needs");
  }

  template <class Condition>
  static void until(Condition isTrue, const char* what) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(30);
    while (!isTrue()) {
      if (std::chrono::steady_clock::now() > end) {
        throw std::runtime_error(std::string("not within 30 seconds: ") + what);
      }
      std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
  }

  bool run(const std::vector<std::string>& command) const {
    ChildProgram program(command, environment_);
    program.readAll();
    return program.wait() == 0;
  }

  ChildProgram screen_;
  std::vector<std::string> environment_;
  std::optional<ChildProgram> prompter_;
};

}  // namespace tarnwell::test
