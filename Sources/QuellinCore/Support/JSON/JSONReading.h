#pragma once

#include <array>
#include <bit>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

#include "QuellinCore/Support/Clock.h"
#include "QuellinCore/Support/JSON/RecordOrder.h"
#include "QuellinCore/Support/RawValue.h"
#include "QuellinCore/Support/UUID.h"

/// How values of every type are read from a document: thin typed shells around functions that know the
/// parser, which no header but JSONNode.h sees. A reading function returns false when the document is not
/// well-formed and reading must stop. A well-formed value that does not suit is noted in the document's state
/// and read over.
namespace quellin::detail {

/// A value at the place in the document where reading stands.
class JSONNode;

using ReadFunction = bool (*)(JSONNode& node, void* target);

/// How to read one field of a record.
struct FieldReader {
  std::string_view name;
  std::size_t position = 0;  ///< in declaration order
  bool isRequired = true;
  ReadFunction read = nullptr;  ///< takes the record as its target
};

/// The values an integer type can hold.
struct IntegerType {
  std::string_view name;
  std::uint64_t largest = 0;
  std::uint64_t smallestMagnitude = 0;  ///< of the most negative value
};

[[nodiscard]] bool isNull(const JSONNode& node);
[[nodiscard]] bool readBool(JSONNode& node, bool& value);
[[nodiscard]] bool readDouble(JSONNode& node, double& value);
/// `bits` is the value in two's complement.
[[nodiscard]] bool readInteger(JSONNode& node, const IntegerType& type, std::uint64_t& bits);
[[nodiscard]] bool readString(JSONNode& node, std::string& value);
[[nodiscard]] bool readInstant(JSONNode& node, Instant& value);
[[nodiscard]] bool readUUID(JSONNode& node, UUID& value);
/// `index` is the place of the text among `rawTexts`.
[[nodiscard]] bool readRawText(JSONNode& node, std::span<const std::string_view> rawTexts,
                               std::size_t& index);
/// `readElement` takes `array` as its target, and appends to it.
[[nodiscard]] bool readArray(JSONNode& node, ReadFunction readElement, void* array);
/// `fields` is ordered by name and holds at most 64.
[[nodiscard]] bool readRecord(JSONNode& node, std::span<const FieldReader> fields, void* record);

template <class Integer>
constexpr IntegerType integerType() {
  constexpr std::array<std::string_view, 4> signedNames{"Int8", "Int16", "Int32", "Int"};
  constexpr std::array<std::string_view, 4> unsignedNames{"UInt8", "UInt16", "UInt32", "UInt"};
  constexpr auto width = static_cast<std::size_t>(std::countr_zero(sizeof(Integer)));
  constexpr auto largest = static_cast<std::uint64_t>(std::numeric_limits<Integer>::max());
  if constexpr (std::is_signed_v<Integer>) return {signedNames[width], largest, largest + 1};
  return {unsignedNames[width], largest, 0};
}

template <class T>
[[nodiscard]] bool readValue(JSONNode& node, T& value);

template <class T>
[[nodiscard]] bool readValue(JSONNode& node, std::optional<T>& value) {
  if (isNull(node)) return true;
  return readValue(node, value.emplace());
}

template <class T>
[[nodiscard]] bool readValue(JSONNode& node, std::vector<T>& values) {
  static_assert(!std::same_as<T, bool>, "elements of a bit vector cannot be referred to");
  constexpr ReadFunction readElement = [](JSONNode& element, void* array) {
    return readValue(element, static_cast<std::vector<T>*>(array)->emplace_back());
  };
  return readArray(node, readElement, &values);
}

template <Record T, std::size_t index>
bool readField(JSONNode& node, void* record) {
  return readValue(node, static_cast<T*>(record)->*std::get<index>(T::fields()).member);
}

template <Record T, std::size_t index>
constexpr FieldReader fieldReader() {
  using Fields = decltype(T::fields());
  using Value = typename std::tuple_element_t<index, Fields>::ValueType;
  return {fieldNames<T>[index], index, !isOptional<Value>, &readField<T, index>};
}

template <Record T>
[[nodiscard]] std::span<const FieldReader> fieldReaders() {
  static_assert(fieldCount<T> <= 64);
  static constexpr auto readers = []<std::size_t... place>(std::index_sequence<place...>) {
    return std::array<FieldReader, sizeof...(place)>{fieldReader<T, fieldsByName<T>[place]>()...};
  }(std::make_index_sequence<fieldCount<T>>{});
  return readers;
}

template <class T>
[[nodiscard]] bool readValue(JSONNode& node, T& value) {
  if constexpr (std::same_as<T, bool>) {
    return readBool(node, value);
  } else if constexpr (std::integral<T>) {
    auto bits = static_cast<std::uint64_t>(value);
    const bool isWellFormed = readInteger(node, integerType<T>(), bits);
    value = static_cast<T>(bits);
    return isWellFormed;
  } else if constexpr (std::same_as<T, double>) {
    return readDouble(node, value);
  } else if constexpr (std::same_as<T, std::string>) {
    return readString(node, value);
  } else if constexpr (std::same_as<T, Instant>) {
    return readInstant(node, value);
  } else if constexpr (std::same_as<T, UUID>) {
    return readUUID(node, value);
  } else if constexpr (RawEnum<T>) {
    std::size_t index = 0;
    const bool isWellFormed = readRawText(node, rawValues<T>, index);
    value = static_cast<T>(index);
    return isWellFormed;
  } else {
    static_assert(Record<T>, "this type has no JSON form");
    return readRecord(node, fieldReaders<T>(), &value);
  }
}

}  // namespace quellin::detail
