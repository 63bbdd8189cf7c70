#include <string>

#include <gmock/gmock.h>

#include "quellin/Presentation/FigureText.h"

namespace quellin::cli {
namespace {

TEST(FigureTextTest, DecimalsAreRoundedAndNeverMinusNothing) {
  EXPECT_EQ(decimal(12.345, 1), "12.3");
  EXPECT_EQ(decimal(12.35, 0), "12");
  EXPECT_EQ(decimal(-0.004, 2), "0.00");
  EXPECT_EQ(decimal(-0.0, 2), "0.00");
  EXPECT_EQ(decimal(-0.006, 2), "-0.01");
  EXPECT_EQ(decimal(1234567.5, 1), "1234567.5");
  EXPECT_EQ(decimal(std::nullopt, 2), "unknown");
}

TEST(FigureTextTest, TheUnitTellsTheDecimals) {
  EXPECT_EQ(figureText(7.126, "W"), "7.13");
  EXPECT_EQ(figureText(-1.254, "A"), "-1.25");
  EXPECT_EQ(figureText(11.8504, "V"), "11.85");
  EXPECT_EQ(figureText(45.25, "°C"), "45.2");
  EXPECT_EQ(figureText(2410, "rpm"), "2410");
  EXPECT_EQ(figureText(62, "%"), "62");
  EXPECT_EQ(figureText(std::nullopt, "W"), "unknown");
}

TEST(FigureTextTest, WholeNumbersHaveNoSeparators) {
  EXPECT_EQ(whole(1234567), "1234567");
  EXPECT_EQ(whole(-3), "-3");
  EXPECT_EQ(whole(std::nullopt), "unknown");
}

TEST(FigureTextTest, OneThingHasNoPlural) {
  EXPECT_EQ(counted(0, "sample"), "0 samples");
  EXPECT_EQ(counted(1, "sample"), "1 sample");
  EXPECT_EQ(counted(216, "tick"), "216 ticks");
}

struct DurationText {
  double seconds;
  std::string text;
};

class DurationTextTest : public testing::TestWithParam<DurationText> {};

TEST_P(DurationTextTest, NamesTheTwoLargestUnits) {
  EXPECT_EQ(durationText(Seconds{GetParam().seconds}), GetParam().text);
}

INSTANTIATE_TEST_SUITE_P(FigureTextTest, DurationTextTest,
                         testing::Values(DurationText{0, "0 s"}, DurationText{-5, "0 s"},
                                         DurationText{0.4, "0 s"}, DurationText{42.5, "43 s"},
                                         DurationText{59.4, "59 s"}, DurationText{59.5, "1 min 0 s"},
                                         DurationText{185, "3 min 5 s"}, DurationText{3599.6, "1 h 0 min"},
                                         DurationText{7200, "2 h 0 min"}, DurationText{7259, "2 h 0 min"},
                                         DurationText{93600, "26 h 0 min"}));

TEST(FigureTextTest, BytesTakeTheUnitThatSuitsThem) {
  EXPECT_EQ(byteText(0), "0 B");
  EXPECT_EQ(byteText(812), "812 B");
  EXPECT_EQ(byteText(1300), "1.3 kB");
  EXPECT_EQ(byteText(1'250'000), "1.2 MB");
  EXPECT_EQ(byteText(5e12), "5000.0 GB");
}

}  // namespace
}  // namespace quellin::cli
