#pragma once

#include <cerrno>
#include <string>
#include <system_error>

namespace quellin {

/// A failed call of the operating system.
struct SystemError {
  int code = 0;  ///< the errno value

  /// The error of the call that has just failed on this thread.
  [[nodiscard]] static SystemError last() { return SystemError{errno}; }

  /// The system's own description, such as "No such file or directory".
  [[nodiscard]] std::string description() const { return std::generic_category().message(code); }

  bool operator==(const SystemError&) const = default;
};

}  // namespace quellin
