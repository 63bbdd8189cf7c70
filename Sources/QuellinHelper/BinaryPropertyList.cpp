#include "QuellinHelper/BinaryPropertyList.h"

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <vector>

#include "QuellinHelper/BinaryPropertyListLayout.h"
#include "QuellinHelper/PropertyListBuilder.h"
#include "QuellinHelper/UTF16.h"

namespace quellin {
namespace {

using detail::bigEndian;
using detail::BinaryObject;
using detail::BinaryPropertyListLayout;

enum ObjectType : std::uint8_t {
  simple = 0x0,
  integer = 0x1,
  real = 0x2,
  date = 0x3,
  data = 0x4,
  asciiString = 0x5,
  utf16String = 0x6,
  identifier = 0x8,
  array = 0xA,
  dictionary = 0xD
};

constexpr double secondsFrom1970To2001 = 978'307'200;

bool isASCII(std::string_view bytes) {
  return std::ranges::all_of(bytes, [](char byte) { return static_cast<unsigned char>(byte) < 0x80; });
}

/// Walks the objects with a stack of its own and hands them to the builder in stored order.
class BinaryPropertyListReader {
 public:
  BinaryPropertyListReader(const BinaryPropertyListLayout& layout, std::size_t nodeLimit)
      : _layout(layout), _scalars(layout.objectCount()), _nodesLeft(nodeLimit) {}

  std::expected<PropertyList, PropertyListError> read() {
    bool succeeded = addObject(_layout.topObject());
    while (succeeded && !_containers.empty()) succeeded = addNext();
    if (auto list = _builder.finish()) return std::move(*list);
    return std::unexpected(PropertyListError{.reason = _builder.failure(), .offset = _offset});
  }

 private:
  struct Container {
    std::string_view keys;    // references; empty for an array
    std::string_view values;  // references
    std::size_t taken = 0;    // bytes of the references used up
  };

  bool addNext() {
    Container& container = _containers.back();
    if (container.taken == container.values.size()) {
      _containers.pop_back();
      return _builder.close();
    }
    const std::size_t at = container.taken;
    container.taken += _layout.referenceSize();
    const auto value = bigEndian(container.values.substr(at, _layout.referenceSize()));
    if (!container.keys.empty() && !addKey(bigEndian(container.keys.substr(at, _layout.referenceSize())))) {
      return false;
    }
    return addObject(value);
  }

  bool addKey(std::uint64_t number) {
    const auto object = visit(number);
    if (!object) return false;
    const auto key = scalar(number, *object);
    const auto text = key ? key->string() : std::nullopt;
    return text ? _builder.addKey(*text) : _builder.fail("key that is no string");
  }

  bool addObject(std::uint64_t number) {
    const auto object = visit(number);
    if (!object) return false;
    if (object->type == array || object->type == dictionary) return open(*object);
    if (object->type == identifier) return addIdentifier(*object);
    const auto node = scalar(number, *object);
    return node ? _builder.add(*node) : _builder.fail("malformed or unsupported object");
  }

  std::optional<BinaryObject> visit(std::uint64_t number) {
    const auto object = _layout.object(number);
    if (!object) {
      _builder.fail("object outside the input");
      return std::nullopt;
    }
    _offset = object->contents;
    if (_nodesLeft == 0) {
      _builder.fail("more nodes than bytes");
      return std::nullopt;
    }
    --_nodesLeft;
    return object;
  }

  bool open(const BinaryObject& object) {
    const bool isDictionary = object.type == dictionary;
    const auto first = _layout.slice(object.contents, object.length, _layout.referenceSize());
    if (!first) return _builder.fail("references outside the input");
    Container container{.keys = {}, .values = *first};
    if (isDictionary) {
      const auto second =
          _layout.slice(object.contents + first->size(), object.length, _layout.referenceSize());
      if (!second) return _builder.fail("references outside the input");
      container = {.keys = *first, .values = *second};
    }
    _containers.push_back(container);
    return isDictionary ? _builder.openDictionary() : _builder.openArray();
  }

  bool addIdentifier(const BinaryObject& object) {
    const auto bytes = _layout.slice(object.contents, object.length + 1);
    if (!bytes || bytes->size() > sizeof(std::uint64_t)) return _builder.fail("malformed identifier");
    return _builder.openDictionary() && _builder.addKey("CF$UID") &&
           _builder.add(PropertyListNode{bigEndian(*bytes)}) && _builder.close();
  }

  // Objects may be referred to many times; each is copied into the list once.
  std::optional<PropertyListNode> scalar(std::uint64_t number, const BinaryObject& object) {
    auto& known = _scalars[static_cast<std::size_t>(number)];
    if (!known) known = read(object);
    return known;
  }

  std::optional<PropertyListNode> read(const BinaryObject& object) {
    switch (object.type) {
      case simple:
        return readBoolean(object);
      case integer:
        return readInteger(object);
      case real:
      case date:
        return readReal(object);
      case data:
        return readData(object);
      case asciiString:
        return readASCII(object);
      case utf16String:
        return readUTF16(object);
      default:
        return std::nullopt;
    }
  }

  static std::optional<PropertyListNode> readBoolean(const BinaryObject& object) {
    constexpr std::uint64_t no = 8;
    constexpr std::uint64_t yes = 9;
    if (object.length != no && object.length != yes) return std::nullopt;
    return PropertyListNode{object.length == yes};
  }

  [[nodiscard]] std::optional<PropertyListNode> readInteger(const BinaryObject& object) const {
    if (object.length > 4) return std::nullopt;
    const auto bytes = _layout.slice(object.contents, std::uint64_t{1} << object.length);
    if (!bytes) return std::nullopt;
    const std::uint64_t value = bigEndian(*bytes);
    if (bytes->size() < sizeof(std::int64_t)) return PropertyListNode{value};
    if (bytes->size() == sizeof(std::int64_t)) return PropertyListNode{static_cast<std::int64_t>(value)};
    const std::uint64_t upper = bigEndian(bytes->substr(0, sizeof(std::uint64_t)));
    if (upper == 0) return PropertyListNode{value};
    const auto lower = static_cast<std::int64_t>(value);
    if (upper == std::numeric_limits<std::uint64_t>::max() && lower < 0) return PropertyListNode{lower};
    return std::nullopt;
  }

  [[nodiscard]] std::optional<PropertyListNode> readReal(const BinaryObject& object) const {
    constexpr std::uint64_t fourBytes = 2;
    constexpr std::uint64_t eightBytes = 3;
    if (object.length != eightBytes && (object.length != fourBytes || object.type == date))
      return std::nullopt;
    const auto bytes = _layout.slice(object.contents, std::uint64_t{1} << object.length);
    if (!bytes) return std::nullopt;
    if (object.length == fourBytes) {
      const auto value = std::bit_cast<float>(static_cast<std::uint32_t>(bigEndian(*bytes)));
      return PropertyListNode{static_cast<double>(value)};
    }
    const auto value = std::bit_cast<double>(bigEndian(*bytes));
    return object.type == date ? PropertyListNode{instantAt(value + secondsFrom1970To2001)}
                               : PropertyListNode{value};
  }

  [[nodiscard]] std::optional<PropertyListNode> readData(const BinaryObject& object) {
    const auto bytes = _layout.slice(object.contents, object.length);
    if (!bytes) return std::nullopt;
    return PropertyListNode::ofData(_builder.arena().copy(*bytes));
  }

  [[nodiscard]] std::optional<PropertyListNode> readASCII(const BinaryObject& object) {
    const auto bytes = _layout.slice(object.contents, object.length);
    if (!bytes || !isASCII(*bytes)) return std::nullopt;
    return PropertyListNode{_builder.arena().copy(*bytes)};
  }

  [[nodiscard]] std::optional<PropertyListNode> readUTF16(const BinaryObject& object) {
    const auto bytes = _layout.slice(object.contents, object.length, sizeof(char16_t));
    if (!bytes) return std::nullopt;
    const auto text = utf8FromUTF16BigEndian(*bytes);
    if (!text) return std::nullopt;
    return PropertyListNode{_builder.arena().copy(*text)};
  }

  const BinaryPropertyListLayout& _layout;
  PropertyListBuilder _builder;
  std::vector<Container> _containers;
  std::vector<std::optional<PropertyListNode>> _scalars;
  std::size_t _nodesLeft;
  std::size_t _offset = 0;
};

}  // namespace

std::expected<PropertyList, PropertyListError> parseBinaryPropertyList(std::string_view bytes) {
  if (bytes.size() > maximumPropertyListSize)
    return std::unexpected(PropertyListError{.reason = "too large"});
  const auto layout = BinaryPropertyListLayout::read(bytes);
  if (!layout) return std::unexpected(PropertyListError{.reason = layout.error()});
  return BinaryPropertyListReader{*layout, bytes.size()}.read();
}

}  // namespace quellin
