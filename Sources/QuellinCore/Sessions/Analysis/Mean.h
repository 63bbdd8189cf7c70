#pragma once

#include <numeric>
#include <span>

namespace quellin {

/// The mean of at least one value.
[[nodiscard]] inline double meanOf(std::span<const double> values) {
  return std::accumulate(values.begin(), values.end(), 0.0) / static_cast<double>(values.size());
}

}  // namespace quellin
