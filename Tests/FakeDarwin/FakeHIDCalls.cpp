#include <CoreFoundation/CoreFoundation.h>
#include <memory>

#include "FakeDarwin/FakeDarwin.h"

// Exported from the test executable, because the code under test finds these in its own process by name.
#define EXPORTED __attribute__((visibility("default")))

namespace {

using quellin::fake::FakeDarwin;
using quellin::fake::FakeHID;
using quellin::fake::Object;

class ClientObject final : public Object {
 public:
  [[nodiscard]] std::string kind() const override { return "HID client"; }

  std::int64_t usagePage = 0;
  std::int64_t usage = 0;
};

class ServiceObject final : public Object {
 public:
  explicit ServiceObject(FakeHID::Service description) : service(std::move(description)) {}
  [[nodiscard]] std::string kind() const override { return "HID service"; }

  FakeHID::Service service;
};

class EventObject final : public Object {
 public:
  explicit EventObject(double temperature) : value(temperature) {}
  [[nodiscard]] std::string kind() const override { return "HID event"; }

  double value;
};

std::int64_t numberNamed(CFDictionaryRef dictionary, const char* name) {
  FakeDarwin& system = FakeDarwin::current();
  CFTypeRef number = quellin::fake::valueNamed(dictionary, name);
  if (number == nullptr) {
    system.ledger.violation(std::string{"a matching dictionary without "} + name);
    return 0;
  }
  return quellin::fake::valueOfNumber(number);
}

}  // namespace

extern "C" {

EXPORTED CFTypeRef IOHIDEventSystemClientCreate(CFAllocatorRef allocator) {
  FakeDarwin& system = FakeDarwin::current();
  if (allocator != kCFAllocatorDefault) system.ledger.violation("a client from another allocator");
  if (system.calls.enter(__func__)) return nullptr;
  return system.objects.add(std::make_unique<ClientObject>());
}

EXPORTED void IOHIDEventSystemClientSetMatching(CFTypeRef client, CFDictionaryRef matching) {
  FakeDarwin& system = FakeDarwin::current();
  system.calls.enter(__func__);
  auto* object = system.objects.as<ClientObject>(client);
  if (object == nullptr) return;
  object->usagePage = numberNamed(matching, "PrimaryUsagePage");
  object->usage = numberNamed(matching, "PrimaryUsage");
}

EXPORTED CFArrayRef IOHIDEventSystemClientCopyServices(CFTypeRef client) {
  FakeDarwin& system = FakeDarwin::current();
  const auto failure = system.calls.enter(__func__);
  const auto* object = system.objects.as<ClientObject>(client);
  if (object == nullptr || failure || system.hid.services.empty()) return nullptr;
  std::vector<CFTypeRef> matched;
  for (const FakeHID::Service& service : system.hid.services) {
    if (service.usagePage != object->usagePage || service.usage != object->usage) continue;
    matched.push_back(system.objects.add(std::make_unique<ServiceObject>(service)));
  }
  return system.coreFoundation.array(std::move(matched));
}

EXPORTED CFTypeRef IOHIDServiceClientCopyProperty(CFTypeRef service, CFStringRef name) {
  FakeDarwin& system = FakeDarwin::current();
  const auto failure = system.calls.enter(__func__);
  const auto* object = system.objects.as<ServiceObject>(service);
  const bool isKnown = quellin::fake::textOfString(name) == "Product";
  if (object == nullptr || failure || !isKnown || !object->service.product) return nullptr;
  return object->service.product();
}

EXPORTED CFTypeRef IOHIDServiceClientCopyEvent(CFTypeRef service, std::int64_t type, std::int32_t options,
                                               std::int64_t timestamp) {
  FakeDarwin& system = FakeDarwin::current();
  const auto failure = system.calls.enter(__func__);
  const auto* object = system.objects.as<ServiceObject>(service);
  if (type != 15 || options != 0 || timestamp != 0) system.ledger.violation("an event of another type");
  if (object == nullptr || failure || !object->service.temperature) return nullptr;
  return system.objects.add(std::make_unique<EventObject>(*object->service.temperature));
}

EXPORTED double IOHIDEventGetFloatValue(CFTypeRef event, std::int32_t field) {
  FakeDarwin& system = FakeDarwin::current();
  system.calls.enter(__func__);
  if (field != 0xF0000) system.ledger.violation("another field of an event");
  const auto* object = system.objects.as<EventObject>(event);
  return object == nullptr ? 0.0 : object->value;
}

}  // extern "C"
