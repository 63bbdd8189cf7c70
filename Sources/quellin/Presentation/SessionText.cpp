#include "quellin/Presentation/SessionText.h"

#include "QuellinCore/Sessions/Analysis/SourceTotals.h"
#include "QuellinCore/Support/ISO8601.h"
#include "quellin/Presentation/FigureText.h"
#include "quellin/Presentation/Table.h"
#include "quellin/Terminal/PlainText.h"

namespace quellin::cli {

std::string coverageText(const SessionCoverage& coverage) {
  const auto percent = coverage.coveredPercent();
  if (!percent) return unknown;
  std::string text = decimal(percent, 1) + " % of the time has readings of power";
  if (coverage.coveredSeconds > 0 && coverage.longestGapSeconds) {
    text += ", gaps: " + whole(coverage.gapCount) + ", the longest " +
            durationText(Seconds{*coverage.longestGapSeconds});
  }
  return text;
}

std::string recorderCostText(const std::optional<RecorderCost>& cost) {
  // The first part is noted before anything is written.
  if (!cost || cost->bytesWritten == 0) return unknown;
  return decimal(cost->cpuSeconds, 2) + " s of CPU time, " +
         byteText(static_cast<double>(cost->bytesWritten)) + " written to the log";
}

std::string thermalPressureText(const PowerSessionSummary& summary) {
  if (summary.sampleCount == 0) return unknown;
  if (summary.maxThermalPressure == 0) return "0 of 4, or not told by the system";
  return "at most " + whole(summary.maxThermalPressure) + " of 4";
}

namespace {

std::string change(const std::optional<std::int64_t>& from, const std::optional<std::int64_t>& to) {
  return from && to ? whole(from) + " to " + whole(to) + " %" : std::string{unknown};
}

std::string withUnit(const std::string& text, const std::string& unit) {
  return text == unknown ? text : text + " " + unit;
}

// Energy over the whole time may come to less than each reading where these cover little of it. A difference
// that is not seen is one of rounding.
bool isBelowEveryReading(const PowerSessionSummary& summary) {
  return summary.averageWatts && summary.minWatts && *summary.averageWatts < *summary.minWatts &&
         decimal(summary.averageWatts, 2) != decimal(summary.minWatts, 2);
}

std::string averageText(const PowerSessionSummary& summary) {
  const std::string text = withUnit(decimal(summary.averageWatts, 2), "W");
  return isBelowEveryReading(summary) ? text + ", over the whole time, also where no readings are" : text;
}

// Extremes of different quantities are none: each segment has its own. Time without readings is no quantity.
std::string extremes(const PowerSessionSummary& summary) {
  if (totalsBySource(summary.powerSegments).size() > 1) return unknown;
  return withUnit(decimal(summary.minWatts, 2), "W") + ", " + withUnit(decimal(summary.maxWatts, 2), "W");
}

std::string figureLines(const SessionReport& report) {
  const PowerSessionSummary& summary = report.summary;
  std::string text;
  text += namedLine("Duration", durationText(Seconds{summary.durationSeconds}));
  text +=
      namedLine("Samples", whole(summary.sampleCount) + ", with watts: " + whole(summary.wattSampleCount));
  text += namedLine("Average", averageText(summary));
  text += namedLine("Lowest, highest", extremes(summary));
  text += namedLine("Energy", withUnit(decimal(summary.totalWattHours, 3), "Wh"));
  if (summary.averageWattsNote) text += namedLine("Note", *summary.averageWattsNote);
  text += namedLine("Battery", change(summary.batteryPercentStart, summary.batteryPercentEnd));
  text += namedLine("Hottest", withUnit(decimal(summary.maxTemperature, 1), "°C"));
  text += namedLine("Fastest fan", withUnit(whole(summary.maxFanRPM), "rpm"));
  text += namedLine("Thermal pressure", thermalPressureText(summary));
  text += namedLine("Coverage", coverageText(report.coverage));
  text += namedLine("Recorder", recorderCostText(report.recorderCost));
  return text;
}

// What a segment comes to stands first: all up to the energy fits into 80 columns, the average into 40.
std::string segmentTable(const std::vector<PowerSessionPowerSegment>& segments,
                         std::optional<std::size_t> width) {
  Table table{{{"#", Alignment::right},
               {"Source", Alignment::left, true},
               {"Duration", Alignment::right},
               {"Avg W", Alignment::right},
               {"Min W", Alignment::right},
               {"Max W", Alignment::right},
               {"Wh", Alignment::right},
               {"Battery"},
               {"Samples", Alignment::right},
               {"Started"}}};
  for (const PowerSessionPowerSegment& segment : segments) {
    table.add({whole(segment.index), segment.sourceLabel, durationText(Seconds{segment.durationSeconds}),
               decimal(segment.averageWatts, 2), decimal(segment.minWatts, 2), decimal(segment.maxWatts, 2),
               decimal(segment.totalWattHours, 3),
               change(segment.batteryPercentStart, segment.batteryPercentEnd), whole(segment.sampleCount),
               formatISO8601(segment.startedAt)});
  }
  return table.text(width);
}

std::string contributorTable(const std::vector<PowerSessionContributor>& contributors,
                             std::optional<std::size_t> width) {
  Table table{{{"Process", Alignment::left, true}, {"Score", Alignment::right}, {"Source"}, {"Confidence"}}};
  for (const PowerSessionContributor& contributor : contributors) {
    table.add({contributor.name, decimal(contributor.score, 1), contributor.source, contributor.confidence});
  }
  return table.text(width);
}

}  // namespace

std::string sessionText(const SessionReport& report, const Terminal& terminal) {
  const auto& session = report.session;
  std::string text = terminal.styled(Style::strong, printable(session.title)) + "\n";
  text += namedLine("Session", session.id.text());
  text += namedLine("Status", session.status);
  text += namedLine("Started", formatISO8601(session.startedAt));
  text += namedLine("Ended", session.endedAt ? formatISO8601(*session.endedAt) : "not yet");
  text += figureLines(report);
  if (!report.summary.powerSegments.empty()) {
    text += "\n" + segmentTable(report.summary.powerSegments, terminal.width);
  }
  if (!report.summary.topContributors.empty()) {
    text += "\n" + contributorTable(report.summary.topContributors, terminal.width);
  }
  return text;
}

}  // namespace quellin::cli
