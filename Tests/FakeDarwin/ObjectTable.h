#pragma once

#include <CoreFoundation/CoreFoundation.h>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "FakeDarwin/Ledger.h"

namespace quellin::fake {

/// A CoreFoundation object. Each kind of object is a class derived from it, next to the C functions of its
/// area.
class Object {
 public:
  Object() = default;
  Object(const Object&) = delete;
  Object& operator=(const Object&) = delete;
  virtual ~Object() = default;

  /// The kind, as leaks and misuses name it.
  [[nodiscard]] virtual std::string kind() const = 0;

  /// The kind, as code can ask for it; 1 for every kind that no code needs to tell apart.
  [[nodiscard]] virtual CFTypeID typeID() const { return 1; }

  /// Called when the last reference is gone: gives back the references that the object holds.
  virtual void dispose() {}
};

/// Every CoreFoundation object of a test with its reference count. Released objects are kept until the test
/// ends, so that using one is a noted misuse and not undefined.
class ObjectTable {
 public:
  explicit ObjectTable(Ledger& ledger) : ledger_(ledger) {}

  /// Takes in a new object with one reference, which goes to the caller.
  void* add(std::unique_ptr<Object> object);

  void retain(CFTypeRef reference);
  void release(CFTypeRef reference);

  /// The live object behind a reference as a `Kind`; null, and a noted misuse, when it is anything else.
  template <class Kind>
  Kind* as(CFTypeRef reference) {
    Entry* entry = live(reference, "used");
    if (entry == nullptr) return nullptr;
    auto* object = dynamic_cast<Kind*>(entry->object.get());
    if (object == nullptr) ledger_.violation(entry->object->kind() + " taken for another kind of object");
    return object;
  }

  /// The live object behind a reference, of any kind; null, and a noted misuse, when there is none.
  Object* any(CFTypeRef reference);

  /// The references to an object; 0 once it is gone.
  [[nodiscard]] int references(CFTypeRef reference) const;

  /// The objects that still have references.
  [[nodiscard]] std::vector<std::string> leaks() const;

 private:
  struct Entry {
    std::unique_ptr<Object> object;
    int references = 0;
  };

  Entry* live(CFTypeRef reference, const std::string& verb);

  Ledger& ledger_;
  std::map<CFTypeRef, Entry> entries_;
};

}  // namespace quellin::fake
