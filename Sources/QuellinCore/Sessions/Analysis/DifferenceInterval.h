#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <tuple>

#include "QuellinCore/Support/JSON/Record.h"

namespace quellin {

/// Where the true difference of two means lies, B minus A.
struct DifferenceInterval {
  double lower = 0;    ///< where the interval begins
  double upper = 0;    ///< where it ends
  double level = 0;    ///< how much of all such intervals hold the true difference: 0.95
  std::string method;  ///< "Welch's t" or "moving-block bootstrap"
  std::optional<std::int64_t> blockLengthA;  ///< how many readings of A stay together; of the bootstrap only
  std::optional<std::int64_t> blockLengthB;  ///< the same of B

  static constexpr auto fields() {
    return std::tuple{Field{"lower", &DifferenceInterval::lower},
                      Field{"upper", &DifferenceInterval::upper},
                      Field{"level", &DifferenceInterval::level},
                      Field{"method", &DifferenceInterval::method},
                      Field{"blockLengthA", &DifferenceInterval::blockLengthA},
                      Field{"blockLengthB", &DifferenceInterval::blockLengthB}};
  }

  bool operator==(const DifferenceInterval&) const = default;
};

/// The interval of the difference of the means of independent repeats by Welch's t, which asks for no equal
/// variances. No value unless both have at least two values. Values that do not differ at all have an
/// interval of no width.
[[nodiscard]] std::optional<DifferenceInterval> welchInterval(std::span<const double> a,
                                                              std::span<const double> b);

/// The interval of the difference of the means of two series whose neighbours resemble each other, by the
/// moving-block bootstrap: blocks of twice the cube root of the series, rounded up, 4000 resamplings from
/// fixed seeds, and the percentiles of what they give, centred on the difference and widened by what blocks
/// lack of the variance. The same series give the same interval on every machine, and two
/// different ones the other way round the mirrored interval. No value unless both have
/// `fewestToResample` values. Its level is that of many values: where each keeps half of the one before, 93 %
/// of the intervals of 300 values hold the true difference, and 87 % of those of 30.
[[nodiscard]] std::optional<DifferenceInterval> bootstrapInterval(std::span<const double> a,
                                                                  std::span<const double> b);

/// The fewest values that `bootstrapInterval` takes.
inline constexpr std::size_t fewestToResample = 30;

}  // namespace quellin
