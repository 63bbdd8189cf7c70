#pragma once

#include <filesystem>
#include <optional>

namespace quellin {

/// The file that this process executes, absolute and without links, as the system knows it: never what the
/// caller wrote on the command line, which names whatever he likes. Absent where the system does not say.
/// Thread-safe; where the caller started the process by a relative path, the working directory must still be
/// the one it was started in.
[[nodiscard]] std::optional<std::filesystem::path> ownExecutablePath();

}  // namespace quellin
