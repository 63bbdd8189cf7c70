#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "QuellinHelper/PropertyLists/PropertyList.h"

namespace quellin {

/// What XML counts as white space.
inline constexpr std::string_view xmlWhiteSpace = " \t\r\n";

// The texts of the scalar elements of an XML property list. No value: not a text of that kind.

/// White space, an optional sign, and decimal digits or "0x" with hexadecimal digits, from the smallest
/// signed to the largest unsigned 64-bit integer. The node is an integer or a large integer.
[[nodiscard]] std::optional<PropertyListNode> parseXMLInteger(std::string_view text);

/// White space, then a decimal number, "nan", or "inf" or "infinity" with an optional sign, in any case.
[[nodiscard]] std::optional<double> parseXMLReal(std::string_view text);

/// "[-]YYYY-MM-DDTHH:MM:SSZ", all of it, with at least one digit of year and in range.
[[nodiscard]] std::optional<Instant> parseXMLDate(std::string_view text);

/// Base64 with white space anywhere and its padding complete; at least one byte.
[[nodiscard]] std::optional<std::string> decodeXMLData(std::string_view text);

}  // namespace quellin
