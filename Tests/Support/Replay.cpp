#include "Support/Replay.h"

#include <stdexcept>

#include "QuellinCore/Services/ProcessActivityService.h"
#include "QuellinCore/Services/SystemReader.h"

namespace quellin::testing_support {

Reading readEverything(const PlatformSources& sources, MonotonicClock& monotonicClock,
                       const WallClock& wallClock) {
  constexpr int limit = 100;
  const SystemReader reader =
      SystemReader::over(sources, PrivilegedSMCHelperService{""}, monotonicClock, wallClock);
  const ProcessActivityService processes{sources.processes, monotonicClock};
  Reading reading;
  reading.state = reader.readAll();
  reading.activity = processes.sampleTopProcesses(limit, CaptureIntervals{}.processes);
  return reading;
}

Reading readEverything(const std::shared_ptr<TracePlayer>& player) {
  return readEverything(recordedSources(player), player->monotonicClock(), player->wallClock());
}

std::shared_ptr<TracePlayer> captureAndOpen(const std::string& path, const PlatformSources& sources,
                                            MonotonicClock& monotonicClock, const WallClock& wallClock,
                                            SerialNumbers serialNumbers, int ticks) {
  auto writer = TraceWriter::create(path, traceHeader(sources, wallClock, serialNumbers));
  if (!writer) throw std::runtime_error(writer.error().message());
  for (int tick = 0; tick < ticks; ++tick) {
    const auto written = writer->write(captureTick(sources, wallClock, monotonicClock));
    if (!written) throw std::runtime_error(written.error().message());
  }
  auto player = TracePlayer::open(path);
  if (!player) throw std::runtime_error(player.error().message());
  return *std::move(player);
}

std::string exampleTrace() { return QUELLIN_EXAMPLES "/macbook.trace.jsonl"; }

}  // namespace quellin::testing_support
