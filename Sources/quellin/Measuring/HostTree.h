#pragma once

#include <string>

#include "QuellinCore/Platform/PlatformSources.h"

namespace quellin::cli {

/// The sources over a copy of another machine's kernel files: the folder holds sys/, and proc/ where
/// processes are wanted. Throws `Failure` when it does not, and on systems whose kernel publishes no such
/// files.
[[nodiscard]] PlatformSources hostTree(const std::string& folder);

}  // namespace quellin::cli
