#include <string>
#include <utility>

#include "QuellinCore/Platform/HIDSensorSource.h"
#include "QuellinCore/Platform/ProcessSource.h"
#include "QuellinCore/Platform/ThermalSource.h"

// Sources that this host is not read for. They supply nothing and say so.
namespace quellin {
namespace {

SourceDiagnosis unread(std::string source) {
  return {.source = std::move(source),
          .availability = SourceAvailability::absent,
          .reason = "This version does not read the source on this operating system.",
          .path = std::nullopt,
          .remedy = std::nullopt};
}

class UnreadHIDSensorSource final : public HIDSensorSource {
 public:
  std::vector<HIDTemperatureService> temperatureServices() override { return {}; }
  SourceDiagnosis diagnose() override { return unread("Temperature sensors"); }
};

class UnreadThermalSource final : public ThermalSource {
 public:
  ThermalSignals read() override { return {}; }
  SourceDiagnosis diagnose() override { return unread("Thermal state"); }
};

class UnreadProcessScan final : public ProcessScan {
 public:
  std::int64_t listProcessIDs(std::span<std::int32_t>) override { return 0; }
  std::optional<ProcessUsage> usage(std::int32_t) override { return std::nullopt; }
  std::optional<std::string> name(std::int32_t) override { return std::nullopt; }
};

class UnreadProcessSource final : public ProcessSource {
 public:
  std::unique_ptr<ProcessScan> beginScan() override { return std::make_unique<UnreadProcessScan>(); }
  SourceDiagnosis diagnose() override { return unread("Processes"); }
};

}  // namespace

std::shared_ptr<HIDSensorSource> nativeHIDSensorSource() { return std::make_shared<UnreadHIDSensorSource>(); }

std::shared_ptr<ThermalSource> nativeThermalSource() { return std::make_shared<UnreadThermalSource>(); }

std::shared_ptr<ProcessSource> nativeProcessSource() { return std::make_shared<UnreadProcessSource>(); }

}  // namespace quellin
