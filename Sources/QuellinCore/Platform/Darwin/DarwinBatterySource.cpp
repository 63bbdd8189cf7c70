#include <IOKit/ps/IOPowerSources.h>
#include <expected>
#include <string>
#include <tuple>
#include <utility>

#include "QuellinCore/Platform/BatterySource.h"
#include "QuellinCore/Platform/Darwin/BatteryTemperature.h"
#include "QuellinCore/Platform/Darwin/CoreFoundationValues.h"
#include "QuellinCore/Platform/Darwin/IOKitHandles.h"
#include "QuellinCore/Platform/Darwin/PropertyConversion.h"
#include "QuellinCore/Platform/Darwin/SourceFault.h"

namespace quellin {
namespace {

using darwin::OwnedCF;
using darwin::OwnedIOObject;
using darwin::SourceFault;

using Table = std::expected<PropertyTable, SourceFault>;

constexpr const char* sourceName = SourceNames::battery;
constexpr const char* entryName = "AppleSmartBattery";

std::unexpected<SourceFault> absent(std::string reason) {
  return std::unexpected(darwin::absentFault(std::move(reason)));
}

Table readRegistry() {
  // The lookup consumes the dictionary, whatever it finds, and accepts none.
  const auto entry =
      OwnedIOObject::adopt(IOServiceGetMatchingService(kIOMainPortDefault, IOServiceNameMatching(entryName)));
  if (!entry) return absent("The registry has no such entry.");
  OwnedCF<CFMutableDictionaryRef> properties;
  const kern_return_t code =
      IORegistryEntryCreateCFProperties(entry.get(), properties.outParameter(), kCFAllocatorDefault, 0);
  if (code != KERN_SUCCESS) {
    // What a failing call leaves in the place for the properties is not ours to release.
    std::ignore = properties.release();
    return std::unexpected(darwin::kernelFault("IORegistryEntryCreateCFProperties", code));
  }
  CFDictionaryRef dictionary = darwin::asDictionary(properties.get());
  if (dictionary == nullptr) return absent("The registry entry has no table of properties.");
  PropertyTable table = darwin::propertyTable(dictionary);
  darwin::convertTemperature(table);
  return table;
}

Table readPowerSource() {
  const auto info = OwnedCF<CFTypeRef>::adopt(IOPSCopyPowerSourcesInfo());
  if (!info) return absent("The system does not describe its power sources.");
  // The description below belongs to this list.
  const auto list = OwnedCF<CFArrayRef>::adopt(IOPSCopyPowerSourcesList(info.get()));
  CFTypeRef first = list ? darwin::elementAt(list.get(), 0) : nullptr;
  if (first == nullptr) return absent("The list of power sources is empty.");
  CFDictionaryRef description = darwin::asDictionary(IOPSGetPowerSourceDescription(info.get(), first));
  if (description == nullptr) return absent("The first power source has no description.");
  return darwin::propertyTable(description);
}

std::optional<PropertyTable> valueOf(Table table) {
  if (!table) return std::nullopt;
  return *std::move(table);
}

class DarwinBatterySource final : public BatterySource {
 public:
  [[nodiscard]] BatteryTables read() override {
    return {.registry = valueOf(readRegistry()), .powerSource = valueOf(readPowerSource())};
  }

  [[nodiscard]] SourceDiagnosis diagnose() override {
    auto registry = readRegistry();
    auto powerSource = readPowerSource();
    if (registry && powerSource) {
      return availableSource(sourceName, "The registry entry and the list of power sources can be read.",
                             entryName);
    }
    if (registry) {
      return availableSource(sourceName, "Only the registry entry can be read. " + powerSource.error().reason,
                             entryName);
    }
    if (powerSource) {
      return availableSource(
          sourceName, "Only the list of power sources can be read. " + registry.error().reason, entryName);
    }
    return darwin::faultDiagnosis(sourceName, std::move(registry.error()), entryName);
  }
};

}  // namespace

[[gnu::visibility("default")]] std::shared_ptr<BatterySource> nativeBatterySource() {
  return std::make_shared<DarwinBatterySource>();
}

}  // namespace quellin
