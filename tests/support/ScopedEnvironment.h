#pragma once

/// Sets environment variables for one scope and restores them at its end. Use it in the test's thread while
/// no other thread reads the environment.

#include <cstdlib>
#include <map>
#include <optional>
#include <string>

namespace tarnwell::test {

class ScopedEnvironment {
 public:
  /// An absent value means that the variable is not set.
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
