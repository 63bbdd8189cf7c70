#include "QuellinHelper/PropertyLists/BinaryPropertyList.h"

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <vector>

#include "QuellinHelper/PropertyLists/BinaryPropertyListLayout.h"
#include "QuellinHelper/PropertyLists/PropertyListBuilder.h"
#include "QuellinHelper/PropertyLists/UTF16.h"

namespace quellin {
namespace {

using detail::bigEndian;
using detail::BinaryObject;
using detail::BinaryPropertyListLayout;
using enum detail::ObjectType;

constexpr double secondsFrom1970To2001 = 978'307'200;

bool isASCII(std::string_view bytes) {
  return std::ranges::all_of(bytes, [](char byte) { return static_cast<unsigned char>(byte) < 0x80; });
}

/// Walks the objects with a stack of its own and hands them to the builder in stored order.
class BinaryPropertyListReader {
 public:
  BinaryPropertyListReader(const BinaryPropertyListLayout& layout, std::size_t nodeLimit)
      : layout_(layout), scalars_(layout.objectCount()), nodesLeft_(nodeLimit) {}

  std::expected<PropertyList, PropertyListError> read() {
    bool succeeded = addObject(layout_.topObject());
    while (succeeded && !containers_.empty()) succeeded = addNext();
    if (auto list = builder_.finish()) return std::move(*list);
    return std::unexpected(PropertyListError{.reason = builder_.failure(), .offset = offset_});
  }

 private:
  struct Container {
    std::string_view keys;    // references; empty for an array
    std::string_view values;  // references
    std::size_t taken = 0;    // bytes of the references used up
  };

  bool addNext() {
    Container& container = containers_.back();
    if (container.taken == container.values.size()) {
      containers_.pop_back();
      return builder_.close();
    }
    const std::size_t at = container.taken;
    container.taken += layout_.referenceSize();
    const auto value = bigEndian(container.values.substr(at, layout_.referenceSize()));
    if (!container.keys.empty() && !addKey(bigEndian(container.keys.substr(at, layout_.referenceSize())))) {
      return false;
    }
    return addObject(value);
  }

  bool addKey(std::uint64_t number) {
    const auto object = visit(number);
    if (!object) return false;
    const auto key = scalar(number, *object);
    const auto text = key ? key->string() : std::nullopt;
    return text ? builder_.addKey(*text) : builder_.fail("key that is no string");
  }

  bool addObject(std::uint64_t number) {
    const auto object = visit(number);
    if (!object) return false;
    if (object->type == array || object->type == dictionary) return open(*object);
    if (object->type == identifier) return addIdentifier(*object);
    const auto node = scalar(number, *object);
    return node ? builder_.add(*node) : builder_.fail("malformed or unsupported object");
  }

  std::optional<BinaryObject> visit(std::uint64_t number) {
    const auto object = layout_.object(number);
    if (!object) {
      builder_.fail("object outside the input");
      return std::nullopt;
    }
    offset_ = object->contents;
    if (nodesLeft_ == 0) {
      builder_.fail("more nodes than bytes");
      return std::nullopt;
    }
    --nodesLeft_;
    return object;
  }

  bool open(const BinaryObject& object) {
    const bool isDictionary = object.type == dictionary;
    const auto first = layout_.slice(object.contents, object.length, layout_.referenceSize());
    if (!first) return builder_.fail("references outside the input");
    Container container{.keys = {}, .values = *first};
    if (isDictionary) {
      const auto second =
          layout_.slice(object.contents + first->size(), object.length, layout_.referenceSize());
      if (!second) return builder_.fail("references outside the input");
      container = {.keys = *first, .values = *second};
    }
    containers_.push_back(container);
    return isDictionary ? builder_.openDictionary() : builder_.openArray();
  }

  bool addIdentifier(const BinaryObject& object) {
    const auto bytes = layout_.slice(object.contents, object.length + 1);
    if (!bytes || bytes->size() > sizeof(std::uint64_t)) return builder_.fail("malformed identifier");
    return builder_.openDictionary() && builder_.addKey("CF$UID") &&
           builder_.add(PropertyListNode{bigEndian(*bytes)}) && builder_.close();
  }

  // Objects may be referred to many times; each is copied into the list once.
  std::optional<PropertyListNode> scalar(std::uint64_t number, const BinaryObject& object) {
    auto& known = scalars_[static_cast<std::size_t>(number)];
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
    const auto bytes = layout_.slice(object.contents, std::uint64_t{1} << object.length);
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
    const auto bytes = layout_.slice(object.contents, std::uint64_t{1} << object.length);
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
    const auto bytes = layout_.slice(object.contents, object.length);
    if (!bytes) return std::nullopt;
    return PropertyListNode::ofData(builder_.arena().copy(*bytes));
  }

  [[nodiscard]] std::optional<PropertyListNode> readASCII(const BinaryObject& object) {
    const auto bytes = layout_.slice(object.contents, object.length);
    if (!bytes || !isASCII(*bytes)) return std::nullopt;
    return PropertyListNode{builder_.arena().copy(*bytes)};
  }

  [[nodiscard]] std::optional<PropertyListNode> readUTF16(const BinaryObject& object) {
    const auto bytes = layout_.slice(object.contents, object.length, sizeof(char16_t));
    if (!bytes) return std::nullopt;
    const auto text = utf8FromUTF16BigEndian(*bytes);
    if (!text) return std::nullopt;
    return PropertyListNode{builder_.arena().copy(*text)};
  }

  const BinaryPropertyListLayout& layout_;
  PropertyListBuilder builder_;
  std::vector<Container> containers_;
  std::vector<std::optional<PropertyListNode>> scalars_;
  std::size_t nodesLeft_;
  std::size_t offset_ = 0;
};

}  // namespace

std::expected<PropertyList, PropertyListError> parseBinaryPropertyList(std::string_view bytes) {
  if (const auto error = sizeError(bytes)) return std::unexpected(*error);
  const auto layout = BinaryPropertyListLayout::read(bytes);
  if (!layout) return std::unexpected(PropertyListError{.reason = layout.error()});
  return BinaryPropertyListReader{*layout, bytes.size()}.read();
}

}  // namespace quellin
