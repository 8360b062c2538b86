#pragma once

/// Sets environment variables for one scope, and puts back what was there. For the thread of the test,
/// while no other thread reads the environment.

#include <cstdlib>
#include <map>
#include <optional>
#include <string>

namespace tarnwell::test {

class ScopedEnvironment {
 public:
  /// An absent value stands for a variable that is not set.
  using Variables = std::map<std::string, std::optional<std::string>>;

  explicit ScopedEnvironment(const Variables& variables) {
    for (const auto& [name, value] : variables) {
      const char* former = std::getenv(name.c_str());
      former_[name] = former ? std::optional<std::string>(former) : std::nullopt;
      set(name, value);
    }
  }
  ScopedEnvironment(const ScopedEnvironment&) = delete;
  ~ScopedEnvironment() {
    for (const auto& [name, value] : former_) {
      set(name, value);
    }
  }

 private:
  static void set(const std::string& name, const std::optional<std::string>& value) {
    if (value) {
      ::setenv(name.c_str(), value->c_str(), 1);
    } else {
      ::unsetenv(name.c_str());
    }
  }

  Variables former_;
};

}  // namespace tarnwell::test
