#include <expected>
#include <string>
#include <utility>

#include "QuellinCore/Platform/Darwin/CoreFoundationValues.h"
#include "QuellinCore/Platform/Darwin/HIDFunctions.h"
#include "QuellinCore/Platform/Darwin/SourceFault.h"
#include "QuellinCore/Platform/HIDSensorSource.h"

namespace quellin {
namespace {

using darwin::HIDFunctions;
using darwin::OwnedCF;
using darwin::OwnedLibrary;
using darwin::SourceFault;

using Services = std::expected<std::vector<HIDTemperatureService>, SourceFault>;

constexpr const char* sourceName = SourceNames::temperatureSensors;
constexpr const char* systemName = "IOHIDEventSystem";
constexpr std::int32_t vendorUsagePage = 0xFF00;
constexpr std::int32_t temperatureUsage = 5;
constexpr std::int64_t temperatureEvent = 15;
constexpr std::int32_t temperatureField = 15 << 16;

bool setNumber(CFMutableDictionaryRef dictionary, const char* name, std::int32_t value) {
  const auto key = darwin::makeString(name);
  const auto number = darwin::makeNumber(value);
  if (!key || !number) return false;
  CFDictionarySetValue(dictionary, key.get(), number.get());
  return true;
}

/// What singles the temperature services out; empty where the system cannot make it.
OwnedCF<CFMutableDictionaryRef> makeMatching() {
  auto matching = OwnedCF<CFMutableDictionaryRef>::adopt(CFDictionaryCreateMutable(
      kCFAllocatorDefault, 0, &kCFTypeDictionaryKeyCallBacks, &kCFTypeDictionaryValueCallBacks));
  if (!matching) return {};
  if (!setNumber(matching.get(), "PrimaryUsagePage", vendorUsagePage)) return {};
  if (!setNumber(matching.get(), "PrimaryUsage", temperatureUsage)) return {};
  return matching;
}

std::optional<std::string> readProduct(const HIDFunctions& functions, CFTypeRef service, CFStringRef key) {
  if (key == nullptr) return std::nullopt;
  const auto product = OwnedCF<CFTypeRef>::adopt(functions.copyProperty(service, key));
  return darwin::textOf(product.get());
}

std::optional<double> readTemperature(const HIDFunctions& functions, CFTypeRef service) {
  const auto event = OwnedCF<CFTypeRef>::adopt(functions.copyEvent(service, temperatureEvent, 0, 0));
  if (!event) return std::nullopt;
  return functions.floatValue(event.get(), temperatureField);
}

Services readServices(const HIDFunctions& functions) {
  const auto client = OwnedCF<CFTypeRef>::adopt(functions.createClient(kCFAllocatorDefault));
  if (!client) {
    return std::unexpected(darwin::failedFault("IOHIDEventSystemClientCreate", "there is no client"));
  }
  const auto matching = makeMatching();
  if (!matching) {
    return std::unexpected(darwin::failedFault("CFDictionaryCreateMutable", "there is no dictionary"));
  }
  functions.setMatching(client.get(), matching.get());
  const auto services = OwnedCF<CFArrayRef>::adopt(functions.copyServices(client.get()));
  if (!services || CFArrayGetCount(services.get()) == 0) {
    return std::unexpected(darwin::absentFault("The event system has no temperature services."));
  }

  const auto productKey = darwin::makeString("Product");
  std::vector<HIDTemperatureService> list;
  for (CFIndex index = 0; index < CFArrayGetCount(services.get()); ++index) {
    CFTypeRef service = CFArrayGetValueAtIndex(services.get(), index);
    list.push_back({.product = readProduct(functions, service, productKey.get()),
                    .temperature = readTemperature(functions, service)});
  }
  return list;
}

Services readServices() {
  const auto process = OwnedLibrary::adopt(dlopen(nullptr, RTLD_NOW));
  if (!process) {
    return std::unexpected(darwin::failedFault("dlopen", "the process has no handle to its own symbols"));
  }
  const auto functions = HIDFunctions::resolve(process);
  if (!functions) {
    return std::unexpected(
        darwin::absentFault(std::string{"The system has no function "} + functions.error() + "."));
  }
  return readServices(*functions);
}

class DarwinHIDSensorSource final : public HIDSensorSource {
 public:
  [[nodiscard]] std::vector<HIDTemperatureService> temperatureServices() override {
    return readServices().value_or(std::vector<HIDTemperatureService>{});
  }

  [[nodiscard]] SourceDiagnosis diagnose() override {
    auto services = readServices();
    if (!services) return darwin::faultDiagnosis(sourceName, std::move(services.error()), systemName);
    return availableSource(sourceName, "Temperature services: " + std::to_string(services->size()) + ".",
                           systemName);
  }
};

}  // namespace

[[gnu::visibility("default")]] std::shared_ptr<HIDSensorSource> nativeHIDSensorSource() {
  return std::make_shared<DarwinHIDSensorSource>();
}

}  // namespace quellin
