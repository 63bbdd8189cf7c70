#include "QuellinCore/Platform/Linux/CoolingDevice.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

#include "QuellinCore/Platform/Linux/KernelText.h"

namespace quellin {
namespace {

constexpr std::string_view entryPrefix = "cooling_device";

// The kernel's processor and frequency drivers, older and newer spellings.
constexpr std::array<std::string_view, 7> throttlingTypes = {
    "Processor", "intel_powerclamp", "cpufreq-", "thermal-cpufreq-", "devfreq-", "thermal-devfreq-", "idle-"};

std::optional<std::int64_t> stateCode(const CoolingDevice& device) {
  const std::int64_t maximum = device.maximum.value_or(0);
  if (!throttles(device) || !device.current || maximum < 1) return std::nullopt;
  const std::int64_t current = *device.current;
  if (current < 1) return 0;
  if (current >= maximum) return 3;
  return current >= maximum - current ? 2 : 1;
}

}  // namespace

std::expected<CoolingDevices, SystemError> readCoolingDevices(const FileTree& sys) {
  const auto names = classEntries(sys, thermalDirectory);
  if (!names) return std::unexpected(names.error());
  CoolingDevices result;
  const auto keep = [&](const std::string& path, auto value) {
    if (!value) noteFirstFault(result.firstFault, sys.displayPath(path), value.error());
    return valueOf(std::move(value));
  };
  for (const std::string& name : *names) {
    if (!numberWithin(name, entryPrefix, "")) continue;
    const std::string directory = std::string{thermalDirectory} + "/" + name;
    const auto number = [&](const char* file) {
      return keep(directory + file, readInteger(sys, directory + file));
    };
    auto type = keep(directory + "/type", readText(sys, directory + "/type"));
    if (type) result.devices.push_back({*std::move(type), number("/cur_state"), number("/max_state")});
  }
  return result;
}

bool throttles(const CoolingDevice& device) {
  return std::ranges::any_of(throttlingTypes,
                             [&](std::string_view type) { return device.type.starts_with(type); });
}

std::optional<std::int64_t> thermalStateCode(std::span<const CoolingDevice> devices) {
  std::optional<std::int64_t> hardest;
  for (const CoolingDevice& device : devices) hardest = std::max(hardest, stateCode(device));
  return hardest;
}

}  // namespace quellin
