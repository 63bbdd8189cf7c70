#pragma once

#include <cstdlib>
#include <stdexcept>
#include <string>

#include "QuellinCore/Support/Number.h"

namespace quellin::testing_support {

/// How many times a test is to do its work: what the environment says under `variable`, else `usual`. Throws
/// when it says no number, or fewer than `fewest`: such a test would pass without having looked.
[[nodiscard]] inline int askedCount(const char* variable, int usual, int fewest) {
  const char* asked = std::getenv(variable);  // NOLINT(concurrency-mt-unsafe): tests of one thread
  if (asked == nullptr) return usual;
  const auto count = parseNumber<int>(asked);
  if (!count || *count < fewest) {
    throw std::invalid_argument(std::string{variable} + " is " + asked + ", which is no number from " +
                                std::to_string(fewest) + " on");
  }
  return *count;
}

}  // namespace quellin::testing_support
