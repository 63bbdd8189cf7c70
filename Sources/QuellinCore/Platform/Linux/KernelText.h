#pragma once

#include <optional>
#include <string_view>

namespace quellin {

/// `text` without the ASCII white space and line breaks at its ends, the only ones that the kernel writes.
[[nodiscard]] std::string_view withoutSpaceAtEnds(std::string_view text);

/// The number between `prefix` and `suffix` when `name` is made of just these three: "temp12_input" holds 12.
[[nodiscard]] std::optional<int> numberWithin(std::string_view name, std::string_view prefix,
                                              std::string_view suffix);

/// Whether `left` comes first when runs of digits count as numbers: "hwmon2" before "hwmon10".
[[nodiscard]] bool naturallyLess(std::string_view left, std::string_view right);

}  // namespace quellin
