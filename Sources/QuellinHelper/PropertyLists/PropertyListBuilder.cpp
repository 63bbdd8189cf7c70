#include "QuellinHelper/PropertyLists/PropertyListBuilder.h"

#include <algorithm>

namespace quellin {

bool PropertyListBuilder::fail(std::string_view reason) {
  if (failure_.empty()) failure_ = reason;
  return false;
}

bool PropertyListBuilder::canTakeValue() {
  if (!failure_.empty()) return false;
  if (frames_.empty()) return root_ ? fail("more than one root") : true;
  if (frames_.back().isDictionary && frames_.back().pendingKey == noKey) return fail("value without a key");
  return true;
}

bool PropertyListBuilder::open(bool isDictionary) {
  if (!canTakeValue()) return false;
  if (frames_.size() == maximumPropertyListDepth) return fail("too many nested arrays or dictionaries");
  frames_.push_back(Frame{.firstItem = items_.size(), .isDictionary = isDictionary});
  return true;
}

bool PropertyListBuilder::close() {
  if (!failure_.empty()) return false;
  if (frames_.empty()) return fail("nothing to close");
  const Frame frame = frames_.back();
  if (frame.pendingKey != noKey) return fail("key without a value");
  const PropertyListNode value =
      frame.isDictionary ? gatherEntries(frame.firstItem) : gatherElements(frame.firstItem);
  items_.resize(frame.firstItem);
  frames_.pop_back();
  place(value);
  return true;
}

bool PropertyListBuilder::addKey(std::string_view text) {
  if (!failure_.empty()) return false;
  if (!isInDictionary()) return fail("key outside a dictionary");
  if (frames_.back().pendingKey != noKey) return fail("key without a value");
  auto known = keyNumbers_.find(text);
  if (known == keyNumbers_.end()) {
    const std::string_view kept = arena_.copy(text);
    known = keyNumbers_.emplace(kept, static_cast<std::uint32_t>(keys_.size())).first;
    keys_.push_back(Key{.text = kept});
  }
  frames_.back().pendingKey = known->second;
  return true;
}

bool PropertyListBuilder::add(PropertyListNode value) {
  if (!canTakeValue()) return false;
  place(value);
  return true;
}

void PropertyListBuilder::place(PropertyListNode value) {
  if (frames_.empty()) {
    root_ = value;
    return;
  }
  items_.push_back(Item{.value = value, .key = frames_.back().pendingKey});
  frames_.back().pendingKey = noKey;
}

PropertyListNode PropertyListBuilder::gatherEntries(std::size_t firstItem) {
  ++closedDictionaries_;
  std::size_t kept = firstItem;
  for (std::size_t index = firstItem; index < items_.size(); ++index) {
    Key& key = keys_[items_[index].key];
    if (key.lastDictionary == closedDictionaries_) {
      items_[key.position].value = items_[index].value;
      continue;
    }
    key.lastDictionary = closedDictionaries_;
    key.position = kept;
    items_[kept++] = items_[index];
  }
  const auto entries = arena_.allocate<PropertyListEntry>(kept - firstItem);
  for (std::size_t index = 0; index < entries.size(); ++index) {
    const Item& item = items_[firstItem + index];
    entries[index] = {.key = keys_[item.key].text, .value = item.value};
  }
  return PropertyListNode{std::span<const PropertyListEntry>{entries}};
}

PropertyListNode PropertyListBuilder::gatherElements(std::size_t firstItem) {
  const auto elements = arena_.allocate<PropertyListNode>(items_.size() - firstItem);
  for (std::size_t index = 0; index < elements.size(); ++index) {
    elements[index] = items_[firstItem + index].value;
  }
  return PropertyListNode{std::span<const PropertyListNode>{elements}};
}

std::optional<PropertyList> PropertyListBuilder::finish() {
  if (!failure_.empty() || !frames_.empty() || !root_) return std::nullopt;
  PropertyList list{std::move(arena_), *root_};
  *this = PropertyListBuilder{};
  return list;
}

}  // namespace quellin
