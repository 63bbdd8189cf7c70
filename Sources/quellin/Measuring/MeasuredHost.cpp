#include "quellin/Measuring/MeasuredHost.h"

#include <algorithm>
#include <expected>
#include <filesystem>
#include <utility>

#include "QuellinCore/Platform/Recorded/RecordedSources.h"
#include "QuellinCore/Services/ProcessActivityService.h"
#include "quellin/CommandLine/Hint.h"
#include "quellin/Measuring/HostTree.h"
#include "quellin/Outcome/Failure.h"

namespace quellin::cli {
namespace {

std::expected<std::shared_ptr<TracePlayer>, TraceError> playerOf(const Options& options,
                                                                 std::size_t skippedTicks) {
  auto reader = TraceReader::open(options.source);
  if (!reader) return std::unexpected(reader.error());
  for (std::size_t tick = 0; tick < skippedTicks; ++tick) {
    if (const auto skipped = reader->next(); !skipped) return std::unexpected(skipped.error());
  }
  return TracePlayer::over(*std::move(reader), options.speed);
}

MeasuredHost replay(const Options& options, std::size_t skippedTicks) {
  const auto player = playerOf(options, skippedTicks);
  if (!player) throw Failure{ExitStatus::failed, player.error().message()};
  return {.sources = recordedSources(*player),
          .player = *player,
          .isNative = false,
          .monotonicClock = &(*player)->monotonicClock(),
          .wallClock = &(*player)->wallClock()};
}

}  // namespace

MeasuredHost MeasuredHost::open(const Options& options, std::size_t skippedTicks) {
  if (options.source == nativeSource) {
    return {.sources = PlatformSources::native(), .player = nullptr, .isNative = true};
  }
  if (std::filesystem::is_directory(options.source)) {
    return {.sources = hostTree(options.source), .player = nullptr, .isNative = false};
  }
  return replay(options, skippedTicks);
}

MeasuredHost MeasuredHost::openMeasurable(const Options& options) {
  MeasuredHost host = open(options);
  if (anyAvailable(host.sources.diagnose())) return host;
  throw Failure{ExitStatus::nothingMeasurable,
                "nothing can be measured here. " + hintAtDoctor(options) + " says why and what would help."};
}

Seconds MeasuredHost::interval(Seconds asked) const {
  const auto captured = player ? player->interval() : std::nullopt;
  return captured ? nominalInterval(*captured) : asked;
}

SystemReader MeasuredHost::reader() const {
  // The installed tool speaks of this machine and of no other.
  auto helper = isNative ? PrivilegedSMCHelperService{} : PrivilegedSMCHelperService{""};
  return SystemReader::over(sources, std::move(helper), *monotonicClock, *wallClock);
}

std::vector<ProcessActivityInfo> MeasuredHost::topProcesses(int limit, Seconds interval) const {
  return ProcessActivityService{sources.processes, *monotonicClock}.sampleTopProcesses(limit, interval);
}

std::string measuredName(const Options& options) {
  return options.source == nativeSource ? "this machine" : options.source;
}

bool anyAvailable(const std::vector<SourceDiagnosis>& sources) {
  return std::ranges::find(sources, SourceAvailability::available, &SourceDiagnosis::availability) !=
         sources.end();
}

}  // namespace quellin::cli
