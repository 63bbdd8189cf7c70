#pragma once

#include <filesystem>
#include <optional>

namespace quellin::cli {

/// The tool that came with the program whose file is `self`: in ../libexec/quellin where both are installed,
/// beside the program where they are built. It will be run as root, so it is looked for at no place that a
/// caller could choose. Throws `Failure` when `self` is absent or no tool is there.
[[nodiscard]] std::filesystem::path bundledHelper(const std::optional<std::filesystem::path>& self);

}  // namespace quellin::cli
