#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace quellin {

/// The text that the characters between the quotes of a JSON string stand for: `raw` itself where it holds no
/// escape, else a view of `buffer`, which is overwritten. No value for an unknown or incomplete escape and
/// for half a surrogate pair. `raw` must be valid UTF-8 without control characters.
[[nodiscard]] std::optional<std::string_view> unescapedJSON(std::string_view raw, std::string& buffer);

}  // namespace quellin
