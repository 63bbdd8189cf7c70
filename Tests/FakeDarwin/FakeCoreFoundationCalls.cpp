#include <CoreFoundation/CoreFoundation.h>
#include <algorithm>
#include <string>

#include "FakeDarwin/CoreFoundationObjects.h"
#include "FakeDarwin/FakeDarwin.h"

namespace {

using quellin::fake::ArrayObject;
using quellin::fake::BooleanObject;
using quellin::fake::DictionaryObject;
using quellin::fake::FakeDarwin;
using quellin::fake::NumberObject;
using quellin::fake::StringObject;

std::size_t utf16Length(const std::string& text) {
  // One unit for each character, a second one for those of four bytes.
  return static_cast<std::size_t>(std::ranges::count_if(
             text, [](char byte) { return (static_cast<unsigned char>(byte) & 0xC0U) != 0x80U; })) +
         static_cast<std::size_t>(std::ranges::count_if(
             text, [](char byte) { return static_cast<unsigned char>(byte) >= 0xF0U; }));
}

void requireUTF8(CFStringEncoding encoding) {
  if (encoding != kCFStringEncodingUTF8)
    FakeDarwin::current().ledger.violation("an encoding other than UTF-8");
}

}  // namespace

extern "C" {

const CFAllocatorRef kCFAllocatorDefault = nullptr;
const CFDictionaryKeyCallBacks kCFTypeDictionaryKeyCallBacks{};
const CFDictionaryValueCallBacks kCFTypeDictionaryValueCallBacks{};

CFTypeRef CFRetain(CFTypeRef object) {
  FakeDarwin& system = FakeDarwin::current();
  system.calls.enter(__func__);
  system.objects.retain(object);
  return object;
}

void CFRelease(CFTypeRef object) {
  FakeDarwin& system = FakeDarwin::current();
  system.calls.enter(__func__);
  system.objects.release(object);
}

CFTypeID CFGetTypeID(CFTypeRef object) {
  const auto* known = FakeDarwin::current().objects.any(object);
  return known == nullptr ? 0 : known->typeID();
}

CFTypeID CFStringGetTypeID(void) { return 7; }
CFTypeID CFDictionaryGetTypeID(void) { return 18; }
CFTypeID CFArrayGetTypeID(void) { return 19; }
CFTypeID CFBooleanGetTypeID(void) { return 21; }
CFTypeID CFNumberGetTypeID(void) { return 22; }

CFStringRef CFStringCreateWithCString(CFAllocatorRef, const char* text, CFStringEncoding encoding) {
  FakeDarwin& system = FakeDarwin::current();
  requireUTF8(encoding);
  if (system.calls.enter(__func__)) return nullptr;
  return system.coreFoundation.string(text);
}

CFIndex CFStringGetLength(CFStringRef text) {
  return static_cast<CFIndex>(utf16Length(quellin::fake::textOfString(text)));
}

CFIndex CFStringGetMaximumSizeForEncoding(CFIndex length, CFStringEncoding encoding) {
  requireUTF8(encoding);
  return length * 3;
}

Boolean CFStringGetCString(CFStringRef text, char* buffer, CFIndex bufferSize, CFStringEncoding encoding) {
  requireUTF8(encoding);
  if (FakeDarwin::current().calls.enter(__func__)) return 0;
  const std::string bytes = quellin::fake::textOfString(text);
  if (static_cast<CFIndex>(bytes.size()) >= bufferSize) return 0;
  std::ranges::copy(bytes, buffer);
  buffer[bytes.size()] = '\0';
  return 1;
}

CFNumberRef CFNumberCreate(CFAllocatorRef, CFNumberType type, const void* value) {
  FakeDarwin& system = FakeDarwin::current();
  if (type != kCFNumberSInt32Type) system.ledger.violation("a number of another type than SInt32");
  if (system.calls.enter(__func__)) return nullptr;
  return system.coreFoundation.integer(*static_cast<const std::int32_t*>(value));
}

Boolean CFNumberGetValue(CFNumberRef number, CFNumberType type, void* value) {
  FakeDarwin& system = FakeDarwin::current();
  const auto failure = system.calls.enter(__func__);
  const auto* object = system.objects.as<NumberObject>(number);
  if (object == nullptr || failure) return 0;
  if (type == kCFNumberDoubleType && object->width == NumberObject::Width::real) {
    *static_cast<double*>(value) = object->real;
    return 1;
  }
  if (type != kCFNumberSInt64Type) {
    system.ledger.violation("a number read as a type that this system does not expect");
    return 0;
  }
  *static_cast<std::int64_t*>(value) = object->integer;
  return object->width == NumberObject::Width::fits64Bits ? 1 : 0;
}

Boolean CFNumberIsFloatType(CFNumberRef number) {
  const auto* object = FakeDarwin::current().objects.as<NumberObject>(number);
  return object != nullptr && object->width == NumberObject::Width::real ? 1 : 0;
}

Boolean CFBooleanGetValue(CFBooleanRef boolean) {
  const auto* object = FakeDarwin::current().objects.as<BooleanObject>(boolean);
  return object != nullptr && object->value ? 1 : 0;
}

CFIndex CFArrayGetCount(CFArrayRef array) {
  const auto* object = FakeDarwin::current().objects.as<ArrayObject>(array);
  return object == nullptr ? 0 : static_cast<CFIndex>(object->elements.size());
}

const void* CFArrayGetValueAtIndex(CFArrayRef array, CFIndex index) {
  FakeDarwin& system = FakeDarwin::current();
  const auto* object = system.objects.as<ArrayObject>(array);
  if (object == nullptr || index < 0 || index >= static_cast<CFIndex>(object->elements.size())) {
    system.ledger.violation("an index outside the array");
    return nullptr;
  }
  return object->elements[static_cast<std::size_t>(index)];
}

CFMutableDictionaryRef CFDictionaryCreateMutable(CFAllocatorRef, CFIndex capacity,
                                                 const CFDictionaryKeyCallBacks* keyCallBacks,
                                                 const CFDictionaryValueCallBacks* valueCallBacks) {
  FakeDarwin& system = FakeDarwin::current();
  if (capacity != 0) system.ledger.violation("a dictionary of limited capacity");
  if (keyCallBacks != &kCFTypeDictionaryKeyCallBacks || valueCallBacks != &kCFTypeDictionaryValueCallBacks) {
    system.ledger.violation("a dictionary that does not retain its entries");
  }
  if (system.calls.enter(__func__)) return nullptr;
  return system.coreFoundation.dictionary({});
}

void CFDictionarySetValue(CFMutableDictionaryRef dictionary, const void* key, const void* value) {
  FakeDarwin& system = FakeDarwin::current();
  auto* object = system.objects.as<DictionaryObject>(dictionary);
  if (object == nullptr) return;
  system.objects.retain(key);
  system.objects.retain(value);
  object->entries.emplace_back(key, value);
}

CFIndex CFDictionaryGetCount(CFDictionaryRef dictionary) {
  const auto* object = FakeDarwin::current().objects.as<DictionaryObject>(dictionary);
  return object == nullptr ? 0 : static_cast<CFIndex>(object->entries.size());
}

const void* CFDictionaryGetValue(CFDictionaryRef dictionary, const void* key) {
  return quellin::fake::valueNamed(dictionary, quellin::fake::textOfString(key));
}

void CFDictionaryGetKeysAndValues(CFDictionaryRef dictionary, const void** keys, const void** values) {
  const auto* object = FakeDarwin::current().objects.as<DictionaryObject>(dictionary);
  if (object == nullptr) return;
  for (const auto& [key, value] : object->entries) {
    *keys++ = key;
    *values++ = value;
  }
}

}  // extern "C"
