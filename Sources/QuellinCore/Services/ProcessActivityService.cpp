#include "QuellinCore/Services/ProcessActivityService.h"

#include <algorithm>
#include <cstddef>
#include <utility>

#include "QuellinCore/Models/ProcessActivity.h"
#include "QuellinCore/Models/ProcessSample.h"
#include "QuellinCore/Platform/ProcessSnapshot.h"

namespace quellin {
namespace {

ProcessSamples processSamplesByPID(ProcessScan& scan, ProcessNames names) {
  ProcessSamples samples;
  for (const ProcessAnswer& answer : processSnapshot(scan, names)) {
    if (!answer.usage) continue;
    std::string name = names == ProcessNames::read ? processName(answer.name, answer.pid) : std::string{};
    samples.insert_or_assign(answer.pid, processSample(answer.pid, std::move(name), *answer.usage));
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
  const ProcessSamples before = processSamplesByPID(*scan, ProcessNames::leftOut);
  if (before.empty()) return {};
  const Seconds waited = interval > shortestInterval ? interval : shortestInterval;
  clock_->sleep(waited);
  const ProcessSamples after = processSamplesByPID(*scan, ProcessNames::read);
  if (after.empty()) return {};

  auto activity = processActivity(before, after, waited);
  activity.resize(std::min(activity.size(), static_cast<std::size_t>(limit)));
  return activity;
}

}  // namespace quellin
