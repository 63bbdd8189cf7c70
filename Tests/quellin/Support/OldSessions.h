#pragma once

#include <filesystem>

namespace quellin::testing_support {

/// Records so many sessions of one sample into the store at `path`; all of them have ended.
void recordOldSessions(const std::filesystem::path& path, int count);

}  // namespace quellin::testing_support
