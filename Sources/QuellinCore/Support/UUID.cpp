#include "QuellinCore/Support/UUID.h"

#include <unistd.h>
#if defined(__APPLE__)
#include <sys/random.h>
#endif

#include <cstdlib>

namespace quellin {
namespace {

constexpr std::string_view upperCaseDigits = "0123456789ABCDEF";

constexpr bool isHyphenPosition(std::size_t position) {
  return position == 8 || position == 13 || position == 18 || position == 23;
}

constexpr int hexDigit(char character) {
  if (character >= '0' && character <= '9') return character - '0';
  if (character >= 'A' && character <= 'F') return character - 'A' + 10;
  if (character >= 'a' && character <= 'f') return character - 'a' + 10;
  return -1;
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
    const int digit = hexDigit(text[position]);
    if (digit < 0) return std::nullopt;
    std::uint8_t& byte = bytes[digits++ / 2];
    byte = static_cast<std::uint8_t>((byte << 4) | digit);
  }
  return UUID{bytes};
}

UUID::Characters UUID::characters() const {
  Characters characters{};
  std::size_t position = 0;
  for (const std::uint8_t byte : bytes_) {
    if (isHyphenPosition(position)) characters[position++] = '-';
    characters[position++] = upperCaseDigits[byte >> 4];
    characters[position++] = upperCaseDigits[byte & 0x0F];
  }
  return characters;
}

std::string UUID::text() const {
  const Characters all = characters();
  return {all.data(), all.size()};
}

}  // namespace quellin

std::size_t std::hash<quellin::UUID>::operator()(const quellin::UUID& uuid) const noexcept {
  const std::string_view bytes{reinterpret_cast<const char*>(uuid.bytes().data()), uuid.bytes().size()};
  return std::hash<std::string_view>{}(bytes);
}
