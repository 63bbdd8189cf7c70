#include <cmath>
#include <limits>

#include <gtest/gtest.h>

#include "quellin/Watch/Plot.h"

namespace quellin::cli {
namespace {

std::vector<PlotPoint> bars(std::initializer_list<double> values) {
  std::vector<PlotPoint> points;
  for (const double value : values) points.push_back({.value = value});
  return points;
}

std::string plotted(const std::vector<PlotPoint>& points, PlotScale scale, ViewSize size,
                    CharacterSet characters = CharacterSet::unicode) {
  Canvas canvas{size, characters};
  drawPlot(canvas, {.row = 0, .column = 0, .rows = size.rows, .columns = size.columns}, points, scale);
  return canvas.text();
}

TEST(PlotTest, FillsEighthsOfCellsFromTheBottom) {
  EXPECT_EQ(plotted(bars({0, 1, 2, 3, 4, 5, 6, 7, 8}), {0, 8}, {.rows = 1, .columns = 9}), "▁▁▂▃▄▅▆▇█\n");
  EXPECT_EQ(plotted(bars({8, 12, 16}), {0, 16}, {.rows = 2, .columns = 3}), " ▄█\n███\n");
}

TEST(PlotTest, FillsWithoutUTF8) {
  EXPECT_EQ(
      plotted(bars({0, 1, 2, 3, 4, 5, 6, 7, 8}), {0, 8}, {.rows = 1, .columns = 9}, CharacterSet::ascii),
      "....::::#\n");
}

TEST(PlotTest, ShowsTheLatestPointsAtTheRightEdge) {
  EXPECT_EQ(plotted(bars({8, 8}), {0, 8}, {.rows = 1, .columns = 4}), "  ██\n");
  EXPECT_EQ(plotted(bars({8, 4, 2}), {0, 8}, {.rows = 1, .columns = 2}), "▄▂\n");
}

TEST(PlotTest, LeavesAGapWhereNothingIsKnown) {
  const std::vector<PlotPoint> points{{.value = 8}, {}, {.value = std::nan("")}, {.value = 8}};
  EXPECT_EQ(plotted(points, {0, 8}, {.rows = 1, .columns = 4}), "█  █\n");
}

TEST(PlotTest, DrawsDotsForWhatIsOfAnotherKind) {
  const std::vector<PlotPoint> points{
      {.value = 16, .isSolid = false}, {.value = 1, .isSolid = false}, {.value = 16}};
  EXPECT_EQ(plotted(points, {0, 16}, {.rows = 2, .columns = 3}), "· █\n ·█\n");
  EXPECT_EQ(plotted(points, {0, 16}, {.rows = 2, .columns = 3}, CharacterSet::ascii), "- #\n -#\n");
}

TEST(PlotTest, KeepsValuesBeyondTheScaleInside) {
  EXPECT_EQ(plotted(bars({-5, 50}), {0, 8}, {.rows = 1, .columns = 2}), "▁█\n");
}

TEST(PlotTest, DrawsNothingWithoutRoom) {
  EXPECT_EQ(plotted(bars({1}), {0, 8}, {.rows = 0, .columns = 4}), "");
  EXPECT_EQ(plotted(bars({1}), {0, 8}, {.rows = 1, .columns = 0}), "\n");
}

TEST(PlotTest, ScalesFromZeroToARoundFigure) {
  EXPECT_EQ(scaleFromZero(bars({3, 12.4})), (PlotScale{0, 15}));
  EXPECT_EQ(scaleFromZero(bars({20})), (PlotScale{0, 20}));
  EXPECT_EQ(scaleFromZero(bars({96})), (PlotScale{0, 100}));
  EXPECT_DOUBLE_EQ(scaleFromZero(bars({0.021})).high, 0.03);
  EXPECT_EQ(scaleFromZero(bars({0})), (PlotScale{0, 1}));
  EXPECT_EQ(scaleFromZero({}), (PlotScale{0, 1}));
  EXPECT_EQ(
      scaleFromZero(std::vector<PlotPoint>{{.value = std::numeric_limits<double>::infinity()}, {.value = 2}}),
      (PlotScale{0, 2}));
}

TEST(PlotTest, ScalesInTens) {
  EXPECT_EQ(scaleInTens(bars({43, 61.5})), (PlotScale{40, 70}));
  EXPECT_EQ(scaleInTens(bars({40})), (PlotScale{40, 50}));
  EXPECT_EQ(scaleInTens(bars({-3, 5})), (PlotScale{-10, 10}));
  EXPECT_EQ(scaleInTens({}), (PlotScale{0, 10}));
}

}  // namespace
}  // namespace quellin::cli
