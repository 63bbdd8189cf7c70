#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "QuellinHelper/PropertyLists/PropertyList.h"

namespace quellin {

/// Puts a property list together from the events of a reader, in document order, and holds the rules that
/// both encodings share: the depth limit, one root, keys and values in turn, and that a repeated key keeps
/// its first position and its last value. Once an operation has returned false the builder stays failed.
class PropertyListBuilder {
 public:
  bool openDictionary() { return open(true); }
  bool openArray() { return open(false); }
  /// Ends the innermost open dictionary or array.
  bool close();
  /// The key of the next value; the text is copied.
  bool addKey(std::string_view text);
  /// A value that is no container. What it points to must lie in `arena()`.
  bool add(PropertyListNode value);

  /// The memory of the list being built.
  [[nodiscard]] PropertyListArena& arena() { return arena_; }
  /// Whether the innermost open container is a dictionary.
  [[nodiscard]] bool isInDictionary() const { return !frames_.empty() && frames_.back().isDictionary; }
  [[nodiscard]] bool hasRoot() const { return root_.has_value(); }
  /// The first failure; empty while there is none.
  [[nodiscard]] std::string_view failure() const { return failure_; }
  bool fail(std::string_view reason);

  /// The finished list; no value unless there is exactly one root and all is closed. Leaves the builder
  /// empty.
  [[nodiscard]] std::optional<PropertyList> finish();

 private:
  static constexpr std::uint32_t noKey = UINT32_MAX;

  struct Frame {
    std::size_t firstItem = 0;
    std::uint32_t pendingKey = noKey;
    bool isDictionary = false;
  };
  struct Item {
    PropertyListNode value;
    std::uint32_t key = noKey;
  };
  struct Key {
    std::string_view text;
    std::uint64_t lastDictionary = 0;  // the closing that saw this key last, counted from 1
    std::size_t position = 0;          // and the entry it has there
  };

  bool open(bool isDictionary);
  bool canTakeValue();
  void place(PropertyListNode value);
  [[nodiscard]] PropertyListNode gatherEntries(std::size_t firstItem);
  [[nodiscard]] PropertyListNode gatherElements(std::size_t firstItem);

  PropertyListArena arena_;
  std::vector<Frame> frames_;
  std::vector<Item> items_;  // the values of all open containers, innermost last
  std::vector<Key> keys_;    // each spelling once
  std::unordered_map<std::string_view, std::uint32_t> keyNumbers_;
  std::uint64_t closedDictionaries_ = 0;
  std::optional<PropertyListNode> root_;
  std::string_view failure_;
};

}  // namespace quellin
