#pragma once

#include <algorithm>
#include <array>
#include <concepts>
#include <cstddef>
#include <expected>
#include <optional>
#include <ranges>
#include <string>
#include <string_view>
#include <tuple>
#include <type_traits>
#include <utility>

#include "QuellinCore/Support/JSON/JSONWriter.h"
#include "QuellinCore/Support/JSON/RecordOrder.h"
#include "QuellinCore/Support/RawValue.h"

namespace quellin {

/// The order in which the keys of every object are written, nested ones included.
enum class KeyOrder {
  declaration,  ///< as the record declares its fields
  sorted,       ///< by the bytes of their names
};

namespace detail {

template <class T>
inline constexpr bool isEncodable = false;

/// `,"name":` of one field, laid out at compile time. Names are identifiers, so nothing in them needs an
/// escape.
template <Record T, std::size_t index>
inline constexpr auto fieldToken = [] {
  constexpr std::string_view name = fieldNames<T>[index];
  static_assert(name.find_first_of("\"\\/") == std::string_view::npos);
  std::array<char, name.size() + 4> token{',', '"'};
  std::ranges::copy(name, token.begin() + 2);
  token[name.size() + 2] = '"';
  token[name.size() + 3] = ':';
  return token;
}();

template <KeyOrder order, class T>
void writeValue(JSONWriter& writer, const T& value);

template <KeyOrder order, Record T, std::size_t index>
void writeField(JSONWriter& writer, const T& record) {
  const auto& value = record.*std::get<index>(T::fields()).member;
  if constexpr (isOptional<std::remove_cvref_t<decltype(value)>>) {
    if (!value.has_value()) return;
    writer.field(fieldToken<T, index>);
    writeValue<order>(writer, *value);
  } else {
    writer.field(fieldToken<T, index>);
    writeValue<order>(writer, value);
  }
  if (writer.failed()) writer.failedIn(fieldNames<T>[index]);
}

template <KeyOrder order, Record T>
void writeRecord(JSONWriter& writer, const T& record) {
  const std::size_t start = writer.open();
  [&]<std::size_t... position>(std::index_sequence<position...>) {
    constexpr auto fieldAt = [](std::size_t place) {
      return order == KeyOrder::sorted ? fieldsByName<T>[place] : place;
    };
    const auto write = [&]<std::size_t index>() {
      if (!writer.failed()) writeField<order, T, index>(writer, record);
    };
    (write.template operator()<fieldAt(position)>(), ...);
  }(std::make_index_sequence<fieldCount<T>>{});
  writer.close(start, '{', '}');
}

template <KeyOrder order, class Range>
void writeArray(JSONWriter& writer, const Range& elements) {
  const std::size_t start = writer.open();
  std::size_t index = 0;
  for (const auto& element : elements) {
    if (writer.failed()) break;
    writer.element();
    writeValue<order>(writer, element);
    if (writer.failed()) writer.failedIn(index);
    ++index;
  }
  writer.close(start, '[', ']');
}

template <KeyOrder order, class T>
void writeValue(JSONWriter& writer, const T& value) {
  if constexpr (std::same_as<T, bool>) {
    writer.boolean(value);
  } else if constexpr (std::signed_integral<T>) {
    writer.integer(value);
  } else if constexpr (std::unsigned_integral<T>) {
    writer.unsignedInteger(value);
  } else if constexpr (std::same_as<T, double>) {
    writer.number(value);
  } else if constexpr (std::convertible_to<const T&, std::string_view>) {
    writer.string(value);
  } else if constexpr (std::same_as<T, Instant>) {
    writer.instant(value);
  } else if constexpr (std::same_as<T, UUID>) {
    writer.uuid(value);
  } else if constexpr (RawEnum<T>) {
    writer.string(rawValue(value));
  } else if constexpr (Record<T>) {
    writeRecord<order>(writer, value);
  } else if constexpr (std::ranges::input_range<const T&>) {
    writeArray<order>(writer, value);
  } else {
    static_assert(isEncodable<T>, "this type has no JSON form");
  }
}

}  // namespace detail

/// Appends `value` as one JSON document to `text`, with no allocation but the growth of `text` itself. On
/// failure (a double or date that is not finite, nesting of 512 or more) `text` is left as it was. An absent
/// optional field is left out; text that is not valid UTF-8 is repaired with U+FFFD.
template <class T>
std::expected<void, EncodingError> appendJSON(std::string& text, const T& value,
                                              KeyOrder order = KeyOrder::declaration,
                                              JSONLayout layout = JSONLayout::compact) {
  JSONWriter writer{text, layout};
  if (order == KeyOrder::sorted) {
    detail::writeValue<KeyOrder::sorted>(writer, value);
  } else {
    detail::writeValue<KeyOrder::declaration>(writer, value);
  }
  if (writer.failed()) return std::unexpected(writer.error());
  return {};
}

/// `value` as one JSON document without a final line feed; see `appendJSON`.
template <class T>
[[nodiscard]] std::expected<std::string, EncodingError> encodeJSON(const T& value,
                                                                   KeyOrder order = KeyOrder::declaration,
                                                                   JSONLayout layout = JSONLayout::compact) {
  std::string text;
  if (auto result = appendJSON(text, value, order, layout); !result) return std::unexpected(result.error());
  return text;
}

}  // namespace quellin
