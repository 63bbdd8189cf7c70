#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace quellin::cli {

/// `text` without anything that a terminal would obey: control characters become "?", broken UTF-8 is
/// repaired.
[[nodiscard]] std::string printable(std::string_view text);

/// One line "name  value" of a record for people; the value is made printable.
[[nodiscard]] std::string namedLine(std::string name, std::string_view value);

/// `text` broken between words into lines of at most `width` columns, each behind `indent`; in one line
/// without a width.
[[nodiscard]] std::string wrapped(std::string_view text, std::string_view indent,
                                  std::optional<std::size_t> width);

}  // namespace quellin::cli
