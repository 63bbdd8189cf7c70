#include "QuellinCore/Support/UUID.h"

#include <unistd.h>
#if defined(__APPLE__)
#include <sys/random.h>
#endif

#include <cstdlib>

#include "QuellinCore/Support/HexDigits.h"

namespace quellin {
namespace {

constexpr bool isHyphenPosition(std::size_t position) {
  return position == 8 || position == 13 || position == 18 || position == 23;
}

}  // namespace

UUID UUID::random() {
  Bytes bytes{};
  if (getentropy(bytes.data(), bytes.size()) != 0) std::abort();
  bytes[6] = static_cast<std::uint8_t>((bytes[6] & 0x0F) | 0x40);
  bytes[8] = static_cast<std::uint8_t>((bytes[8] & 0x3F) | 0x80);
  return UUID{bytes};
}

std::optional<UUID> UUID::fromText(std::string_view text) {
  if (text.size() != std::tuple_size_v<Characters>) return std::nullopt;
  Bytes bytes{};
  std::size_t digits = 0;
  for (std::size_t position = 0; position < text.size(); ++position) {
    if (isHyphenPosition(position)) {
      if (text[position] != '-') return std::nullopt;
      continue;
    }
    const auto digit = hexDigitValue(text[position]);
    if (!digit) return std::nullopt;
    std::uint8_t& byte = bytes[digits++ / 2];
    byte = static_cast<std::uint8_t>((unsigned{byte} << 4U) | *digit);
  }
  return UUID{bytes};
}

UUID::Characters UUID::characters() const {
  Characters characters{};
  std::size_t position = 0;
  for (const std::uint8_t byte : bytes_) {
    if (isHyphenPosition(position)) characters[position++] = '-';
    characters[position++] = upperCaseHexDigits[byte >> 4];
    characters[position++] = upperCaseHexDigits[byte & 0x0F];
  }
  return characters;
}

std::string UUID::text() const {
  const Characters all = characters();
  return {all.data(), all.size()};
}

}  // namespace quellin
