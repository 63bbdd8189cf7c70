#include "QuellinCore/Support/Checksum.h"

#include <array>
#include <bit>
#include <cstddef>
#include <cstring>

namespace quellin {
namespace {

constexpr std::uint32_t reflectedPolynomial = 0x82F63B78;
constexpr std::size_t sliceCount = 8;
using Slices = std::array<std::array<std::uint32_t, 256>, sliceCount>;

// Slice n holds the effect of a byte that n further bytes follow, so that eight bytes take eight look-ups
// that do not wait for each other.
constexpr Slices slices = [] {
  Slices result{};
  for (std::uint32_t byte = 0; byte < 256; ++byte) {
    std::uint32_t remainder = byte;
    for (int bit = 0; bit < 8; ++bit) {
      remainder = (remainder >> 1) ^ ((remainder & 1) != 0 ? reflectedPolynomial : 0);
    }
    result[0][byte] = remainder;
  }
  for (std::size_t slice = 1; slice < sliceCount; ++slice) {
    for (std::size_t byte = 0; byte < 256; ++byte) {
      const std::uint32_t before = result[slice - 1][byte];
      result[slice][byte] = (before >> 8) ^ result[0][before & 0xFF];
    }
  }
  return result;
}();

std::uint32_t afterByte(std::uint32_t remainder, char byte) {
  return (remainder >> 8) ^ slices[0][(remainder ^ static_cast<unsigned char>(byte)) & 0xFF];
}

}  // namespace

std::uint32_t crc32c(std::string_view bytes, std::uint32_t previous) {
  static_assert(std::endian::native == std::endian::little, "the eight-byte step reads little-endian words");
  std::uint32_t remainder = ~previous;
  while (bytes.size() >= sliceCount) {
    std::uint64_t word = 0;
    std::memcpy(&word, bytes.data(), sizeof word);
    word ^= remainder;
    remainder = 0;
    for (std::size_t slice = sliceCount; slice-- > 0; word >>= 8) remainder ^= slices[slice][word & 0xFF];
    bytes.remove_prefix(sliceCount);
  }
  for (const char byte : bytes) remainder = afterByte(remainder, byte);
  return ~remainder;
}

}  // namespace quellin
