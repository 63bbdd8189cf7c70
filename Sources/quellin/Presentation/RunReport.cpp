#include "quellin/Presentation/RunReport.h"

#include <algorithm>

#include "QuellinCore/Models/PowerReadingRules.h"
#include "QuellinCore/Platform/ProcessSource.h"
#include "QuellinCore/Sessions/Analysis/EnergyOverRuns.h"
#include "quellin/Presentation/FigureText.h"
#include "quellin/Presentation/SessionText.h"
#include "quellin/Presentation/Table.h"
#include "quellin/Terminal/PlainText.h"

namespace quellin::cli {
namespace {

std::string energyText(double joules, double wattHours) {
  return decimal(joules, 2) + " J (" + decimal(wattHours, 3) + " Wh)";
}

std::string timeText(double seconds) {
  std::string text = decimal(seconds, 3) + " s";
  if (seconds >= 60) text += " (" + durationText(Seconds{seconds}) + ")";
  return text;
}

std::string countersText(const CountedEnergy& counters, const std::optional<std::string>& path) {
  return energyText(counters.joules, counters.wattHours) + ", " + decimal(counters.averageWatts, 2) +
         " W on average; " + std::string{powerReadingTexts(countedReadingKind).label} + " (" +
         counters.confidence + "), counted over exactly this time" + (path ? " by " + *path : "");
}

// What the first figure is stands before and behind it; up to the confidence it fits into 80 columns.
std::string sourceTable(const std::vector<SourceEnergy>& sources, std::optional<std::size_t> width) {
  Table table{{{"Source", Alignment::left, true},
               {"Joules", Alignment::right},
               {"Kind"},
               {"Avg W", Alignment::right},
               {"Seconds", Alignment::right},
               {"Confidence"},
               {"Wh", Alignment::right},
               {"Max W", Alignment::right},
               {"Readings", Alignment::right}}};
  for (const SourceEnergy& source : sources) {
    table.add({source.sourceLabel, decimal(source.joules, 2), source.sourceKind,
               decimal(source.averageWatts, 2), decimal(source.seconds, 3), source.confidence,
               decimal(source.wattHours, 3), decimal(source.maxWatts, 2), whole(source.readings)});
  }
  return table.text(width);
}

std::string aboveIdleTable(const CommandReport& report, std::optional<std::size_t> width) {
  Table table{{{"Above idle", Alignment::left, true},
               {"Joules", Alignment::right},
               {"Avg W", Alignment::right},
               {"Idle W", Alignment::right},
               {"Confidence"}}};
  for (const SourceEnergy& source : report.measured->sources) {
    const auto above = std::ranges::find(report.aboveIdle, source.sourceKind, &EnergyAboveIdle::sourceKind);
    if (above == report.aboveIdle.end()) {
      table.add({source.sourceLabel, unknown, unknown, "no idle reading", source.confidence});
    } else {
      table.add({source.sourceLabel, decimal(above->joules, 2), decimal(above->watts, 2),
                 decimal(above->idleWatts, 2), source.confidence});
    }
  }
  return table.text(width);
}

std::string processShareTable(const std::vector<ContributorShare>& processes,
                              std::optional<std::size_t> width) {
  Table table{{{"Process", Alignment::left, true},
               {"% of scores", Alignment::right},
               {"Score", Alignment::right},
               {"Source"},
               {"Confidence"}}};
  for (const ContributorShare& process : processes) {
    table.add({process.name, decimal(process.percent, 1), decimal(process.score, 1), process.source,
               process.confidence});
  }
  return table.text(width);
}

}  // namespace

SpanReport spanReport(const MeasuredSpan& span) {
  const SessionReport& session = span.report;
  SpanReport report{.session = session.session.id,
                    .seconds = span.seconds,
                    .sources = energyBySource(session.summary.powerSegments),
                    .counters = std::nullopt,
                    .countersPath = std::nullopt,
                    .processes = {},
                    .coverage = session.coverage,
                    .recorderCost = session.recorderCost};
  // What was measured of a shorter span's processes is mostly of the time behind it.
  if (span.seconds >= processMeasurementInterval.count())
    report.processes = contributorShares(session.summary.topContributors);
  report.countersPath = span.countersPath;
  if (span.counters) report.counters = countedEnergy(*span.counters, span.seconds);
  return report;
}

CommandReport commandReport(const MeasuredCommand& measured, const std::optional<SpanReport>& idle) {
  CommandReport report{.exitStatus = measured.end.exitStatus,
                       .signal = measured.end.signal,
                       .measured = std::nullopt,
                       .isWhole = measured.isWhole && measured.span,
                       .aboveIdle = {},
                       .countedJoulesAboveIdle = std::nullopt};
  if (!measured.span) return report;
  report.measured = spanReport(*measured.span);
  if (!idle) return report;
  report.aboveIdle = energyAboveIdle(report.measured->sources, idle->sources);
  if (report.measured->counters && idle->counters) {
    report.countedJoulesAboveIdle =
        countedJoulesAboveIdle(*report.measured->counters, report.measured->seconds, *idle->counters);
  }
  return report;
}

std::string spanText(const SpanReport& report, const std::string& doctor, std::optional<std::size_t> width) {
  std::string text = namedLine("Session", report.session.text());
  text += namedLine("Time", timeText(report.seconds));
  if (report.counters) text += namedLine("Counters", countersText(*report.counters, report.countersPath));
  text += namedLine("Coverage", coverageText(report.coverage));
  text += namedLine("Recorder", recorderCostText(report.recorderCost));
  if (report.sources.empty()) {
    text += namedLine("Readings", "none: nothing here gives watts. " + doctor + " says why.");
  } else {
    text += "\n" + sourceTable(report.sources, width);
  }
  if (!report.processes.empty()) text += "\n" + processShareTable(report.processes, width);
  return text;
}

std::string commandText(const CommandReport& report, bool hasBaseline, const std::string& doctor,
                        std::optional<std::size_t> width) {
  std::string text = report.signal ? namedLine("Ended by", "signal " + whole(report.signal))
                                   : namedLine("Exit status", whole(report.exitStatus));
  if (!report.measured) return text;
  if (report.countedJoulesAboveIdle) {
    text += namedLine("Above idle", decimal(report.countedJoulesAboveIdle, 2) + " J by the counters");
  }
  text += spanText(*report.measured, doctor, width);
  if (hasBaseline && !report.measured->sources.empty()) text += "\n" + aboveIdleTable(report, width);
  return text;
}

std::string repeatsText(const std::vector<SpanReport>& repeats, std::optional<std::size_t> width) {
  std::vector<std::vector<SourceEnergy>> sources;
  std::vector<double> countedJoules;
  std::string confidence;
  for (const SpanReport& repeat : repeats) {
    sources.push_back(repeat.sources);
    if (!repeat.counters) continue;
    countedJoules.push_back(repeat.counters->joules);
    confidence = repeat.counters->confidence;
  }
  Table table{{{"Over the runs", Alignment::left, true},
               {"Mean J", Alignment::right},
               {"Lowest J", Alignment::right},
               {"Highest J", Alignment::right},
               {"Runs", Alignment::right},
               {"Confidence"}}};
  const auto add = [&table](const std::string& name, const ValueSpread& joules, const std::string& trust) {
    table.add({name, decimal(joules.mean, 2), decimal(joules.lowest, 2), decimal(joules.highest, 2),
               whole(joules.count), trust});
  };
  if (const auto joules = spreadOf(countedJoules)) add("Counters", *joules, confidence);
  const std::vector<EnergyOverRuns> energies = energyOverRuns(sources);
  for (const EnergyOverRuns& energy : energies) add(energy.sourceLabel, energy.joules, energy.confidence);
  return countedJoules.empty() && energies.empty() ? std::string{} : table.text(width);
}

}  // namespace quellin::cli
