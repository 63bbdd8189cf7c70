#include "quellin/Presentation/SessionProgress.h"

#include "quellin/Presentation/FigureText.h"

namespace quellin::cli {
namespace {

// Without its sign a change would read as a charge.
std::string changeText(std::int64_t percent) {
  if (percent == 0) return "unchanged";
  return (percent > 0 ? "+" : "") + whole(percent) + " %";
}

}  // namespace

std::string sessionProgress(const PowerSessionSummary& summary, const std::optional<PowerReading>& reading) {
  std::string text =
      durationText(Seconds{summary.durationSeconds}) + ", " + counted(summary.sampleCount, "sample");
  if (reading) text += ", " + reading->label + " " + decimal(reading->watts, 2) + " W";
  if (summary.totalWattHours) text += ", " + decimal(summary.totalWattHours, 3) + " Wh";
  if (const auto change = summary.batteryPercentDelta) {
    text += ", battery " + changeText(*change);
  }
  return text;
}

}  // namespace quellin::cli
