#pragma once

#include <expected>
#include <string>
#include <string_view>

#include "QuellinCore/Support/JSON/JSONDecoder.h"
#include "QuellinCore/Support/JSON/JSONEncoder.h"

/// The JSON coders of stored blobs and exports. They hold no state, so all threads may share them.
namespace quellin::PowerSessionCoders {

/// Writes records with sorted keys and ISO 8601 dates in whole seconds.
struct Encoder {
  JSONLayout layout = JSONLayout::compact;  ///< same values, other blanks

  /// `value` as one JSON document; fails on a number or date that is not finite.
  template <class T>
  [[nodiscard]] std::expected<std::string, EncodingError> encode(const T& value) const {
    return encodeJSON(value, KeyOrder::sorted, layout);
  }

  /// As `encode`, appended to `text`, which a failure leaves as it was.
  template <class T>
  std::expected<void, EncodingError> append(std::string& text, const T& value) const {
    return appendJSON(text, value, KeyOrder::sorted, layout);
  }
};

/// Reads what an `Encoder` wrote. Where there are many documents, a `JSONDecoder` of one's own reads the same
/// with less work.
struct Decoder {
  /// The value that `bytes` spell, or the first thing that is wrong with them.
  template <class T>
  [[nodiscard]] std::expected<T, DecodingError> decode(std::string_view bytes) const {
    return decodeJSON<T>(bytes);
  }
};

/// One line: for stored blobs and export lines.
inline constexpr Encoder encoder{};

/// Indented, for people to read.
inline constexpr Encoder prettyEncoder{JSONLayout::pretty};

inline constexpr Decoder decoder{};  ///< for stored blobs and export lines

}  // namespace quellin::PowerSessionCoders
