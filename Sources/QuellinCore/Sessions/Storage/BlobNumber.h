#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace quellin {

/// A number, or a date, of a JSON document in a form that spells the very same characters again.
struct BlobNumber {
  /// How the characters come from the payload.
  enum class Form : std::uint8_t {
    decimal,  ///< `payload` divided by ten to the power of `decimals`, with exactly that many decimals
    single,   ///< a 32-bit float, spelled as the double of the same value
    real,     ///< a double, in its shortest spelling
    date,     ///< seconds since 1970, spelled as ISO 8601 text
    text,     ///< none of these: `text` as it stands
  };

  static constexpr std::uint8_t decimalsLimit = 22;  ///< ten to this power is still exact in a double

  Form form = Form::decimal;   ///< part of what is stored
  std::uint8_t decimals = 0;   ///< at most `decimalsLimit`; 0 unless `form` is decimal
  std::int64_t payload = 0;    ///< neighbouring values have neighbouring payloads
  std::string_view text = {};  ///< empty unless `form` is text

  /// True when payloads of the two may be subtracted from one another.
  [[nodiscard]] bool hasFormOf(const BlobNumber& other) const {
    return form == other.form && decimals == other.decimals;
  }

  bool operator==(const BlobNumber&) const = default;
};

/// The number that `token` (characters out of "+-.0-9eE") spells. The form `wish` is taken when it can be.
/// Never fails: what has no other form is kept as text, which then points into `token`.
[[nodiscard]] BlobNumber blobNumber(std::string_view token, BlobNumber::Form wish);

/// The date that the 20 characters of `token` spell; no value when they would not be spelled that way again.
[[nodiscard]] std::optional<BlobNumber> blobDate(std::string_view token);

/// Appends the characters that `number` was made from. A payload out of range for its form, which only
/// damaged bytes have, gives some text.
void appendSpelling(std::string& text, const BlobNumber& number);

}  // namespace quellin
