#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace quellin {

/// Big-endian UTF-16 as UTF-8; no value when a surrogate stands alone or half a unit is left.
[[nodiscard]] std::optional<std::string> utf8FromUTF16BigEndian(std::string_view bytes);

}  // namespace quellin
