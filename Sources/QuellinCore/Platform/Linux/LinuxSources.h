#pragma once

#include <memory>

#include "QuellinCore/Platform/Linux/FileTree.h"
#include "QuellinCore/Platform/PlatformSources.h"

namespace quellin {

/// The sources of the machine whose kernel publishes `sys` and `proc`: this one, or another one whose files
/// were copied.
[[nodiscard]] PlatformSources linuxSources(const std::shared_ptr<const FileTree>& sys,
                                           const std::shared_ptr<const FileTree>& proc);

}  // namespace quellin
