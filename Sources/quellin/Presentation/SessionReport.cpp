#include "quellin/Presentation/SessionReport.h"

#include "QuellinCore/Support/ISO8601.h"
#include "quellin/Presentation/FigureText.h"
#include "quellin/Presentation/Table.h"

namespace quellin::cli {

std::string coverageText(const SessionCoverage& coverage) {
  if (coverage.durationSeconds <= 0) return unknown;
  std::string text =
      decimal(100 * coverage.coveredSeconds / coverage.durationSeconds, 1) + " % of the time has readings";
  if (coverage.longestGapSeconds) {
    text += ", gaps: " + whole(coverage.gapCount) + ", the longest " +
            durationText(Seconds{*coverage.longestGapSeconds});
  }
  return text;
}

std::string recorderCostText(const std::optional<RecorderCost>& cost) {
  if (!cost) return unknown;
  return decimal(cost->cpuSeconds, 2) + " s of CPU time, " +
         byteText(static_cast<double>(cost->bytesWritten)) + " written";
}

namespace {

std::string change(const std::optional<std::int64_t>& from, const std::optional<std::int64_t>& to) {
  return from && to ? whole(from) + " to " + whole(to) + " %" : std::string{unknown};
}

std::string withUnit(const std::string& text, const std::string& unit) {
  return text == unknown ? text : text + " " + unit;
}

// Text in lines "name  value".
class Lines {
 public:
  explicit Lines(const Invocation& invocation) : invocation_(invocation) {}

  void add(const std::string& name, const std::string& value) const {
    invocation_.out.write(namedLine(name, value));
  }

 private:
  const Invocation& invocation_;
};

void showFigures(const SessionReport& report, const Lines& lines) {
  const PowerSessionSummary& summary = report.summary;
  lines.add("Duration", durationText(Seconds{summary.durationSeconds}));
  lines.add("Samples", whole(summary.sampleCount) + ", with watts: " + whole(summary.wattSampleCount));
  lines.add("Average", withUnit(decimal(summary.averageWatts, 2), "W"));
  lines.add("Lowest, highest",
            withUnit(decimal(summary.minWatts, 2), "W") + ", " + withUnit(decimal(summary.maxWatts, 2), "W"));
  lines.add("Energy", withUnit(decimal(summary.totalWattHours, 3), "Wh"));
  if (summary.averageWattsNote) lines.add("Note", *summary.averageWattsNote);
  lines.add("Battery", change(summary.batteryPercentStart, summary.batteryPercentEnd));
  lines.add("Hottest", withUnit(decimal(summary.maxTemperature, 1), "°C"));
  lines.add("Fastest fan", withUnit(whole(summary.maxFanRPM), "rpm"));
  lines.add("Thermal pressure", "at most " + whole(summary.maxThermalPressure) + " of 4");
  lines.add("Coverage", coverageText(report.coverage));
  lines.add("Recorder", recorderCostText(report.recorderCost));
}

// What a segment comes to stands first and fits into 80 columns.
std::string segmentTable(const std::vector<PowerSessionPowerSegment>& segments,
                         std::optional<std::size_t> width) {
  Table table{{{"#", Alignment::right},
               {"Source"},
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

SessionReport sessionReport(PowerSessionStore& store, const std::shared_ptr<PowerSession>& session) {
  return {.session = PowerSessionMetadataDTO{*session},
          .summary = store.summary(session),
          .coverage = store.coverage(session),
          .recorderCost = store.cost(*session)};
}

void showReport(const SessionReport& report, const Invocation& invocation) {
  Output& out = invocation.out;
  const auto& session = report.session;
  out.line(invocation.outTerminal.styled(Style::strong, printable(session.title)));
  const Lines lines{invocation};
  lines.add("Session", session.id.text());
  lines.add("Status", session.status);
  lines.add("Started", formatISO8601(session.startedAt));
  lines.add("Ended", session.endedAt ? formatISO8601(*session.endedAt) : "not yet");
  showFigures(report, lines);
  if (!report.summary.powerSegments.empty()) {
    out.line("");
    out.write(segmentTable(report.summary.powerSegments, invocation.outTerminal.width));
  }
  if (!report.summary.topContributors.empty()) {
    out.line("");
    out.write(contributorTable(report.summary.topContributors, invocation.outTerminal.width));
  }
}

}  // namespace quellin::cli
