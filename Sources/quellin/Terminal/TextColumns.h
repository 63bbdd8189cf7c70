#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace quellin::cli {

/// How many columns of a terminal the character takes: 0, 1 or 2.
[[nodiscard]] std::size_t columnsOf(char32_t character);

/// How many columns `text`, which is UTF-8, takes in all.
[[nodiscard]] std::size_t columnsOf(std::string_view text);

/// What of `text` fits into so many columns, with what joins the last character that does.
[[nodiscard]] std::string firstColumns(std::string_view text, std::size_t columns);

/// `text` where it fits into so many columns, else its beginning with ".." for the rest, all in as many.
[[nodiscard]] std::string shortened(std::string_view text, std::size_t columns);

}  // namespace quellin::cli
