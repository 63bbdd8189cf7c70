#pragma once

#include <optional>
#include <string>
#include <tuple>
#include <vector>

#include "QuellinCore/Sessions/Analysis/CountedEnergy.h"
#include "QuellinCore/Sessions/Analysis/SourceEnergy.h"
#include "QuellinCore/Support/JSON/Record.h"

namespace quellin {

/// How much of a session's energy is there without the work in it.
struct EnergyAboveIdle {
  std::string sourceKind;        ///< of both
  double idleWatts = 0;          ///< the average of the idle machine
  double watts = 0;              ///< how far the session's average is above that; negative when it is below
  std::optional<double> joules;  ///< the same over the session's time; absent where its energy is not known

  static constexpr auto fields() {
    return std::tuple{Field{"sourceKind", &EnergyAboveIdle::sourceKind},
                      Field{"idleWatts", &EnergyAboveIdle::idleWatts},
                      Field{"watts", &EnergyAboveIdle::watts}, Field{"joules", &EnergyAboveIdle::joules}};
  }

  bool operator==(const EnergyAboveIdle&) const = default;
};

/// What `sources` come to above `idle`, like with like: a kind that only one of the two has is left out.
[[nodiscard]] std::vector<EnergyAboveIdle> energyAboveIdle(const std::vector<SourceEnergy>& sources,
                                                           const std::vector<SourceEnergy>& idle);

/// What the counters have counted in `seconds` above `idle`, in joules; absent where the average of the idle
/// machine is.
[[nodiscard]] std::optional<double> countedJoulesAboveIdle(const CountedEnergy& energy, double seconds,
                                                           const CountedEnergy& idle);

}  // namespace quellin
