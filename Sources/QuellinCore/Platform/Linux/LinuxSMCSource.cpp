#include "QuellinCore/Platform/Linux/LinuxSMCSource.h"

#include <algorithm>
#include <array>
#include <bit>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "QuellinCore/Models/SMCKeys.h"
#include "QuellinCore/Platform/Linux/Hwmon.h"
#include "QuellinCore/Platform/Linux/SourceReport.h"
#include "QuellinCore/Platform/VirtualSMC.h"

namespace quellin {
namespace {

constexpr const char* sourceName = SourceNames::smc;
constexpr std::size_t fansWithDistinctKeys = 10;

struct Fan {
  std::int64_t current = 0;  // revolutions per minute, like the others
  std::optional<std::int64_t> minimum;
  std::optional<std::int64_t> maximum;
};

struct FanInputs {
  std::vector<Fan> fans;
  std::optional<ReadFault> firstFault;
};

FanInputs readFans(const FileTree& sys, const std::vector<HwmonChip>& chips) {
  FanInputs result;
  for (const HwmonChip& chip : chips) {
    for (const HwmonInput& input : readHwmonInputs(sys, chip, "fan")) {
      if (input.value) {
        result.fans.push_back({.current = *input.value,
                               .minimum = valueOf(readInteger(sys, input.stem + "min")),
                               .maximum = valueOf(readInteger(sys, input.stem + "max"))});
      } else {
        noteFirstFault(result.firstFault, sys.displayPath(input.stem + "input"), input.value.error());
      }
    }
  }
  return result;
}

void setSpeed(VirtualSMC& smc, const std::string& key, std::optional<std::int64_t> rpm) {
  if (!rpm) return;
  static_assert(std::endian::native == std::endian::little, "the SMC's numbers are little-endian");
  const auto bytes = std::bit_cast<std::array<std::uint8_t, sizeof(float)>>(static_cast<float>(*rpm));
  smc.set(key, "flt ", {bytes.begin(), bytes.end()});
}

VirtualSMC virtualSMC(const std::vector<Fan>& fans) {
  VirtualSMC smc;
  const std::size_t count = std::min(fans.size(), SMCKeys::mostFans);
  smc.set(SMCKeys::fanCount, "ui8 ", {static_cast<std::uint8_t>(count)});
  for (std::size_t index = 0; index < count; ++index) {
    const auto set = [&](std::string_view speed, std::optional<std::int64_t> rpm) {
      setSpeed(smc, SMCKeys::fanSpeed(index, speed), rpm);
    };
    set(SMCKeys::currentSpeed, fans[index].current);
    if (index >= fansWithDistinctKeys) continue;
    set(SMCKeys::minimumSpeed, fans[index].minimum);
    set(SMCKeys::maximumSpeed, fans[index].maximum);
  }
  return smc;
}

std::string describe(std::size_t count) {
  if (count <= SMCKeys::mostFans)
    return std::to_string(count) + (count == 1 ? " fan is read." : " fans are read.");
  return "The first " + std::to_string(SMCKeys::mostFans) + " of " + std::to_string(count) +
         " fans are read.";
}

}  // namespace

LinuxSMCSource::LinuxSMCSource(std::shared_ptr<const FileTree> sys) : sys_(std::move(sys)) {}

std::unique_ptr<SMCConnection> LinuxSMCSource::open() {
  const auto chips = readHwmonChips(*sys_);
  if (!chips) return nullptr;
  const auto fans = readFans(*sys_, *chips).fans;
  return fans.empty() ? nullptr : virtualSMC(fans).open();
}

SourceDiagnosis LinuxSMCSource::diagnose() {
  const std::string path = sys_->displayPath(hwmonDirectory);
  const auto chips = readHwmonChips(*sys_);
  if (!chips) return unreadableSource(sourceName, {path, chips.error()}, std::nullopt);
  const auto inputs = readFans(*sys_, *chips);
  if (!inputs.fans.empty()) return availableSource(sourceName, describe(inputs.fans.size()), path);
  if (inputs.firstFault) return unreadableSource(sourceName, *inputs.firstFault, std::nullopt);
  return absentSource(sourceName, "No monitoring chip of the machine counts a fan.", path);
}

[[gnu::visibility("default")]] std::shared_ptr<SMCSource> nativeSMCSource() {
  return std::make_shared<LinuxSMCSource>();
}

}  // namespace quellin
