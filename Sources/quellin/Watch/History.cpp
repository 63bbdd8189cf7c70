#include "quellin/Watch/History.h"

#include <algorithm>

#include "QuellinCore/Models/TemperatureInsights.h"

namespace quellin::cli {
namespace {

std::span<const SystemPowerState> latest(std::span<const SystemPowerState> history, int columns) {
  return history.last(std::min(history.size(), static_cast<std::size_t>(std::max(columns, 0))));
}

// What a figure is called and what it measures; figures of the same meaning may be compared.
struct NamedFigure {
  std::string label;
  std::string meaning;
  double value = 0;
};

std::optional<NamedFigure> wattsOf(const SystemPowerState& state) {
  const auto reading = state.primaryPowerReading();
  if (!reading) return std::nullopt;
  return NamedFigure{reading->label + ", W", std::string{rawValue(reading->kind)}, reading->watts};
}

std::optional<NamedFigure> temperatureOf(const SystemPowerState& state) {
  const auto reading = TemperatureInsights::representativeReading(state.sensors, state.battery);
  if (!reading) return std::nullopt;
  return NamedFigure{reading->label + ", °C", reading->id, reading->temperature};
}

template <class Choose>
HistoryPlot plotOver(std::span<const SystemPowerState> states, std::string title, Choose choose) {
  std::vector<std::optional<NamedFigure>> figures;
  std::optional<std::string> meaning;
  for (const SystemPowerState& state : states) {
    figures.push_back(choose(state));
    if (figures.back()) {
      title = figures.back()->label;
      meaning = figures.back()->meaning;
    }
  }
  HistoryPlot plot{.title = std::move(title), .points = {}, .scale = {}};
  for (const auto& figure : figures) {
    plot.points.push_back(figure ? PlotPoint{figure->value, figure->meaning == meaning} : PlotPoint{});
  }
  return plot;
}

}  // namespace

HistoryPlot wattsOver(std::span<const SystemPowerState> history, int columns) {
  HistoryPlot plot = plotOver(latest(history, columns), "Power, W", wattsOf);
  plot.scale = scaleFromZero(plot.points);
  return plot;
}

HistoryPlot temperatureOver(std::span<const SystemPowerState> history, int columns) {
  HistoryPlot plot = plotOver(latest(history, columns), "Temperature, °C", temperatureOf);
  plot.scale = scaleInTens(plot.points);
  return plot;
}

Seconds timeOver(std::span<const SystemPowerState> history, int columns) {
  const auto states = latest(history, columns);
  return states.empty() ? Seconds{0} : states.back().timestamp - states.front().timestamp;
}

}  // namespace quellin::cli
