#pragma once

#include <array>
#include <compare>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace quellin {

/// A universally unique identifier: 16 bytes. The default one is all zeros. Ordered by its bytes. A plain
/// value: several threads may read one, as long as none changes it.
class UUID {
 public:
  using Bytes = std::array<std::uint8_t, 16>;  ///< in the order of the text
  /// The text form: 36 characters.
  using Characters = std::array<char, 36>;

  constexpr UUID() = default;
  constexpr explicit UUID(const Bytes& bytes) : bytes_(bytes) {}  ///< any bytes: versions are not checked

  /// A new version 4 identifier from the operating system's random source; ends the process if that source
  /// fails.
  [[nodiscard]] static UUID random();

  /// The identifier that `text` spells in its 36-character hyphenated form, in either case; no value
  /// otherwise.
  [[nodiscard]] static std::optional<UUID> fromText(std::string_view text);

  [[nodiscard]] constexpr const Bytes& bytes() const { return bytes_; }  ///< in the order of the text

  /// The hyphenated form in upper-case hexadecimal, without an allocation.
  [[nodiscard]] Characters characters() const;

  /// The hyphenated form in upper-case hexadecimal.
  [[nodiscard]] std::string text() const;

  constexpr auto operator<=>(const UUID&) const = default;

 private:
  Bytes bytes_{};
};

}  // namespace quellin
