#include "QuellinCore/Platform/Darwin/CoreFoundationValues.h"

#include <vector>

#include "QuellinCore/Support/CheckedArithmetic.h"

namespace quellin::darwin {
namespace {

template <class Ref>
Ref castIfOfType(CFTypeRef object, CFTypeID type) {
  if (object == nullptr || CFGetTypeID(object) != type) return nullptr;
  return static_cast<Ref>(object);
}

}  // namespace

CFStringRef asString(CFTypeRef object) { return castIfOfType<CFStringRef>(object, CFStringGetTypeID()); }
CFNumberRef asNumber(CFTypeRef object) { return castIfOfType<CFNumberRef>(object, CFNumberGetTypeID()); }
CFBooleanRef asBoolean(CFTypeRef object) { return castIfOfType<CFBooleanRef>(object, CFBooleanGetTypeID()); }
CFArrayRef asArray(CFTypeRef object) { return castIfOfType<CFArrayRef>(object, CFArrayGetTypeID()); }
CFDictionaryRef asDictionary(CFTypeRef object) {
  return castIfOfType<CFDictionaryRef>(object, CFDictionaryGetTypeID());
}

std::optional<std::string> textOf(CFTypeRef object) {
  CFStringRef string = asString(object);
  if (string == nullptr) return std::nullopt;
  const CFIndex longest = CFStringGetMaximumSizeForEncoding(CFStringGetLength(string), kCFStringEncodingUTF8);
  std::vector<char> buffer(checkedCast<std::size_t>(longest) + 1);
  const auto bufferSize = static_cast<CFIndex>(buffer.size());
  if (CFStringGetCString(string, buffer.data(), bufferSize, kCFStringEncodingUTF8) == 0) return std::nullopt;
  return buffer.data();
}

CFTypeRef elementAt(CFArrayRef array, CFIndex index) {
  if (index < 0 || index >= CFArrayGetCount(array)) return nullptr;
  return CFArrayGetValueAtIndex(array, index);
}

OwnedCF<CFStringRef> makeString(const char* text) {
  return OwnedCF<CFStringRef>::adopt(
      CFStringCreateWithCString(kCFAllocatorDefault, text, kCFStringEncodingUTF8));
}

OwnedCF<CFNumberRef> makeNumber(std::int32_t value) {
  return OwnedCF<CFNumberRef>::adopt(CFNumberCreate(kCFAllocatorDefault, kCFNumberSInt32Type, &value));
}

}  // namespace quellin::darwin
