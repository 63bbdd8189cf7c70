#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace quellin {

/// `value` in nanojoules, where `unitLabel` is the unit it was counted in: "J", "mJ", "uJ", "nJ" or "pJ",
/// padded with white space or not; fractions of a nanojoule are dropped. Without a label, and with an empty
/// one, the value is taken as nanojoules. No value for a unit that is none of energy. Ends the process when
/// the result does not fit.
[[nodiscard]] std::optional<std::int64_t> nanojoules(std::int64_t value,
                                                     std::optional<std::string_view> unitLabel);

}  // namespace quellin
