#include "FakeDarwin/FakeCoreFoundation.h"

#include <memory>

#include "FakeDarwin/CoreFoundationObjects.h"
#include "FakeDarwin/FakeDarwin.h"

namespace quellin::fake {

CFStringRef FakeCoreFoundation::string(std::string text) {
  return static_cast<CFStringRef>(objects_.add(std::make_unique<StringObject>(std::move(text))));
}

CFNumberRef FakeCoreFoundation::integer(std::int64_t value) {
  return static_cast<CFNumberRef>(
      objects_.add(std::make_unique<NumberObject>(NumberObject::Width::fits64Bits, value, 0.0)));
}

CFNumberRef FakeCoreFoundation::real(double value) {
  return static_cast<CFNumberRef>(
      objects_.add(std::make_unique<NumberObject>(NumberObject::Width::real, 0, value)));
}

CFNumberRef FakeCoreFoundation::wideNumber(std::int64_t nearest) {
  return static_cast<CFNumberRef>(
      objects_.add(std::make_unique<NumberObject>(NumberObject::Width::wider, nearest, 0.0)));
}

CFBooleanRef FakeCoreFoundation::boolean(bool value) {
  return static_cast<CFBooleanRef>(objects_.add(std::make_unique<BooleanObject>(value)));
}

CFArrayRef FakeCoreFoundation::array(std::vector<CFTypeRef> elements) {
  return static_cast<CFArrayRef>(objects_.add(std::make_unique<ArrayObject>(std::move(elements))));
}

CFMutableDictionaryRef FakeCoreFoundation::dictionaryOfObjects(
    std::vector<std::pair<CFTypeRef, CFTypeRef>> entries) {
  auto dictionary = std::make_unique<DictionaryObject>();
  dictionary->entries = std::move(entries);
  return static_cast<CFMutableDictionaryRef>(objects_.add(std::move(dictionary)));
}

CFMutableDictionaryRef FakeCoreFoundation::dictionary(
    std::vector<std::pair<std::string, CFTypeRef>> entries) {
  std::vector<std::pair<CFTypeRef, CFTypeRef>> objects;
  objects.reserve(entries.size());
  for (auto& [key, value] : entries) objects.emplace_back(string(std::move(key)), value);
  return dictionaryOfObjects(std::move(objects));
}

CFTypeRef FakeCoreFoundation::opaque(std::string kind) {
  return objects_.add(std::make_unique<OpaqueObject>(std::move(kind)));
}

void ArrayObject::dispose() {
  for (CFTypeRef element : elements) FakeDarwin::current().objects.release(element);
}

void DictionaryObject::dispose() {
  for (const auto& [key, value] : entries) {
    FakeDarwin::current().objects.release(key);
    FakeDarwin::current().objects.release(value);
  }
}

CFTypeRef valueNamed(CFDictionaryRef dictionary, const std::string& key) {
  ObjectTable& objects = FakeDarwin::current().objects;
  const auto* object = objects.as<DictionaryObject>(dictionary);
  if (object == nullptr) return nullptr;
  for (const auto& [entryKey, value] : object->entries) {
    const auto* text = dynamic_cast<const StringObject*>(objects.any(entryKey));
    if (text != nullptr && text->text == key) return value;
  }
  return nullptr;
}

std::string textOfString(CFTypeRef string) {
  const auto* object = FakeDarwin::current().objects.as<StringObject>(string);
  return object == nullptr ? std::string{} : object->text;
}

std::int64_t valueOfNumber(CFTypeRef number) {
  const auto* object = FakeDarwin::current().objects.as<NumberObject>(number);
  return object == nullptr ? 0 : object->integer;
}

}  // namespace quellin::fake
