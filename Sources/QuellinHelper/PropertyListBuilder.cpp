#include "QuellinHelper/PropertyListBuilder.h"

#include <algorithm>

namespace quellin {

bool PropertyListBuilder::fail(std::string_view reason) {
  if (_failure.empty()) _failure = reason;
  return false;
}

bool PropertyListBuilder::canTakeValue() {
  if (!_failure.empty()) return false;
  if (_frames.empty()) return _root ? fail("more than one root") : true;
  if (_frames.back().isDictionary && _frames.back().pendingKey == noKey) return fail("value without a key");
  return true;
}

bool PropertyListBuilder::open(bool isDictionary) {
  if (!canTakeValue()) return false;
  if (_frames.size() == maximumPropertyListDepth) return fail("too many nested arrays or dictionaries");
  _frames.push_back(Frame{.firstItem = _items.size(), .isDictionary = isDictionary});
  return true;
}

bool PropertyListBuilder::close() {
  if (!_failure.empty()) return false;
  if (_frames.empty()) return fail("nothing to close");
  const Frame frame = _frames.back();
  if (frame.pendingKey != noKey) return fail("key without a value");
  const PropertyListNode value =
      frame.isDictionary ? gatherEntries(frame.firstItem) : gatherElements(frame.firstItem);
  _items.resize(frame.firstItem);
  _frames.pop_back();
  place(value);
  return true;
}

bool PropertyListBuilder::addKey(std::string_view text) {
  if (!_failure.empty()) return false;
  if (!isInDictionary()) return fail("key outside a dictionary");
  if (_frames.back().pendingKey != noKey) return fail("key without a value");
  auto known = _keyNumbers.find(text);
  if (known == _keyNumbers.end()) {
    const std::string_view kept = _arena.copy(text);
    known = _keyNumbers.emplace(kept, static_cast<std::uint32_t>(_keys.size())).first;
    _keys.push_back(Key{.text = kept});
  }
  _frames.back().pendingKey = known->second;
  return true;
}

bool PropertyListBuilder::add(PropertyListNode value) {
  if (!canTakeValue()) return false;
  place(value);
  return true;
}

void PropertyListBuilder::place(PropertyListNode value) {
  if (_frames.empty()) {
    _root = value;
    return;
  }
  _items.push_back(Item{.value = value, .key = _frames.back().pendingKey});
  _frames.back().pendingKey = noKey;
}

PropertyListNode PropertyListBuilder::gatherEntries(std::size_t firstItem) {
  ++_closedDictionaries;
  std::size_t kept = firstItem;
  for (std::size_t index = firstItem; index < _items.size(); ++index) {
    Key& key = _keys[_items[index].key];
    if (key.lastDictionary == _closedDictionaries) {
      _items[key.position].value = _items[index].value;
      continue;
    }
    key.lastDictionary = _closedDictionaries;
    key.position = kept;
    _items[kept++] = _items[index];
  }
  const auto entries = _arena.allocate<PropertyListEntry>(kept - firstItem);
  for (std::size_t index = 0; index < entries.size(); ++index) {
    const Item& item = _items[firstItem + index];
    entries[index] = {.key = _keys[item.key].text, .value = item.value};
  }
  return PropertyListNode{std::span<const PropertyListEntry>{entries}};
}

PropertyListNode PropertyListBuilder::gatherElements(std::size_t firstItem) {
  const auto elements = _arena.allocate<PropertyListNode>(_items.size() - firstItem);
  for (std::size_t index = 0; index < elements.size(); ++index) {
    elements[index] = _items[firstItem + index].value;
  }
  return PropertyListNode{std::span<const PropertyListNode>{elements}};
}

std::optional<PropertyList> PropertyListBuilder::finish() {
  if (!_failure.empty() || !_frames.empty() || !_root) return std::nullopt;
  PropertyList list{std::move(_arena), *_root};
  *this = PropertyListBuilder{};
  return list;
}

}  // namespace quellin
