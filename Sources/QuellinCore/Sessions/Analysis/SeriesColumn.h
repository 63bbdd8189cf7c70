#pragma once

#include <cmath>
#include <concepts>
#include <cstdint>
#include <optional>
#include <tuple>
#include <vector>

#include "QuellinCore/Support/JSON/Record.h"

namespace quellin {

/// Samples in a row that have no value in a column.
struct AbsentRun {
  std::int64_t first = 0;  ///< index of the first one among all samples
  std::int64_t count = 0;  ///< at least 1

  static constexpr auto fields() {
    return std::tuple{Field{"first", &AbsentRun::first}, Field{"count", &AbsentRun::count}};
  }

  bool operator==(const AbsentRun&) const = default;
};

/// One figure of every sample of a session. Instead of a mark for an absent value, the runs without one are
/// listed.
template <class Value>
struct SeriesColumn {
  std::vector<Value> values;      ///< of the samples that have one, in order
  std::vector<AbsentRun> absent;  ///< in order, with at least one value between two of them

  static constexpr auto fields() {
    return std::tuple{Field{"values", &SeriesColumn::values}, Field{"absent", &SeriesColumn::absent}};
  }

  bool operator==(const SeriesColumn&) const = default;

  /// Adds the value of sample `index`, which follows the last one. A number that is not finite is absent.
  void add(std::int64_t index, const std::optional<Value>& value) {
    if (value && isFinite(*value)) {
      values.push_back(*value);
    } else if (!absent.empty() && absent.back().first + absent.back().count == index) {
      ++absent.back().count;
    } else {
      absent.push_back({.first = index, .count = 1});
    }
  }

 private:
  [[nodiscard]] static bool isFinite(Value value) {
    if constexpr (std::floating_point<Value>) return std::isfinite(value);
    return true;
  }
};

}  // namespace quellin
