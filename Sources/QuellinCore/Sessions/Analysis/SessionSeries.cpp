#include "QuellinCore/Sessions/Analysis/SessionSeries.h"

#include <algorithm>
#include <iterator>

#include "QuellinCore/Models/PowerReadingRules.h"
#include "QuellinCore/Sessions/WattStatistics.h"
#include "QuellinCore/Support/RawValue.h"

namespace quellin {
namespace {

SeriesSource sourceOf(const PowerSamplePoint& point) {
  SeriesSource source{.kind = point.sourceKind, .label = point.sourceLabel, .summary = {}, .confidence = {}};
  if (const auto kind = fromRawValue<PowerReadingKind>(point.sourceKind)) {
    source.summary = powerReadingTexts(*kind).summary;
    source.confidence = rawValue(powerReadingConfidence(*kind));
  }
  return source;
}

}  // namespace

SeriesBuilder::SeriesBuilder(Instant startedAt) : startedAt_(startedAt) {
  series_.startedAt = startedAt.time_since_epoch().count();
}

void SeriesBuilder::ingest(const PowerSamplePoint& point, const SampleColumns& columns) {
  const auto index = std::ssize(series_.seconds);
  series_.seconds.push_back(elapsedSeconds(startedAt_, point.timestamp));
  series_.source.push_back(sourceIndex(point));
  series_.watts.add(index, point.watts);
  series_.batteryPercent.add(index, point.batteryPercent);
  series_.maxTemperature.add(index, columns.maxTemperature);
  series_.maxFanRPM.add(index, columns.maxFanRPM);
  series_.thermalPressure.push_back(columns.thermalPressure);
}

std::int64_t SeriesBuilder::sourceIndex(const PowerSamplePoint& point) {
  auto& sources = series_.sources;
  const auto known = std::ranges::find_if(sources, [&](const SeriesSource& source) {
    return source.kind == point.sourceKind && source.label == point.sourceLabel;
  });
  const auto index = known - sources.begin();
  if (known == sources.end()) sources.push_back(sourceOf(point));
  return index;
}

}  // namespace quellin
