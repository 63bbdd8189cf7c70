#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <tuple>
#include <vector>

#include "QuellinCore/Sessions/PowerSessionPowerSegment.h"
#include "QuellinCore/Sessions/PowerSessionSummary.h"
#include "QuellinCore/Support/JSON/Record.h"

namespace quellin {

/// What a session's readings of one kind come to. Readings of one kind are of one physical quantity; those of
/// different kinds are never added.
struct SourceEnergy {
  std::string sourceKind;           ///< raw value of a `PowerReadingKind`
  std::string sourceLabel;          ///< what people are told
  std::string confidence;           ///< who measured or modelled it: raw value of a `PowerReadingConfidence`
  double seconds = 0;               ///< the length of the segments that have energy
  std::int64_t readings = 0;        ///< samples with watts
  std::optional<double> joules;     ///< absent when no segment has two readings
  std::optional<double> wattHours;  ///< the same energy
  std::optional<double> averageWatts;  ///< weighted by time where time has passed
  std::optional<double> maxWatts;      ///< the highest reading

  static constexpr auto fields() {
    return std::tuple{
        Field{"sourceKind", &SourceEnergy::sourceKind}, Field{"sourceLabel", &SourceEnergy::sourceLabel},
        Field{"confidence", &SourceEnergy::confidence}, Field{"seconds", &SourceEnergy::seconds},
        Field{"readings", &SourceEnergy::readings},     Field{"joules", &SourceEnergy::joules},
        Field{"wattHours", &SourceEnergy::wattHours},   Field{"averageWatts", &SourceEnergy::averageWatts},
        Field{"maxWatts", &SourceEnergy::maxWatts}};
  }

  bool operator==(const SourceEnergy&) const = default;
};

/// What the segments of a session come to, kind by kind in the order of their first appearance. Stretches
/// without a reading are left out.
[[nodiscard]] std::vector<SourceEnergy> energyBySource(const std::vector<PowerSessionPowerSegment>& segments);

/// A process's part in what a session's processes cost.
struct ContributorShare {
  std::string name;        ///< of the process
  std::string source;      ///< who scored it
  double score = 0;        ///< without a unit
  double percent = 0;      ///< of the scores of all that are listed with the same source
  std::string confidence;  ///< "derived" or "estimated"

  static constexpr auto fields() {
    return std::tuple{Field{"name", &ContributorShare::name}, Field{"source", &ContributorShare::source},
                      Field{"score", &ContributorShare::score}, Field{"percent", &ContributorShare::percent},
                      Field{"confidence", &ContributorShare::confidence}};
  }

  bool operator==(const ContributorShare&) const = default;
};

/// The shares of a summary's contributors, in their order.
[[nodiscard]] std::vector<ContributorShare> contributorShares(
    const std::vector<PowerSessionContributor>& contributors);

}  // namespace quellin
