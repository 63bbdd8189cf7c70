#pragma once

#include <optional>
#include <string>
#include <tuple>
#include <vector>

#include "QuellinCore/Sessions/Analysis/CountedEnergy.h"
#include "QuellinCore/Sessions/Analysis/EnergyAboveIdle.h"
#include "QuellinCore/Sessions/Analysis/SourceEnergy.h"
#include "QuellinCore/Sessions/RecorderCost.h"
#include "QuellinCore/Sessions/SessionCoverage.h"
#include "QuellinCore/Support/UUID.h"
#include "quellin/Measuring/MeasuredCommand.h"

namespace quellin::cli {

/// What a measured stretch of time comes to.
struct SpanReport {
  UUID session;                              ///< where its readings are
  double seconds = 0;                        ///< how long it took
  std::vector<SourceEnergy> sources;         ///< by readings, each power source for itself
  std::optional<CountedEnergy> counters;     ///< absent where the counters cannot be read
  std::optional<std::string> countersPath;   ///< where those are; absent with them
  std::vector<ContributorShare> processes;   ///< that cost the most; empty where it was too short
  SessionCoverage coverage;                  ///< of the session
  std::optional<RecorderCost> recorderCost;  ///< of measuring itself

  static constexpr auto fields() {
    return std::tuple{
        Field{"session", &SpanReport::session},           Field{"seconds", &SpanReport::seconds},
        Field{"sources", &SpanReport::sources},           Field{"counters", &SpanReport::counters},
        Field{"countersPath", &SpanReport::countersPath}, Field{"processes", &SpanReport::processes},
        Field{"coverage", &SpanReport::coverage},         Field{"recorderCost", &SpanReport::recorderCost}};
  }
};

/// One run of a command.
struct CommandReport {
  std::optional<std::int64_t> exitStatus;        ///< absent when a signal ended it
  std::optional<std::int64_t> signal;            ///< absent when it exited
  std::optional<SpanReport> measured;            ///< absent when measuring failed, or others ended it
  bool isWhole = false;                          ///< whether the command did all that it was to do, measured
  std::vector<EnergyAboveIdle> aboveIdle;        ///< by readings; empty without a baseline
  std::optional<double> countedJoulesAboveIdle;  ///< by counters; absent without a baseline of them

  static constexpr auto fields() {
    return std::tuple{Field{"exitStatus", &CommandReport::exitStatus},
                      Field{"signal", &CommandReport::signal},
                      Field{"measured", &CommandReport::measured},
                      Field{"isWhole", &CommandReport::isWhole},
                      Field{"aboveIdle", &CommandReport::aboveIdle},
                      Field{"countedJoulesAboveIdle", &CommandReport::countedJoulesAboveIdle}};
  }
};

/// All that `run` did.
struct RunReport {
  std::vector<std::string> command;  ///< with its arguments
  std::optional<SpanReport> idle;    ///< the baseline, where one was asked for
  std::vector<CommandReport> runs;   ///< in their order

  static constexpr auto fields() {
    return std::tuple{Field{"command", &RunReport::command}, Field{"idle", &RunReport::idle},
                      Field{"runs", &RunReport::runs}};
  }
};

/// What a stretch of time comes to.
[[nodiscard]] SpanReport spanReport(const MeasuredSpan& span);

/// What a command took, beside the idle machine where that was measured.
[[nodiscard]] CommandReport commandReport(const MeasuredCommand& measured,
                                          const std::optional<SpanReport>& idle);

/// The stretch of time as text; `doctor` is the command that says why there are no readings, tables are cut
/// to `width` columns.
[[nodiscard]] std::string spanText(const SpanReport& report, const std::string& doctor,
                                   std::optional<std::size_t> width);

/// The run as text; `hasBaseline` tells whether the idle machine was measured.
[[nodiscard]] std::string commandText(const CommandReport& report, bool hasBaseline,
                                      const std::string& doctor, std::optional<std::size_t> width);

/// What several whole runs of the same come to together, as text; empty when none has energy.
[[nodiscard]] std::string repeatsText(const std::vector<SpanReport>& repeats,
                                      std::optional<std::size_t> width);

}  // namespace quellin::cli
