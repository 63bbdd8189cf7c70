#include <optional>
#include <string>

#include <gmock/gmock.h>

#include "Support/CaseNames.h"
#include "quellin/CommandLine/Options.h"

namespace quellin::cli {
namespace {

using testing_support::namedBy;

TEST(OptionsTest, TheWordsOfAProgramBeginWithItsName) {
  Options options;
  options.word = "make";
  options.arguments = {"-j8", "all"};
  EXPECT_THAT(programWords(options), testing::ElementsAre("make", "-j8", "all"));
}

struct DurationCase {
  std::string text;
  std::optional<double> seconds;
};

class DurationTest : public testing::TestWithParam<DurationCase> {};

TEST_P(DurationTest, IsReadOrRefused) {
  const auto duration = parseDuration(GetParam().text);
  ASSERT_EQ(duration.has_value(), GetParam().seconds.has_value()) << GetParam().text;
  if (duration) {
    EXPECT_NEAR(duration->count(), *GetParam().seconds, 1e-9) << GetParam().text;
  }
}

INSTANTIATE_TEST_SUITE_P(
    OptionsTest, DurationTest,
    testing::Values(DurationCase{"90", 90}, DurationCase{"90s", 90}, DurationCase{"500ms", 0.5},
                    DurationCase{"5m", 300}, DurationCase{"1.5h", 5400}, DurationCase{"0.25", 0.25},
                    DurationCase{"1.05s", 1.05}, DurationCase{"007", 7}, DurationCase{"", std::nullopt},
                    DurationCase{"s", std::nullopt}, DurationCase{"0", std::nullopt},
                    DurationCase{"0.0s", std::nullopt}, DurationCase{"-1", std::nullopt},
                    DurationCase{"+1", std::nullopt}, DurationCase{" 1", std::nullopt},
                    DurationCase{"1 s", std::nullopt}, DurationCase{"1.", std::nullopt},
                    DurationCase{".5", std::nullopt}, DurationCase{"1,5", std::nullopt},
                    DurationCase{"1e3", std::nullopt}, DurationCase{"1d", std::nullopt},
                    DurationCase{"1h30m", std::nullopt}, DurationCase{"nan", std::nullopt},
                    DurationCase{"inf", std::nullopt}, DurationCase{"99999999999", std::nullopt}),
    namedBy(&DurationCase::text));

TEST(WattsTest, AreADecimalNumberFromZeroUp) {
  EXPECT_EQ(parseWatts("0"), 0);
  EXPECT_EQ(parseWatts("7.5"), 7.5);
  for (const char* const text : {"", "-1", "7,5", "20W", "nan", "inf", "0x10", "1e2", "."}) {
    EXPECT_EQ(parseWatts(text), std::nullopt) << text;
  }
}

TEST(PercentTest, IsADecimalNumberFromZeroUpWithOrWithoutItsSign) {
  EXPECT_EQ(parsePercent("0"), 0);
  EXPECT_EQ(parsePercent("2.5"), 2.5);
  EXPECT_EQ(parsePercent("5%"), 5);
  for (const char* const text : {"", "%", "-1", "5 %", "5%%", "nan", "some"}) {
    EXPECT_EQ(parsePercent(text), std::nullopt) << text;
  }
}

TEST(SpeedTest, MaximumTakesNoTime) {
  const auto speed = parseSpeed("max");
  ASSERT_TRUE(speed);
  EXPECT_EQ(speed->shortened(Seconds{60}), Seconds{0});
}

TEST(SpeedTest, ANumberIsAMultipleOfTheCapturedPace) {
  const auto speed = parseSpeed("2.5");
  ASSERT_TRUE(speed);
  EXPECT_DOUBLE_EQ(speed->shortened(Seconds{10}).count(), 4);
}

TEST(SpeedTest, NothingElseIsASpeed) {
  for (const char* const text : {"", "0", "0.0", "-2", "fast", "2x", "MAX", "1e9", "inf"}) {
    EXPECT_FALSE(parseSpeed(text)) << text;
  }
}

}  // namespace
}  // namespace quellin::cli
