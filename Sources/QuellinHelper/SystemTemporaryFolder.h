#pragma once

#include <string>

namespace quellin {

/// The system's folder for temporary files of this user: on macOS the private one that the system assigns,
/// elsewhere "/tmp". The environment is not asked where the system answers; macOS falls back on TMPDIR where
/// it has no answer, so a privileged program clears its environment first.
[[nodiscard]] std::string systemTemporaryFolder();

}  // namespace quellin
