#include "QuellinCore/Sessions/StoredSample.h"

#include <algorithm>
#include <iterator>
#include <string>
#include <utility>

#include "QuellinCore/Sessions/PowerSessionMetrics.h"
#include "QuellinCore/Sessions/PowerSessionStore.h"
#include "QuellinCore/Sessions/TimeOrder.h"

namespace quellin {
namespace {

// No value when there is no such data, or none that can be decoded.
template <class T>
std::optional<T> decoded(const std::optional<std::string>& data, JSONDecoder& decoder) {
  if (!data) return std::nullopt;
  auto value = decoder.decode<T>(*data);
  return value ? std::optional<T>(*std::move(value)) : std::nullopt;
}

}  // namespace

StoredSample storedSample(const PowerSessionSample& sample) {
  const auto readBlobs = [&sample] {
    try {
      return sample.blobs();
    } catch (const StoreError&) {
      return SampleBlobs();
    }
  };
  return {.columns = sample.columns(), .facts = std::nullopt, .blobs = readBlobs};
}

void visitSamples(PowerSessionStore& store, const std::shared_ptr<PowerSession>& session,
                  const SampleVisitor& visit) {
  if (!store.context().hasChanges()) {
    auto cursor = store.scan(*session, SampleCursor::OnDamage::skip);
    while (cursor && cursor->next()) {
      visit(
          {.columns = cursor->columns(), .facts = cursor->facts(), .blobs = [&] { return cursor->blobs(); }});
    }
    return;
  }
  auto samples = session->samples().value_or(std::vector<std::shared_ptr<PowerSessionSample>>());
  std::ranges::stable_sort(samples, IsEarlier{}, &PowerSessionSample::timestamp);
  for (const auto& sample : samples) {
    visit({.columns = sample->columns(), .facts = std::nullopt, .blobs = [&] { return sample->blobs(); }});
  }
}

PowerSamplePoint powerPoint(const StoredSample& sample, JSONDecoder& decoder) {
  const SampleColumns& columns = sample.columns;
  if (!sample.facts) {
    return PowerSessionMetrics::storedPowerPoint(columns, sample.blobs().snapshotData, decoder);
  }
  return {.timestamp = columns.timestamp,
          .watts = columns.totalWatts,
          .sourceKind = sample.facts->powerSourceKind,
          .sourceLabel = sample.facts->powerSourceLabel,
          .acConnected = columns.acConnected,
          .batteryPercent = columns.batteryPercent};
}

ProcessData processData(const StoredSample& sample, JSONDecoder& decoder) {
  if (sample.facts) return {sample.facts->contributions, sample.facts->telemetrySampledAt};
  const SampleBlobs blobs = sample.blobs();
  ProcessData result;
  if (const auto telemetry = decoded<ProTelemetrySnapshot>(blobs.proTelemetryData, decoder)) {
    if (telemetry->isAvailable) result.telemetrySampledAt = telemetry->sampledAt;
    result.contributions = contributions(*telemetry);
  }
  if (const auto activities = decoded<std::vector<ProcessActivityDTO>>(blobs.processActivityData, decoder)) {
    std::ranges::move(contributions(*activities), std::back_inserter(result.contributions));
  }
  return result;
}

}  // namespace quellin
