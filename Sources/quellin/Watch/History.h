#pragma once

#include <span>
#include <string>
#include <vector>

#include "QuellinCore/Models/SystemPowerState.h"
#include "quellin/Watch/Plot.h"

namespace quellin::cli {

/// A figure over time, one point for each state.
struct HistoryPlot {
  std::string title;
  std::vector<PlotPoint> points;
  PlotScale scale;
};

/// The watts of the primary reading over the latest `columns` states. Figures of another kind than the last
/// one measure something else, so they are no bars.
[[nodiscard]] HistoryPlot wattsOver(std::span<const SystemPowerState> history, int columns);

/// The representative temperature over the latest `columns` states. That of another part of the machine than
/// the last one is no bar.
[[nodiscard]] HistoryPlot temperatureOver(std::span<const SystemPowerState> history, int columns);

/// How much time lies between the first and the last of the latest `columns` states.
[[nodiscard]] Seconds timeOver(std::span<const SystemPowerState> history, int columns);

}  // namespace quellin::cli
