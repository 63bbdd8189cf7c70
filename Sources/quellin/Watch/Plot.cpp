#include "quellin/Watch/Plot.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <string_view>

namespace quellin::cli {
namespace {

constexpr int levelsOfCell = 8;

// How much of a cell is filled, from nothing to all of it.
constexpr std::array<std::u32string_view, 2> fillings{U" ...::::#", U" ▁▂▃▄▅▆▇█"};
constexpr std::array<char32_t, 2> dots{U'-', U'·'};

std::size_t indexOf(CharacterSet characters) { return characters == CharacterSet::unicode ? 1 : 0; }

bool isShown(const PlotPoint& point) { return point.value && std::isfinite(*point.value); }

int levelOf(double value, PlotScale scale, int levels) {
  const double part = std::clamp((value - scale.low) / (scale.high - scale.low), 0.0, 1.0);
  return std::max(1, static_cast<int>(std::lround(part * levels)));
}

void drawBar(Canvas& canvas, Area area, int column, int level) {
  for (int row = 0; row < area.rows && level > 0; ++row, level -= levelsOfCell) {
    const auto filled = static_cast<std::size_t>(std::min(level, levelsOfCell));
    canvas.put(area.row + area.rows - 1 - row, column,
               {.character = fillings.at(indexOf(canvas.characters())).at(filled), .style = Style::good});
  }
}

void drawDot(Canvas& canvas, Area area, int column, int level) {
  canvas.put(area.row + area.rows - 1 - (level - 1) / levelsOfCell, column,
             {.character = dots.at(indexOf(canvas.characters())), .style = Style::faint});
}

}  // namespace

PlotScale scaleFromZero(std::span<const PlotPoint> points) {
  static constexpr std::array<double, 9> steps{1, 1.5, 2, 3, 4, 5, 6, 8, 10};
  double highest = 0;
  for (const PlotPoint& point : points) {
    if (isShown(point)) highest = std::max(highest, *point.value);
  }
  if (highest <= 0) return {};
  const double decade = std::pow(10.0, std::floor(std::log10(highest)));
  const auto* const step =
      std::ranges::find_if(steps, [&](double candidate) { return candidate * decade >= highest; });
  return {.low = 0, .high = (step == steps.end() ? steps.back() : *step) * decade};
}

PlotScale scaleInTens(std::span<const PlotPoint> points) {
  std::optional<double> lowest;
  std::optional<double> highest;
  for (const PlotPoint& point : points) {
    if (!isShown(point)) continue;
    lowest = std::min(lowest.value_or(*point.value), *point.value);
    highest = std::max(highest.value_or(*point.value), *point.value);
  }
  if (!lowest) return {.low = 0, .high = 10};
  const double low = std::floor(*lowest / 10) * 10;
  return {.low = low, .high = std::max(std::ceil(*highest / 10) * 10, low + 10)};
}

void drawPlot(Canvas& canvas, Area area, std::span<const PlotPoint> points, PlotScale scale) {
  if (area.rows <= 0 || area.columns <= 0) return;
  const auto drawn = points.last(std::min(points.size(), static_cast<std::size_t>(area.columns)));
  int column = area.column + area.columns - static_cast<int>(drawn.size());
  for (const PlotPoint& point : drawn) {
    if (isShown(point)) {
      const int level = levelOf(*point.value, scale, area.rows * levelsOfCell);
      point.isSolid ? drawBar(canvas, area, column, level) : drawDot(canvas, area, column, level);
    }
    ++column;
  }
}

}  // namespace quellin::cli
