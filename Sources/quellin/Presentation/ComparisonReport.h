#pragma once

#include <cstddef>
#include <optional>
#include <string>

#include "QuellinCore/Sessions/Analysis/SessionComparison.h"

namespace quellin::cli {

/// A comparison as text: both sides, a table of the figures, a sentence for each kind, and what is left out.
/// Tables are cut and sentences broken at `width` columns.
[[nodiscard]] std::string comparisonText(const SessionComparison& comparison,
                                         std::optional<std::size_t> width);

}  // namespace quellin::cli
