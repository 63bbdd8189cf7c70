#pragma once

#include <array>
#include <expected>
#include <string>
#include <sys/types.h>
#include <vector>

#include "QuellinCore/Support/SystemError.h"

namespace quellin::detail {

/// A null-terminated vector of C strings, as exec takes it; points into the strings it was made from.
using CStringVector = std::vector<char*>;

/// A child made ready: everything that needs memory is there before the process divides.
struct LaunchRequest {
  static constexpr int inherited = -1;

  std::string executable;
  CStringVector arguments;
  CStringVector environment;
  std::array<int, 3> streams{inherited, inherited,
                             inherited};  ///< descriptors ≥ 3, by standard stream number
};

/// Starts the child under the ids of this process. Returns its process id.
[[nodiscard]] std::expected<pid_t, SystemError> spawnChild(const LaunchRequest& request);

/// Starts the child as user 0 and group 0: real, effective and saved.
[[nodiscard]] std::expected<pid_t, SystemError> forkChildAsRoot(const LaunchRequest& request);

}  // namespace quellin::detail
