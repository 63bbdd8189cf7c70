#include "QuellinCore/Platform/Recorded/TraceLimits.h"

#include <algorithm>
#include <span>

#include "QuellinCore/Models/BatteryRules.h"
#include "QuellinCore/Models/EnergyDelta.h"
#include "QuellinCore/Models/ProcessSample.h"
#include "QuellinCore/Models/SMCDecoding.h"
#include "QuellinCore/Models/SMCKeys.h"
#include "QuellinCore/Models/ThermalInfo.h"
#include "QuellinCore/Platform/Recorded/TraceText.h"
#include "QuellinCore/Support/ISO8601.h"

namespace quellin {
namespace {

using Fault = std::optional<std::string>;

// The first instant of the year 1.
constexpr Instant firstWallTime = instantAt(-62'135'596'800);

// More than three thousand years; with longer waits the arithmetic of clocks and timers ends.
constexpr double longestTime = 1e11;

Fault wallTimeFault(const char* key, double seconds) {
  const Instant instant = instantAt(seconds);
  if (instant >= firstWallTime && instant < yearTenThousand) return std::nullopt;
  return "\"" + std::string{key} + "\" lies outside of the years 1 to 9999";
}

Fault timeFault(const char* key, Seconds time) {
  if (time.count() >= 0 && time.count() <= longestTime) return std::nullopt;
  return "\"" + std::string{key} + "\" lies outside of 0 to 100000000000 seconds";
}

Fault smcFault(std::span<const SMCAnswer> answers) {
  for (const SMCAnswer& answer : answers) {
    if (SMCDecoding::canDecodeFanRPM(answer.value.dataType, answer.value.bytes)) continue;
    if (!SMCKeys::fanSpeeds().contains(answer.key)) continue;
    return "the fan speed of the key \"" + codeText(answer.key) + "\" is no number of 64 bits";
  }
  return std::nullopt;
}

Fault energyFault(const EnergyAnswer& energy) {
  if (auto fault = timeFault("energy.seconds", energy.interval)) return fault;
  if (!energy.channels || isWithinRange(*energy.channels)) return std::nullopt;
  return "the gains of \"energy.channels\" are too large to be added up";
}

Fault processesFault(const ProcessAnswers& processes) {
  if (auto fault = timeFault("processes.seconds", processes.interval)) return fault;
  for (const auto* snapshot : {&processes.first, &processes.second}) {
    const auto isTooLarge = [](const ProcessAnswer& process) {
      return process.usage && !isWithinRange(*process.usage);
    };
    const auto found = std::ranges::find_if(*snapshot, isTooLarge);
    if (found != snapshot->end()) {
      return "process " + std::to_string(found->pid) + " has a counter above 9223372036854775807";
    }
  }
  return std::nullopt;
}

}  // namespace

std::optional<std::string> numberFault(const HostAnswers& answers) {
  if (auto fault = wallTimeFault("wall", answers.wall.time_since_epoch().count())) return fault;
  if (auto fault = timeFault("monotonic", answers.monotonic)) return fault;
  if (answers.smc) {
    if (auto fault = smcFault(*answers.smc)) return fault;
  }
  if (!isWithinRange(answers.battery)) return "a capacity or a remaining time of \"battery\" is too large";
  if (answers.energy) {
    if (auto fault = energyFault(*answers.energy)) return fault;
  }
  if (!isWithinRange(answers.thermal)) return "\"thermal.pressureState\" is above 9223372036854775807";
  return answers.processes ? processesFault(*answers.processes) : std::nullopt;
}

std::optional<std::string> numberFault(const TraceHeader& header) {
  return wallTimeFault("createdAt", header.createdAt);
}

}  // namespace quellin
