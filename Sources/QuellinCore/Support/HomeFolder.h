#pragma once

#include <filesystem>
#include <functional>

namespace quellin {

/// Finds the home folder of the user; tests give their own.
using HomeFolderLookup = std::function<std::filesystem::path()>;

/// The home folder of the user whom the process serves: the environment's HOME when it is an absolute path,
/// otherwise what the user database says; the root folder when neither knows. Thread-safe.
[[nodiscard]] std::filesystem::path homeFolder();

}  // namespace quellin
