#pragma once

#include <expected>
#include <spawn.h>

#include "QuellinCore/Support/ChildLauncher.h"
#include "QuellinCore/Support/SystemError.h"

namespace quellin::detail {

/// The attributes and file actions of a posix_spawn that gives the child its three streams and no other
/// descriptor, default signal dispositions and an empty signal mask. One thread at a time.
class SpawnAttributes {
 public:
  SpawnAttributes();
  SpawnAttributes(const SpawnAttributes&) = delete;
  SpawnAttributes& operator=(const SpawnAttributes&) = delete;
  SpawnAttributes(SpawnAttributes&&) = delete;
  SpawnAttributes& operator=(SpawnAttributes&&) = delete;
  ~SpawnAttributes();

  /// Fills both for `request`. `extraFlags` are added to the attributes' flags.
  [[nodiscard]] std::expected<void, SystemError> prepare(const LaunchRequest& request, int extraFlags = 0);

  /// Calls posix_spawn. Returns its error number, 0 for success.
  [[nodiscard]] int spawn(pid_t& processID, const LaunchRequest& request) const;

 private:
  int initialised_;  // the error of the initialisation, 0 when both exist
  posix_spawnattr_t attributes_{};
  posix_spawn_file_actions_t actions_{};
};

}  // namespace quellin::detail
