#pragma once

#include <cstdint>
#include <span>
#include <string>

namespace quellin {

/// The text of bytes in the Mac OS Roman encoding, as UTF-8. Every byte has a character (0xDB is the euro
/// sign, 0xF0 the private-use U+F8FF), so decoding cannot fail. The mapping is the one published as ROMAN.TXT
/// by the Unicode Consortium.
[[nodiscard]] std::string decodeMacRoman(std::span<const std::uint8_t> bytes);

}  // namespace quellin
