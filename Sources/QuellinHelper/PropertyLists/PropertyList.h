#pragma once

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>
#include <utility>

#include "QuellinCore/Support/Clock.h"
#include "QuellinHelper/PropertyLists/PropertyListArena.h"

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
  explicit PropertyListNode(std::string_view text) : kind_(Kind::string), count_(narrow(text.size())) {
    payload_.bytes = text.data();
  }
  explicit PropertyListNode(double value) : kind_(Kind::real) { payload_.real = value; }
  explicit PropertyListNode(std::int64_t value) : kind_(Kind::integer) { payload_.integer = value; }
  /// The integer `value`, of whichever kind it fits.
  explicit PropertyListNode(std::uint64_t value) {
    if (std::in_range<std::int64_t>(value)) {
      *this = PropertyListNode{static_cast<std::int64_t>(value)};
    } else {
      kind_ = Kind::largeInteger;
      payload_.largeInteger = value;
    }
  }
  // A template, because a pointer would turn into a plain bool unasked.
  template <std::same_as<bool> Boolean>
  explicit PropertyListNode(Boolean value) : kind_(Kind::boolean) {
    payload_.boolean = value;
  }
  explicit PropertyListNode(Instant value) : kind_(Kind::date) {
    payload_.real = value.time_since_epoch().count();
  }
  /// A data node that holds `bytes`.
  [[nodiscard]] static PropertyListNode ofData(std::string_view bytes) {
    PropertyListNode node{bytes};
    node.kind_ = Kind::data;
    return node;
  }

  [[nodiscard]] Kind kind() const { return kind_; }

  /// The entries of a dictionary in document order; empty for any other node.
  [[nodiscard]] std::span<const PropertyListEntry> entries() const;
  /// The elements of an array; empty for any other node.
  [[nodiscard]] std::span<const PropertyListNode> elements() const;

  /// The value, if the node is of the kind that the name says.
  [[nodiscard]] std::optional<std::string_view> string() const { return bytesIf(Kind::string); }
  [[nodiscard]] std::optional<std::string_view> data() const { return bytesIf(Kind::data); }
  [[nodiscard]] std::optional<std::int64_t> integer() const {
    return kind_ == Kind::integer ? std::optional{payload_.integer} : std::nullopt;
  }
  [[nodiscard]] std::optional<std::uint64_t> largeInteger() const {
    return kind_ == Kind::largeInteger ? std::optional{payload_.largeInteger} : std::nullopt;
  }
  [[nodiscard]] std::optional<double> real() const {
    return kind_ == Kind::real ? std::optional{payload_.real} : std::nullopt;
  }
  [[nodiscard]] std::optional<bool> boolean() const {
    return kind_ == Kind::boolean ? std::optional{payload_.boolean} : std::nullopt;
  }
  [[nodiscard]] std::optional<Instant> date() const {
    return kind_ == Kind::date ? std::optional{instantAt(payload_.real)} : std::nullopt;
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
    return kind_ == kind ? std::optional{std::string_view{payload_.bytes, count_}} : std::nullopt;
  }

  Payload payload_;
  Kind kind_ = Kind::dictionary;
  std::uint32_t count_ = 0;
};

/// One entry of a dictionary.
struct PropertyListEntry {
  std::string_view key;
  PropertyListNode value;
};

inline PropertyListNode::PropertyListNode(std::span<const PropertyListEntry> entries)
    : count_(narrow(entries.size())) {
  payload_.entries = entries.data();
}

inline PropertyListNode::PropertyListNode(std::span<const PropertyListNode> elements)
    : kind_(Kind::array), count_(narrow(elements.size())) {
  payload_.elements = elements.data();
}

inline std::span<const PropertyListEntry> PropertyListNode::entries() const {
  return kind_ == Kind::dictionary ? std::span{payload_.entries, count_}
                                   : std::span<const PropertyListEntry>{};
}

inline std::span<const PropertyListNode> PropertyListNode::elements() const {
  return kind_ == Kind::array ? std::span{payload_.elements, count_} : std::span<const PropertyListNode>{};
}

/// A parsed property list: a tree that owns its memory and no longer needs the bytes it was read from.
/// Immutable.
class PropertyList {
 public:
  /// `root` and everything below it must lie in `arena`.
  PropertyList(PropertyListArena arena, PropertyListNode root) : arena_(std::move(arena)), root_(root) {}

  [[nodiscard]] const PropertyListNode& root() const { return root_; }

 private:
  PropertyListArena arena_;
  PropertyListNode root_;
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

/// Why `bytes` are too long for any reader; absent when they are not.
[[nodiscard]] inline std::optional<PropertyListError> sizeError(std::string_view bytes) {
  return bytes.size() > maximumPropertyListSize ? std::optional{PropertyListError{.reason = "too large"}}
                                                : std::nullopt;
}

}  // namespace quellin
