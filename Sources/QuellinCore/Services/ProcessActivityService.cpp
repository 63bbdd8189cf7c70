#include "QuellinCore/Services/ProcessActivityService.h"

#include <algorithm>
#include <cstddef>
#include <utility>

#include "QuellinCore/Models/ProcessActivity.h"
#include "QuellinCore/Models/ProcessSample.h"

namespace quellin {
namespace {

// Only the later snapshot's names are ever shown, so only that one pays for reading them.
enum class Names { leftOut, read };

ProcessSamples processSamplesByPID(ProcessScan& scan, Names names) {
  ProcessSamples samples;
  for (const std::int32_t pid :
       processIDs([&](std::span<std::int32_t> ids) { return scan.listProcessIDs(ids); })) {
    if (pid < 1) continue;
    const auto usage = scan.usage(pid);
    if (!usage) continue;
    std::string name = names == Names::read ? processName(scan.name(pid), pid) : std::string{};
    samples.insert_or_assign(pid, processSample(pid, std::move(name), *usage));
  }
  return samples;
}

}  // namespace

ProcessActivityService::ProcessActivityService(std::shared_ptr<ProcessSource> source, MonotonicClock& clock)
    : source_(std::move(source)), clock_(&clock) {}

std::vector<ProcessActivityInfo> ProcessActivityService::sampleTopProcesses(int limit,
                                                                            Seconds interval) const {
  if (limit < 1) return {};
  const auto scan = source_->beginScan();
  const ProcessSamples before = processSamplesByPID(*scan, Names::leftOut);
  if (before.empty()) return {};
  const Seconds waited = interval > shortestInterval ? interval : shortestInterval;
  clock_->sleep(waited);
  const ProcessSamples after = processSamplesByPID(*scan, Names::read);
  if (after.empty()) return {};

  auto activity = processActivity(before, after, waited);
  activity.resize(std::min(activity.size(), static_cast<std::size_t>(limit)));
  return activity;
}

}  // namespace quellin
