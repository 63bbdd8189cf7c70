#pragma once

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>
#include <utility>

#include "QuellinCore/Support/Clock.h"
#include "QuellinHelper/PropertyListArena.h"

namespace quellin {

struct PropertyListEntry;

/// One value of a property list: 16 bytes that point into the memory of their `PropertyList`, copied freely.
class PropertyListNode {
 public:
  enum class Kind : std::uint8_t {
    dictionary,
    array,
    string,
    integer,       ///< fits in a signed 64-bit integer
    largeInteger,  ///< above that, up to the largest unsigned 64-bit integer
    real,
    boolean,
    date,
    data
  };

  /// An empty dictionary.
  constexpr PropertyListNode() = default;
  explicit PropertyListNode(std::span<const PropertyListEntry> entries);
  explicit PropertyListNode(std::span<const PropertyListNode> elements);
  explicit PropertyListNode(std::string_view text) : _kind(Kind::string), _count(narrow(text.size())) {
    _payload.bytes = text.data();
  }
  explicit PropertyListNode(double value) : _kind(Kind::real) { _payload.real = value; }
  explicit PropertyListNode(std::int64_t value) : _kind(Kind::integer) { _payload.integer = value; }
  /// The integer `value`, of whichever kind it fits.
  explicit PropertyListNode(std::uint64_t value)
      : _kind(std::in_range<std::int64_t>(value) ? Kind::integer : Kind::largeInteger) {
    _payload.largeInteger = value;
  }
  // A template, because a pointer would turn into a plain bool unasked.
  template <std::same_as<bool> Boolean>
  explicit PropertyListNode(Boolean value) : _kind(Kind::boolean) {
    _payload.boolean = value;
  }
  explicit PropertyListNode(Instant value) : _kind(Kind::date) {
    _payload.real = value.time_since_epoch().count();
  }
  /// A data node that holds `bytes`.
  [[nodiscard]] static PropertyListNode ofData(std::string_view bytes) {
    PropertyListNode node{bytes};
    node._kind = Kind::data;
    return node;
  }

  [[nodiscard]] Kind kind() const { return _kind; }

  /// The entries of a dictionary in document order; empty for any other node.
  [[nodiscard]] std::span<const PropertyListEntry> entries() const;
  /// The elements of an array; empty for any other node.
  [[nodiscard]] std::span<const PropertyListNode> elements() const;

  /// The value, if the node is of the kind that the name says.
  [[nodiscard]] std::optional<std::string_view> string() const { return bytesIf(Kind::string); }
  [[nodiscard]] std::optional<std::string_view> data() const { return bytesIf(Kind::data); }
  [[nodiscard]] std::optional<std::int64_t> integer() const {
    return _kind == Kind::integer ? std::optional{_payload.integer} : std::nullopt;
  }
  [[nodiscard]] std::optional<std::uint64_t> largeInteger() const {
    return _kind == Kind::largeInteger ? std::optional{_payload.largeInteger} : std::nullopt;
  }
  [[nodiscard]] std::optional<double> real() const {
    return _kind == Kind::real ? std::optional{_payload.real} : std::nullopt;
  }
  [[nodiscard]] std::optional<bool> boolean() const {
    return _kind == Kind::boolean ? std::optional{_payload.boolean} : std::nullopt;
  }
  [[nodiscard]] std::optional<Instant> date() const {
    return _kind == Kind::date ? std::optional{instantAt(_payload.real)} : std::nullopt;
  }

 private:
  union Payload {
    const PropertyListEntry* entries = nullptr;
    const PropertyListNode* elements;
    const char* bytes;
    std::int64_t integer;
    std::uint64_t largeInteger;
    double real;
    bool boolean;
  };

  // Readers refuse input whose counts would not fit.
  [[nodiscard]] static constexpr std::uint32_t narrow(std::size_t count) {
    return static_cast<std::uint32_t>(count);
  }
  [[nodiscard]] std::optional<std::string_view> bytesIf(Kind kind) const {
    return _kind == kind ? std::optional{std::string_view{_payload.bytes, _count}} : std::nullopt;
  }

  Payload _payload;
  Kind _kind = Kind::dictionary;
  std::uint32_t _count = 0;
};

/// One entry of a dictionary.
struct PropertyListEntry {
  std::string_view key;
  PropertyListNode value;
};

inline PropertyListNode::PropertyListNode(std::span<const PropertyListEntry> entries)
    : _count(narrow(entries.size())) {
  _payload.entries = entries.data();
}

inline PropertyListNode::PropertyListNode(std::span<const PropertyListNode> elements)
    : _kind(Kind::array), _count(narrow(elements.size())) {
  _payload.elements = elements.data();
}

inline std::span<const PropertyListEntry> PropertyListNode::entries() const {
  return _kind == Kind::dictionary ? std::span{_payload.entries, _count}
                                   : std::span<const PropertyListEntry>{};
}

inline std::span<const PropertyListNode> PropertyListNode::elements() const {
  return _kind == Kind::array ? std::span{_payload.elements, _count} : std::span<const PropertyListNode>{};
}

/// A parsed property list: a tree that owns its memory and no longer needs the bytes it was read from.
/// Immutable.
class PropertyList {
 public:
  /// `root` and everything below it must lie in `arena`.
  PropertyList(PropertyListArena arena, PropertyListNode root) : _arena(std::move(arena)), _root(root) {}

  [[nodiscard]] const PropertyListNode& root() const { return _root; }

 private:
  PropertyListArena _arena;
  PropertyListNode _root;
};

/// Why bytes are no property list.
struct PropertyListError {
  std::string_view reason;
  std::size_t offset = 0;  ///< the byte near which it was noticed
};

/// The deepest nesting of arrays and dictionaries that a reader accepts.
inline constexpr std::size_t maximumPropertyListDepth = 512;
/// The longest input that a reader accepts, in bytes.
inline constexpr std::size_t maximumPropertyListSize = std::size_t{1} << 30;

}  // namespace quellin
