#include <limits>
#include <string>
#include <vector>

#include "FakeDarwin/DarwinTest.h"
#include "QuellinCore/Platform/EnergySource.h"
#include "QuellinCore/Services/PowerService.h"
#include "Support/Deaths.h"
#include "Support/ManualClock.h"

namespace quellin {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Optional;
using testing_support::endedByTrap;

// Every test ends with the fixture's check that nothing is leaked and the library closed.
class DarwinEnergySourceTest : public fake::DarwinTest {
 protected:
  void SetUp() override {
    system.loader.hide("IOReportChannelGetCount");
    system.loader.hide("IOReportChannelGetChannelEntry");
  }

  void add(const std::string& name, const std::optional<std::string>& unit) {
    system.ioReport.channels.push_back({.name = name, .counter = 1'000'000, .unit = unit});
  }

  /// What a measurement gives over which the counters gained these values.
  std::optional<std::vector<EnergyChannel>> measure(EnergySource& source,
                                                    const std::vector<std::int64_t>& gains) {
    const auto measurement = source.begin();
    if (!measurement) return std::nullopt;
    for (std::size_t index = 0; index < gains.size(); ++index) {
      system.ioReport.channels[index].counter += gains[index];
    }
    return measurement->finish();
  }
};

TEST_F(DarwinEnergySourceTest, HandsOnGainsInNanojoulesWhateverEachChannelCountsIn) {
  add("CPU Energy", "mJ     ");
  add("GPU Energy", "nJ");
  add("PCIe Port 0 Energy", "uJ");
  add("DRAM0", std::nullopt);
  add("ANE0", "mJ");
  EXPECT_THAT(measure(*nativeEnergySource(), {150, 150, 150, 150, -2}),
              Optional(ElementsAre(EnergyChannel{"CPU Energy", 150'000'000}, EnergyChannel{"GPU Energy", 150},
                                   EnergyChannel{"PCIe Port 0 Energy", 150'000}, EnergyChannel{"DRAM0", 150},
                                   EnergyChannel{"ANE0", -2'000'000})));
}

TEST_F(DarwinEnergySourceTest, FeedsThePowerReading) {
  add("CPU Energy", "mJ");
  add("GPU Energy", "nJ");
  testing_support::ManualMonotonicClock clock;
  clock.onSleep = [&](Seconds) {
    system.ioReport.channels[0].counter += 150;
    system.ioReport.channels[1].counter += 50'000'000;
  };
  const auto metrics = PowerService{nativeEnergySource(), clock}.read();
  ASSERT_TRUE(metrics);
  EXPECT_DOUBLE_EQ(metrics->cpuPower, 1.5);
  EXPECT_DOUBLE_EQ(metrics->gpuPower, 0.5);
}

TEST_F(DarwinEnergySourceTest, TakesEveryValueAsNanojoulesWhereTheLibraryKnowsNoUnits) {
  system.loader.hide("IOReportChannelGetUnitLabel");
  add("CPU Energy", "mJ");
  EXPECT_THAT(measure(*nativeEnergySource(), {150}), Optional(ElementsAre(EnergyChannel{"CPU Energy", 150})));
}

TEST_F(DarwinEnergySourceTest, LeavesOutChannelsWithoutANameOrAUnitOfEnergy) {
  system.ioReport.channels.push_back({.name = std::nullopt, .counter = 0, .unit = "mJ"});
  add("CPU Residency", "24Mticks");
  add("CPU Energy", "mJ");
  EXPECT_THAT(measure(*nativeEnergySource(), {1, 1, 1}),
              Optional(ElementsAre(EnergyChannel{"CPU Energy", 1'000'000})));
}

TEST_F(DarwinEnergySourceTest, LeavesOutWhatIsNoChannel) {
  add("CPU Energy", "mJ");
  system.ioReport.deltaChannels = [this] {
    return system.coreFoundation.array({system.coreFoundation.string("stray")});
  };
  EXPECT_THAT(measure(*nativeEnergySource(), {1}), Optional(IsEmpty()));
}

TEST_F(DarwinEnergySourceTest, GivesAnEmptyListForADeltaWithoutChannels) {
  add("CPU Energy", "mJ");
  system.ioReport.hasDeltaChannels = false;
  EXPECT_THAT(measure(*nativeEnergySource(), {1}), Optional(IsEmpty()));
}

TEST_F(DarwinEnergySourceTest, EndsTheProcessWhenAnEnergyDoesNotFit) {
  add("CPU Energy", "mJ");
  system.ioReport.channels[0].counter = 0;
  EXPECT_EXIT((void)measure(*nativeEnergySource(), {std::numeric_limits<std::int64_t>::max()}), endedByTrap,
              "");
}

TEST_F(DarwinEnergySourceTest, LetsAMeasurementOutliveTheSource) {
  add("CPU Energy", "mJ");
  auto source = nativeEnergySource();
  const auto measurement = source->begin();
  source.reset();
  EXPECT_EQ(system.calls.count("dlclose"), 0);
  EXPECT_TRUE(measurement->finish());
}

TEST_F(DarwinEnergySourceTest, GivesEverythingBackWhenAMeasurementIsNotFinished) {
  add("CPU Energy", "mJ");
  EXPECT_NE(nativeEnergySource()->begin(), nullptr);
}

TEST_F(DarwinEnergySourceTest, LoadsTheLibraryOnce) {
  add("CPU Energy", "mJ");
  const auto source = nativeEnergySource();
  (void)measure(*source, {1});
  (void)measure(*source, {1});
  EXPECT_EQ(system.calls.count("dlopen"), 4);
}

TEST_F(DarwinEnergySourceTest, HasNoMeasurementAfterAFailingStep) {
  add("CPU Energy", "mJ");
  const auto source = nativeEnergySource();
  for (const char* function :
       {"IOReportCopyChannelsInGroup", "IOReportCreateSubscription", "IOReportCreateSamples"}) {
    system.calls.fail(function);
    EXPECT_EQ(source->begin(), nullptr) << function;
    system.calls.mend(function);
  }
}

TEST_F(DarwinEnergySourceTest, HasNoGainsWithoutASecondSampleOrADifference) {
  add("CPU Energy", "mJ");
  const auto source = nativeEnergySource();
  system.calls.failNth("IOReportCreateSamples", 2);
  EXPECT_EQ(measure(*source, {1}), std::nullopt);
  system.calls.fail("IOReportCreateSamplesDelta");
  EXPECT_EQ(measure(*source, {1}), std::nullopt);
}

TEST_F(DarwinEnergySourceTest, SaysWhyThereIsNoMeasurement) {
  add("CPU Energy", "mJ");
  const auto source = nativeEnergySource();
  EXPECT_EQ(source->diagnose(), (SourceDiagnosis{.source = "Energy counters",
                                                 .availability = SourceAvailability::available,
                                                 .reason = "Samples of the energy counters can be taken.",
                                                 .path = "IOReport",
                                                 .remedy = std::nullopt}));
  for (const char* function : {"IOReportCreateSubscription", "IOReportCreateSamples"}) {
    system.calls.failNth(function, 1);
    EXPECT_EQ(source->diagnose().availability, SourceAvailability::failed) << function;
  }
  system.ioReport.channels.clear();
  EXPECT_EQ(source->diagnose().reason, "The library has no channels of energy.");
  EXPECT_EQ(source->diagnose().availability, SourceAvailability::absent);
}

TEST_F(DarwinEnergySourceTest, IsAbsentWithoutTheLibrary) {
  system.calls.fail("dlopen");
  const auto source = nativeEnergySource();
  EXPECT_EQ(source->begin(), nullptr);
  EXPECT_EQ(source->diagnose(), (SourceDiagnosis{.source = "Energy counters",
                                                 .availability = SourceAvailability::absent,
                                                 .reason = "The system has no such library.",
                                                 .path = "IOReport",
                                                 .remedy = std::nullopt}));
}

TEST_F(DarwinEnergySourceTest, GivesEverythingBackWhicheverCallFails) {
  add("CPU Energy", "mJ");
  add("GPU Energy", "nJ");
  failEachCallIn([&] { (void)measure(*nativeEnergySource(), {1, 1}); });
}

}  // namespace
}  // namespace quellin
