#include "QuellinCore/Platform/Recorded/TraceCapture.h"

#include <utility>

#include "QuellinCore/Models/SMCKeys.h"
#include "QuellinCore/Platform/SMCValue.h"

namespace quellin {
namespace {

std::optional<std::vector<SMCAnswer>> readSMC(SMCSource& source) {
  const auto connection = source.open();
  if (!connection) return std::nullopt;
  std::vector<SMCAnswer> answers;
  for (const std::uint32_t key : SMCKeys::all()) {
    if (auto value = readSMCValue(*connection, key)) {
      answers.push_back({.key = key, .value = *std::move(value)});
    }
  }
  return answers;
}

std::optional<EnergyAnswer> measureEnergy(EnergySource& source, MonotonicClock& clock, Seconds interval) {
  const auto measurement = source.begin();
  if (!measurement) return std::nullopt;
  clock.sleep(interval);
  return EnergyAnswer{.interval = interval, .channels = measurement->finish()};
}

ProcessAnswers measureProcesses(ProcessSource& source, MonotonicClock& clock, Seconds interval) {
  const auto scan = source.beginScan();
  ProcessAnswers answers{
      .interval = interval, .first = processSnapshot(*scan, ProcessNames::leftOut), .second = {}};
  clock.sleep(interval);
  answers.second = processSnapshot(*scan, ProcessNames::read);
  return answers;
}

}  // namespace

HostAnswers captureTick(const PlatformSources& sources, const WallClock& wallClock,
                        MonotonicClock& monotonicClock, CapturedProcesses processes,
                        CaptureIntervals intervals) {
  HostAnswers answers;
  answers.battery = sources.battery->read();
  answers.thermal = sources.thermal->read();
  answers.energy = measureEnergy(*sources.energy, monotonicClock, intervals.energy);
  answers.smc = readSMC(*sources.smc);
  answers.hid = sources.hid->temperatureServices();
  answers.wall = wallClock.now();
  answers.monotonic = monotonicClock.now();
  if (processes == CapturedProcesses::measured) {
    answers.processes = std::make_shared<const ProcessAnswers>(
        measureProcesses(*sources.processes, monotonicClock, intervals.processes));
  }
  return answers;
}

}  // namespace quellin
