#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "QuellinCore/Support/Clock.h"

namespace quellin::cli {

/// What stands in the place of a figure that is not known.
inline constexpr const char* unknown = "unknown";

/// `value` with so many decimals, in the C locale; "unknown" without a value.
[[nodiscard]] std::string decimal(const std::optional<double>& value, int decimals);

/// As `decimal`, with a plus before what is more than nothing.
[[nodiscard]] std::string signedDecimal(double value, int decimals);

/// A figure with as many decimals as its unit deserves: none for counts, one for degrees, two for watts.
[[nodiscard]] std::string figureText(const std::optional<double>& value, const std::string& unit);

/// A whole number; "unknown" without a value.
[[nodiscard]] std::string whole(const std::optional<std::int64_t>& value);

/// So many of something: "1 sample", "2 samples".
[[nodiscard]] std::string counted(std::int64_t count, const std::string& thing);

/// A length of time: "42 s", "3 min 5 s", "2 h 0 min".
[[nodiscard]] std::string durationText(Seconds duration);

/// A number of bytes: "812 B", "1.3 MB".
[[nodiscard]] std::string byteText(double bytes);

}  // namespace quellin::cli
