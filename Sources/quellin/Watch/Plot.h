#pragma once

#include <optional>
#include <span>

#include "quellin/Watch/Canvas.h"

namespace quellin::cli {

/// One value of a plot; absent where nothing was known.
struct PlotPoint {
  std::optional<double> value;
  bool isSolid = true;  ///< a bar; else a dot, for what is not of the same kind as the rest
};

/// What the bottom and the top of a plot stand for.
struct PlotScale {
  double low = 0;
  double high = 1;

  bool operator==(const PlotScale&) const = default;
};

/// A part of the view.
struct Area {
  int row = 0;
  int column = 0;
  int rows = 0;
  int columns = 0;
};

/// From 0 to a round figure that no value exceeds.
[[nodiscard]] PlotScale scaleFromZero(std::span<const PlotPoint> points);

/// From a multiple of ten to a higher one, with all values between.
[[nodiscard]] PlotScale scaleInTens(std::span<const PlotPoint> points);

/// Draws the latest points, one in each column and the last one at the right edge. A value that is known
/// leaves a mark however small it is.
void drawPlot(Canvas& canvas, Area area, std::span<const PlotPoint> points, PlotScale scale);

}  // namespace quellin::cli
