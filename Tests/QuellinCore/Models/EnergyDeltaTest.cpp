#include <limits>
#include <utility>

#include <gtest/gtest.h>

#include "QuellinCore/Models/EnergyDelta.h"
#include "QuellinCore/Support/JSON/JSONEncoder.h"
#include "Support/CaseNames.h"
#include "Support/Deaths.h"

namespace quellin {
namespace {

using testing_support::endedByTrap;
using testing_support::namedBy;

using Channels = std::vector<EnergyChannel>;

constexpr Seconds tenth{0.1};

struct DeltaCase {
  std::string name;
  Channels channels;
  double cpu = 0;
  double gpu = 0;
  double ane = 0;
  double ram = 0;
};

class EnergyDeltaTest : public ::testing::TestWithParam<DeltaCase> {};

TEST_P(EnergyDeltaTest, TurnsChannelsIntoWatts) {
  const auto metrics = parseEnergyDelta(GetParam().channels, tenth);
  ASSERT_TRUE(metrics.has_value());
  EXPECT_DOUBLE_EQ(metrics->cpuPower, GetParam().cpu);
  EXPECT_DOUBLE_EQ(metrics->gpuPower, GetParam().gpu);
  EXPECT_DOUBLE_EQ(metrics->anePower, GetParam().ane);
  EXPECT_DOUBLE_EQ(metrics->ramPower, GetParam().ram);
  EXPECT_DOUBLE_EQ(metrics->systemPower, GetParam().cpu + GetParam().gpu + GetParam().ane + GetParam().ram);
  EXPECT_EQ(metrics->cpuUsagePercent, 0);
  EXPECT_EQ(metrics->gpuUsagePercent, std::nullopt);
}

constexpr std::int64_t watt = 100'000'000;  // nanojoules in a tenth of a second

INSTANTIATE_TEST_SUITE_P(
    Cases, EnergyDeltaTest,
    ::testing::Values(
        DeltaCase{.name = "ExactChannelWinsOverTheSum",
                  .channels = {{"CPU Energy", 150'000'000}, {"ECPU0", 10}, {"PCPU0", 20}},
                  .cpu = 1.5},
        DeltaCase{.name = "ExactChannelWinsWhereverItStands",
                  .channels = {{"ECPU0", 10}, {"CPU Energy", 150'000'000}},
                  .cpu = 1.5},
        DeltaCase{.name = "SumsWithoutAnExactChannel",
                  .channels = {{"ECPU", 50'000'000}, {"PCPU", 100'000'000}},
                  .cpu = 1.5},
        DeltaCase{.name = "LaterExactChannelOverwrites",
                  .channels = {{"CPU Energy", watt}, {"CPU Energy", 2 * watt}},
                  .cpu = 2},
        DeltaCase{.name = "ExactZeroStillWins", .channels = {{"CPU Energy", 0}, {"ECPU", watt}}},
        DeltaCase{.name = "AllExactNames",
                  .channels = {{"CPU Energy", watt},
                               {"GPU Energy", 2 * watt},
                               {"ANE0", 3 * watt},
                               {"DRAM0", 4 * watt}},
                  .cpu = 1,
                  .gpu = 2,
                  .ane = 3,
                  .ram = 4},
        DeltaCase{.name = "ExactNamesNeverReachTheSums",
                  .channels = {{"GPU Energy", watt}, {"GPU0", 2 * watt}},
                  .gpu = 1},
        DeltaCase{.name = "DRAMByItsWord", .channels = {{"DRAM", watt}, {"SRAM", 2 * watt}}, .ram = 3},
        DeltaCase{.name = "EachComponentByItsWord",
                  .channels = {{"Cpu", watt}, {"gPu", 2 * watt}, {"ANE1", 3 * watt}, {"dram1", 4 * watt}},
                  .cpu = 1,
                  .gpu = 2,
                  .ane = 3,
                  .ram = 4},
        DeltaCase{.name = "EarlierWordsDecide",
                  .channels = {{"GPU CPU", watt}, {"GPU SRAM", 2 * watt}, {"ANE DRAM", 3 * watt}},
                  .cpu = 1,
                  .gpu = 2,
                  .ane = 3},
        DeltaCase{.name = "ExactNamesAreCaseSensitive",
                  .channels = {{"cpu energy", watt}, {"ECPU", watt}},
                  .cpu = 2},
        DeltaCase{
            .name = "UnknownChannelsAreIgnored", .channels = {{"PCIe", 7 * watt}, {"ECPU", watt}}, .cpu = 1},
        DeltaCase{.name = "NegativeTotalsCountAsNothing",
                  .channels = {{"CPU Energy", -watt}, {"GPU0", watt}, {"GPU1", -2 * watt}, {"DRAM0", watt}},
                  .ram = 1},
        DeltaCase{.name = "NegativeChannelsCountWithinASum",
                  .channels = {{"GPU0", 3 * watt}, {"GPU1", -2 * watt}},
                  .gpu = 1}),
    namedBy(&DeltaCase::name));

TEST(EnergyDeltaRulesTest, GivesNothingWhenNoChannelIsRecognised) {
  EXPECT_EQ(parseEnergyDelta(Channels{}, tenth), std::nullopt);
  EXPECT_EQ(parseEnergyDelta(Channels{{"PCIe", watt}, {"", watt}, {"DISP", watt}}, tenth), std::nullopt);
}

TEST(EnergyDeltaRulesTest, GivesNothingUnlessTheIntervalIsAboveZero) {
  const Channels channels{{"CPU Energy", watt}};
  for (const double seconds : {0.0, -0.1, std::numeric_limits<double>::quiet_NaN()}) {
    EXPECT_EQ(parseEnergyDelta(channels, Seconds{seconds}), std::nullopt) << seconds;
  }
}

TEST(EnergyDeltaRulesTest, DividesByTheInterval) {
  EXPECT_DOUBLE_EQ(parseEnergyDelta(Channels{{"CPU Energy", 3'000'000'000}}, Seconds{2})->cpuPower, 1.5);
}

// What an exact channel adds to a sum would never be seen, except by the sum's overflow.
TEST(EnergyDeltaRulesTest, NeverAddsAnExactChannelToASum) {
  constexpr std::int64_t highest = std::numeric_limits<std::int64_t>::max();
  for (const auto& [exact, other] : {std::pair{"CPU Energy", "ECPU"}, std::pair{"GPU Energy", "GPU0"},
                                     std::pair{"ANE0", "ANE1"}, std::pair{"DRAM0", "DRAM1"}}) {
    EXPECT_TRUE(parseEnergyDelta(Channels{{other, 1}, {exact, highest}}, tenth).has_value()) << exact;
  }
}

TEST(EnergyDeltaRulesDeathTest, EndsTheProcessWhenASumOverflows) {
  const Channels channels{{"ECPU", std::numeric_limits<std::int64_t>::max()}, {"PCPU", 1}};
  EXPECT_EXIT(static_cast<void>(parseEnergyDelta(channels, tenth)), endedByTrap, "");
}

TEST(PowerMetricsTest, DescribesEveryFieldInOrder) {
  EXPECT_EQ(encodeJSON(PowerMetrics{1.5, 2.5, 3.5, 4.5, 5.5, 6.5, 7.5}),
            R"({"cpuPower":1.5,"gpuPower":2.5,"anePower":3.5,"ramPower":4.5,"systemPower":5.5,)"
            R"("cpuUsagePercent":6.5,"gpuUsagePercent":7.5})");
}

TEST(EnergyDeltaRulesTest, KnowsTheGainsItCanAdd) {
  constexpr std::int64_t most = std::numeric_limits<std::int64_t>::max();
  EXPECT_EQ(largestEnergyGain(0), most);
  EXPECT_EQ(largestEnergyGain(1), most);
  EXPECT_EQ(largestEnergyGain(2), most / 2);
  for (const std::int64_t sign : {1, -1}) {
    std::vector<EnergyChannel> channels(3, {"PCPU", sign * (most / 3)});
    EXPECT_TRUE(isWithinRange(channels));
    EXPECT_TRUE(parseEnergyDelta(channels, Seconds{1}));
    channels[1].nanojoules += sign;
    EXPECT_FALSE(isWithinRange(channels));
  }
}

}  // namespace
}  // namespace quellin
