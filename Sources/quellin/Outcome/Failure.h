#pragma once

#include <stdexcept>
#include <string>

#include "quellin/Outcome/ExitStatus.h"

namespace quellin::cli {

/// Ends a command: what went wrong, where, and what to do next, for the person at the terminal.
class Failure : public std::runtime_error {
 public:
  Failure(ExitStatus status, const std::string& message) : std::runtime_error(message), status_(status) {}

  [[nodiscard]] ExitStatus status() const { return status_; }

 private:
  ExitStatus status_;
};

}  // namespace quellin::cli
