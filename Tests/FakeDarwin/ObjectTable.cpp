#include "FakeDarwin/ObjectTable.h"

#include <utility>

namespace quellin::fake {

void* ObjectTable::add(std::unique_ptr<Object> object) {
  void* const reference = object.get();
  entries_.emplace(reference, Entry{.object = std::move(object), .references = 1});
  return reference;
}

void ObjectTable::retain(CFTypeRef reference) {
  if (Entry* entry = live(reference, "retained")) ++entry->references;
}

void ObjectTable::release(CFTypeRef reference) {
  Entry* entry = live(reference, "released");
  if (entry != nullptr && --entry->references == 0) entry->object->dispose();
}

Object* ObjectTable::any(CFTypeRef reference) {
  Entry* entry = live(reference, "used");
  return entry == nullptr ? nullptr : entry->object.get();
}

int ObjectTable::references(CFTypeRef reference) const {
  const auto found = entries_.find(reference);
  return found == entries_.end() ? 0 : found->second.references;
}

std::vector<std::string> ObjectTable::leaks() const {
  std::vector<std::string> leaked;
  for (const auto& [reference, entry] : entries_) {
    if (entry.references > 0) {
      leaked.push_back(entry.object->kind() + " with " + std::to_string(entry.references) + " references");
    }
  }
  return leaked;
}

ObjectTable::Entry* ObjectTable::live(CFTypeRef reference, const std::string& verb) {
  const auto found = entries_.find(reference);
  if (found == entries_.end()) {
    ledger_.violation("no object " + verb);
    return nullptr;
  }
  if (found->second.references == 0) {
    ledger_.violation(found->second.object->kind() + " " + verb + " after its last release");
    return nullptr;
  }
  return &found->second;
}

}  // namespace quellin::fake
