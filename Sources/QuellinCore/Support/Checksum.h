#pragma once

#include <cstdint>
#include <string_view>

namespace quellin {

/// The CRC-32C (Castagnoli) of `bytes`: polynomial 0x1EDC6F41, reflected, start and final inversion.
/// `previous` is the checksum of the bytes before them, so that pieces may be fed one after the other. It
/// differs for any two byte strings of equal length that differ in up to 32 neighbouring bits.
[[nodiscard]] std::uint32_t crc32c(std::string_view bytes, std::uint32_t previous = 0);

}  // namespace quellin
