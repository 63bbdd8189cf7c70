#include "QuellinCore/Platform/Linux/LinuxHIDSensorSource.h"

#include <optional>
#include <string>
#include <utility>

#include "QuellinCore/Platform/Linux/Hwmon.h"
#include "QuellinCore/Platform/Linux/SourceReport.h"

namespace quellin {
namespace {

constexpr const char* sourceName = SourceNames::temperatureSensors;
constexpr double millidegreesPerDegree = 1000;

std::optional<std::string> nonEmpty(std::optional<std::string> text) {
  return text && !text->empty() ? std::move(text) : std::nullopt;
}

std::optional<std::string> inputName(const FileTree& sys, const HwmonChip& chip, const HwmonInput& input) {
  auto label = nonEmpty(valueOf(readText(sys, input.stem + "label")));
  return label ? label : nonEmpty(chip.name);
}

// An unconnected sensor gives a plausible value and says only here that it means nothing.
bool isFaulty(const FileTree& sys, const HwmonInput& input) {
  return readInteger(sys, input.stem + "fault") == 1;
}

struct TemperatureInputs {
  std::vector<HIDTemperatureService> services;
  std::optional<ReadFault> firstFault;
};

TemperatureInputs readTemperatureInputs(const FileTree& sys, const std::vector<HwmonChip>& chips) {
  TemperatureInputs result;
  for (const HwmonChip& chip : chips) {
    for (const HwmonInput& input : readHwmonInputs(sys, chip, "temp")) {
      if (!input.value) {
        noteFirstFault(result.firstFault, sys.displayPath(input.stem + "input"), input.value.error());
      } else if (!isFaulty(sys, input)) {
        const double degrees = static_cast<double>(*input.value) / millidegreesPerDegree;
        result.services.push_back({.product = inputName(sys, chip, input), .temperature = degrees});
      }
    }
  }
  return result;
}

std::string describe(std::size_t count) {
  return std::to_string(count) +
         (count == 1 ? " temperature input is read." : " temperature inputs are read.");
}

}  // namespace

LinuxHIDSensorSource::LinuxHIDSensorSource(std::shared_ptr<const FileTree> sys) : sys_(std::move(sys)) {}

std::vector<HIDTemperatureService> LinuxHIDSensorSource::temperatureServices() {
  const auto chips = readHwmonChips(*sys_);
  if (!chips) return {};
  return readTemperatureInputs(*sys_, *chips).services;
}

SourceDiagnosis LinuxHIDSensorSource::diagnose() {
  const std::string path = sys_->displayPath(hwmonDirectory);
  const auto chips = readHwmonChips(*sys_);
  if (!chips) return unreadableSource(sourceName, {path, chips.error()}, std::nullopt);
  const auto inputs = readTemperatureInputs(*sys_, *chips);
  if (!inputs.services.empty()) {
    return availableSource(sourceName, describe(inputs.services.size()), path);
  }
  if (inputs.firstFault) return unreadableSource(sourceName, *inputs.firstFault, std::nullopt);
  return absentSource(sourceName,
                      "No monitoring chip of the machine has a temperature input that is switched on.", path);
}

[[gnu::visibility("default")]] std::shared_ptr<HIDSensorSource> nativeHIDSensorSource() {
  return std::make_shared<LinuxHIDSensorSource>();
}

}  // namespace quellin
