#pragma once

#include <memory>
#include <vector>

#include "QuellinCore/Models/HIDTemperatureService.h"
#include "QuellinCore/Models/SourceDiagnosis.h"

namespace quellin {

/// Enumerates the temperature services that the operating system publishes without privileges.
///
/// What a host provides: one `HIDTemperatureService` per matching service, in the host's own order,
/// unfiltered: names may repeat, temperatures may be implausible, a service without a name or without an
/// event is still listed. On macOS these are the event services with "PrimaryUsagePage" 65280 and
/// "PrimaryUsage" 5, each asked for its "Product" property, its event of type 15 and that event's field
/// 0xF0000. Elsewhere: every temperature input that is readable, named by its label or, without one, by its
/// chip.
///
/// Failure: an empty list when any function that the enumeration needs is missing, when no client can be made
/// or when there are no services. One service that fails loses its own event or name, never the list.
///
/// Ownership: the list is the caller's; everything obtained from the host is released before the call
/// returns. Threading: every operation may be called from any thread, also from several at once. Nothing
/// throws.
class HIDSensorSource {
 public:
  virtual ~HIDSensorSource() = default;

  /// All temperature services with their present answers.
  [[nodiscard]] virtual std::vector<HIDTemperatureService> temperatureServices() = 0;

  /// Why `temperatureServices` gives what it gives on this machine.
  [[nodiscard]] virtual SourceDiagnosis diagnose() = 0;
};

/// The sensor source of the host that this library was built for. Never null.
[[nodiscard]] std::shared_ptr<HIDSensorSource> nativeHIDSensorSource();

}  // namespace quellin
