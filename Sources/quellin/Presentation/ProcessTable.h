#pragma once

#include <optional>
#include <string>
#include <vector>

#include "QuellinCore/Models/ProcessActivityInfo.h"

namespace quellin::cli {

/// The processes as a table of at most `width` columns.
[[nodiscard]] std::string processTable(const std::vector<ProcessActivityInfo>& processes,
                                       std::optional<std::size_t> width);

}  // namespace quellin::cli
