#pragma once

#include <string>
#include <utility>
#include <vector>

#include "QuellinCore/Sessions/Analysis/ComparedSession.h"

namespace quellin::testing_support {

/// A session's readings of one kind, a second apart.
inline ComparedSource comparedSource(const std::string& kind, std::vector<double> watts) {
  ComparedSource source;
  source.energy.sourceKind = kind;
  source.energy.sourceLabel = "label of " + kind;
  source.energy.confidence = kind == "ioReportSiliconPower" ? "ioReport" : "batteryTerminal";
  double sum = 0;
  for (const double reading : watts) sum += reading;
  source.energy.averageWatts = sum / static_cast<double>(watts.size());
  if (watts.size() > 1) source.energy.joules = sum;
  source.watts = std::move(watts);
  source.supply.onBattery = kind != "batteryChargeInput" && kind != "batterySupplement";
  source.supply.onCharger = !source.supply.onBattery;
  return source;
}

/// A completed session of so many seconds, sampled once a second.
inline ComparedSession comparedSession(std::vector<ComparedSource> sources, double seconds = 10) {
  ComparedSession session;
  session.session.status = "completed";
  session.session.sampleInterval = 1;
  session.seconds = seconds;
  session.sources = std::move(sources);
  return session;
}

/// A completed session that drew so much from the battery, twice.
inline ComparedSession sessionDrawing(double watts, double seconds = 10) {
  return comparedSession({comparedSource("batteryDischarge", {watts, watts})}, seconds);
}

}  // namespace quellin::testing_support
