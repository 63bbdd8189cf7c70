#pragma once

#include <compare>

#include "QuellinCore/Support/Clock.h"

namespace quellin {

/// Orders by time, for sorting: unlike `<` also with instants that are not numbers, which come last.
struct IsEarlier {
  /// True when `left` comes before `right`.
  [[nodiscard]] bool operator()(Instant left, Instant right) const {
    return std::weak_order(left.time_since_epoch().count(), right.time_since_epoch().count()) < 0;
  }
};

}  // namespace quellin
