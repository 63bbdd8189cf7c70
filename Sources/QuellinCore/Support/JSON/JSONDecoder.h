#pragma once

#include <expected>
#include <memory>
#include <optional>
#include <string_view>
#include <utility>

#include "QuellinCore/Support/JSON/DecodingError.h"
#include "QuellinCore/Support/JSON/JSONReading.h"

namespace quellin {

/// Reads JSON documents into records, vectors and scalars, and keeps its buffers from one document to the
/// next. One thread at a time may use it.
///
/// The whole document is read once and must be valid JSON, unknown keys included, which are otherwise
/// ignored. The first of several equal keys counts. A missing or null optional field is absent. An integer
/// may be spelled as any number of that exact value. Dates are ISO 8601 text in whole seconds. UTF-16 and
/// UTF-32 are understood; containers may be nested 512 deep.
class JSONDecoder {
 public:
  JSONDecoder();
  ~JSONDecoder();
  JSONDecoder(JSONDecoder&&) noexcept;
  JSONDecoder& operator=(JSONDecoder&&) noexcept;
  JSONDecoder(const JSONDecoder&) = delete;
  JSONDecoder& operator=(const JSONDecoder&) = delete;

  /// The value that `bytes` spell, or the first thing that is wrong with them. A document that is not valid
  /// JSON is reported as that, whatever else is wrong. `T` is default-constructible.
  template <class T>
  [[nodiscard]] std::expected<T, DecodingError> decode(std::string_view bytes) {
    T value{};
    constexpr detail::ReadFunction read = [](detail::JSONNode& node, void* target) {
      return detail::readValue(node, *static_cast<T*>(target));
    };
    if (std::optional<DecodingError> error = readDocument(bytes, read, &value)) {
      return std::unexpected(*std::move(error));
    }
    return value;
  }

 private:
  class State;

  std::optional<DecodingError> readDocument(std::string_view bytes, detail::ReadFunction read, void* target);

  std::unique_ptr<State> state_;
};

/// The value that `bytes` spell, read with a decoder of its own; keep a `JSONDecoder` where there are many
/// documents.
template <class T>
[[nodiscard]] std::expected<T, DecodingError> decodeJSON(std::string_view bytes) {
  return JSONDecoder{}.decode<T>(bytes);
}

}  // namespace quellin
