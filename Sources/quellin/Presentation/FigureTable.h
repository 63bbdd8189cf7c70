#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "quellin/Presentation/Figure.h"

namespace quellin::cli {

/// The figures, one in a line with all that is known of each. Where that does not fit into `width` columns,
/// they stand below what they belong to and where they come from, and notes on lines of their own, so that no
/// figure is without its unit and its kind.
[[nodiscard]] std::string figureTable(const std::vector<Figure>& figures, std::optional<std::size_t> width);

}  // namespace quellin::cli
