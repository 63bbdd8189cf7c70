#include "QuellinHelper/HelperSurroundings.h"

#include <csignal>

#include "QuellinCore/Services/SMCService.h"
#include "QuellinHelper/PowermetricsSampler.h"

namespace quellin {
namespace {

// Whoever sent the signal is to see that it worked: the sampler took it to clear up first.
ProTelemetrySnapshot sampleUnlessInterrupted() {
  PowermetricsSampler sampler;
  ProTelemetrySnapshot snapshot = sampler.sample();
  if (const auto signal = sampler.interruption()) raise(*signal);
  return snapshot;
}

}  // namespace

HelperSurroundings HelperSurroundings::ofThisProcess() {
  HelperSurroundings result;
  result.readTemperatures = [] { return SMCService().readTemperatures(); };
  result.sampleProTelemetry = sampleUnlessInterrupted;
  return result;
}

}  // namespace quellin
