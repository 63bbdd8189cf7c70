#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "QuellinCore/Sessions/SampleFacts.h"

namespace quellin {

/// The stored form of facts.
struct StoredFacts {
  std::optional<std::int64_t> powerSource;  ///< a number for kind and label
  /// Contributions and the time of the pro telemetry; empty when there is neither. A byte that is 1 when the
  /// time is there and 0 when not, the time as a double in seconds since 1970, and for each contribution
  /// twice the length of its name, plus 1 when it is measured, as a varint, the name and the score.
  std::optional<std::string> contributions;

  bool operator==(const StoredFacts&) const = default;
};

/// The stored form; all absent for a kind and label that have no number.
[[nodiscard]] StoredFacts storedFacts(const SampleFacts& facts);

/// The facts of a stored form; no value when it is absent or makes no sense.
[[nodiscard]] std::optional<SampleFacts> factsFrom(std::optional<std::int64_t> powerSource,
                                                   std::optional<std::string_view> contributions);

}  // namespace quellin
