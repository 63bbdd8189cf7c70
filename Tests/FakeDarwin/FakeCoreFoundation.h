#pragma once

#include <CoreFoundation/CoreFoundation.h>
#include <cstdint>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "FakeDarwin/ObjectTable.h"

namespace quellin::fake {

/// Makes an object and gives its only reference to the caller.
using ObjectMaker = std::function<CFTypeRef()>;

/// Makes CoreFoundation objects for tests. Every result has one reference, which is the caller's; a
/// collection takes over the references of what it is made of.
class FakeCoreFoundation {
 public:
  explicit FakeCoreFoundation(ObjectTable& objects) : objects_(objects) {}

  CFStringRef string(std::string text);
  CFNumberRef integer(std::int64_t value);
  CFNumberRef real(double value);
  /// A whole number too wide for 64 bits; reading it as such stores `nearest` and says that it did not fit.
  CFNumberRef wideNumber(std::int64_t nearest);
  CFBooleanRef boolean(bool value);
  CFArrayRef array(std::vector<CFTypeRef> elements);
  CFMutableDictionaryRef dictionary(std::vector<std::pair<std::string, CFTypeRef>> entries);
  CFMutableDictionaryRef dictionaryOfObjects(std::vector<std::pair<CFTypeRef, CFTypeRef>> entries);
  /// An object of no kind that the code under test knows.
  CFTypeRef opaque(std::string kind);

 private:
  ObjectTable& objects_;
};

/// The value under `key` in a dictionary, borrowed; null when there is none.
[[nodiscard]] CFTypeRef valueNamed(CFDictionaryRef dictionary, const std::string& key);

/// The bytes of a string object; "" and a noted misuse for another kind of object.
[[nodiscard]] std::string textOfString(CFTypeRef string);

/// The value of a number that was made as an integer; 0 and a noted misuse for another kind of object.
[[nodiscard]] std::int64_t valueOfNumber(CFTypeRef number);

}  // namespace quellin::fake
