#pragma once

#include <filesystem>
#include <optional>

#include "QuellinCore/Services/HelperInstallation.h"

namespace quellin::cli {

/// The tool that came with the program whose file is `self`: in ../libexec/quellin where both are installed,
/// beside the program where they are built. It will be run as root, so it is looked for at no place that a
/// caller could choose. Throws `Failure` when `self` is absent or no tool is there.
[[nodiscard]] std::filesystem::path bundledHelper(const std::optional<std::filesystem::path>& self);

/// What asks for the right to install the tool as root: the prompt of this host, or, for root on a host
/// without osascript, nothing but env(1), which needs no desktop and no PolicyKit. `userID` is the effective
/// one.
[[nodiscard]] AdministratorPrompt installationPrompt(unsigned userID);

}  // namespace quellin::cli
