#pragma once

#include <cstdlib>
#include <optional>
#include <string>

namespace quellin::testing_support {

/// A variable of this process's environment, with a value or without one while the object lives, and as it
/// was afterwards. For tests of one thread.
class EnvironmentVariable {
 public:
  EnvironmentVariable(const char* name, const char* value) : name_(name) {
    const char* before = std::getenv(name);  // NOLINT(concurrency-mt-unsafe)
    if (before != nullptr) before_ = before;
    set(value);
  }
  EnvironmentVariable(const EnvironmentVariable&) = delete;
  EnvironmentVariable& operator=(const EnvironmentVariable&) = delete;
  EnvironmentVariable(EnvironmentVariable&&) = delete;
  EnvironmentVariable& operator=(EnvironmentVariable&&) = delete;
  ~EnvironmentVariable() { set(before_ ? before_->c_str() : nullptr); }

 private:
  // NOLINTBEGIN(concurrency-mt-unsafe)
  void set(const char* value) { value == nullptr ? unsetenv(name_) : setenv(name_, value, 1); }
  // NOLINTEND(concurrency-mt-unsafe)

  const char* name_;
  std::optional<std::string> before_;
};

}  // namespace quellin::testing_support
