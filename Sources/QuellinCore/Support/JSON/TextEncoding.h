#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace quellin {

/// The bytes of a JSON document as UTF-8 without a byte order mark. The encoding (UTF-8, UTF-16 or UTF-32 in
/// either byte order) is told by the mark, or without one by where the zero bytes of the first characters
/// stand. UTF-8 comes back as a view of `bytes`, unchecked; the others as a view of `buffer`, which is
/// overwritten. No value when they are ill-formed.
[[nodiscard]] std::optional<std::string_view> documentAsUTF8(std::string_view bytes, std::string& buffer);

}  // namespace quellin
