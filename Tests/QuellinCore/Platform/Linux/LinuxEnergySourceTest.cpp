#include <cerrno>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "QuellinCore/Platform/Linux/EnergyZones.h"
#include "QuellinCore/Platform/Linux/LinuxEnergySource.h"
#include "Support/FaultyTree.h"
#include "Support/TreeArchive.h"

namespace quellin {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::Optional;
using testing_support::faultySys;
using testing_support::UnpackedTree;

constexpr const char* package0 = "class/powercap/intel-rapl:0/energy_uj";
constexpr const char* package1 = "class/powercap/intel-rapl:1/energy_uj";
constexpr const char* graphics0 = "class/powercap/intel-rapl:0:1/energy_uj";

void setCounter(const UnpackedTree& tree, const std::string& path, const std::string& microjoules) {
  tree.write({"sys/" + path, 0600, microjoules + "\n"});
}

TEST(LinuxEnergySourceTest, OnlyPackagesGraphicsAndMemoryAreZones) {
  const UnpackedTree tree = UnpackedTree::fixture("linux/laptop-charge.tree");
  const auto zones = readEnergyZones(*directoryTree(tree.path("sys")));
  ASSERT_TRUE(zones.has_value());
  EXPECT_THAT(*zones,
              ElementsAre(EnergyZone{EnergyDomain::package, "class/powercap/intel-rapl:0", 262143328850},
                          EnergyZone{EnergyDomain::graphics, "class/powercap/intel-rapl:0:1", 262143328850},
                          EnergyZone{EnergyDomain::memory, "class/powercap/intel-rapl:0:2", 65712999613}));
}

TEST(LinuxEnergySourceTest, EveryDieOfAPackageIsAPackage) {
  const UnpackedTree tree = UnpackedTree::fixture("linux/server.tree");
  tree.write({"sys/class/powercap/intel-rapl:1/name", 0444, "package-0-die-1\n"});
  EXPECT_EQ(readEnergyZones(*directoryTree(tree.path("sys")))->at(2).domain, EnergyDomain::package);
}

TEST(LinuxEnergySourceTest, AZoneThatDoesNotSayWhatItCountsLeavesNoTotalComplete) {
  const UnpackedTree tree = UnpackedTree::fixture("linux/server.tree");
  LinuxEnergySource source{faultySys(tree, {{"class/powercap/intel-rapl:1/name", EIO}})};
  EXPECT_EQ(source.begin(), nullptr);
  EXPECT_EQ(source.diagnose().availability, SourceAvailability::failed);
  EXPECT_EQ(source.diagnose().path, tree.path("sys/class/powercap/intel-rapl:1/name"));
}

TEST(LinuxEnergySourceTest, TheGainsOfALaptopSplitProcessorAndGraphics) {
  const UnpackedTree tree = UnpackedTree::fixture("linux/laptop-charge.tree");
  LinuxEnergySource source{faultySys(tree)};
  const auto measurement = source.begin();
  ASSERT_NE(measurement, nullptr);
  setCounter(tree, package0, "1001500000");
  setCounter(tree, "class/powercap/intel-rapl:0:0/energy_uj", "700900000");
  setCounter(tree, graphics0, "200400000");
  EXPECT_THAT(measurement->finish(),
              Optional(ElementsAre(EnergyChannel{"CPU Energy", 1100000000},
                                   EnergyChannel{"GPU Energy", 400000000}, EnergyChannel{"DRAM0", 0})));
}

TEST(LinuxEnergySourceTest, TheGainsOfAServerAddUpAcrossAWrap) {
  const UnpackedTree tree = UnpackedTree::fixture("linux/server.tree");
  LinuxEnergySource source{faultySys(tree)};
  const auto measurement = source.begin();
  ASSERT_NE(measurement, nullptr);
  setCounter(tree, package0, "671150");  // 328850 up to the range's end, 671150 after it
  setCounter(tree, package1, "82000000");
  setCounter(tree, "class/powercap/intel-rapl:1:0/energy_uj", "6000500");
  EXPECT_THAT(measurement->finish(),
              Optional(ElementsAre(EnergyChannel{"CPU Energy", 3000000000}, EnergyChannel{"DRAM0", 500000})));
}

TEST(LinuxEnergySourceTest, AZoneThatFailsTakesOnlyItsTotalsAlong) {
  const UnpackedTree tree = UnpackedTree::fixture("linux/server.tree");
  const auto sys = faultySys(tree);
  LinuxEnergySource source{sys};
  const auto measurement = source.begin();
  sys->setFault(package1, EIO);
  EXPECT_THAT(measurement->finish(), Optional(ElementsAre(EnergyChannel{"DRAM0", 0})));
}

TEST(LinuxEnergySourceTest, WithoutASecondSampleThereIsNoResult) {
  const UnpackedTree tree = UnpackedTree::fixture("linux/desktop.tree");
  const auto sys = faultySys(tree);
  LinuxEnergySource source{sys};
  const auto measurement = source.begin();
  sys->setFault(package0, EIO);
  EXPECT_EQ(measurement->finish(), std::nullopt);
}

TEST(LinuxEnergySourceTest, CountersThatOnlyRootMayReadAreNotPermitted) {
  const UnpackedTree tree = UnpackedTree::fixture("linux/desktop.tree");
  LinuxEnergySource source{faultySys(tree, {{package0, EACCES}})};
  EXPECT_EQ(source.begin(), nullptr);
  const SourceDiagnosis diagnosis = source.diagnose();
  EXPECT_EQ(diagnosis.availability, SourceAvailability::notPermitted);
  EXPECT_EQ(diagnosis.path, tree.path("sys/class/powercap/intel-rapl:0/energy_uj"));
  EXPECT_EQ(diagnosis.reason, "Reading failed: Permission denied.");
  EXPECT_THAT(diagnosis.remedy, Optional(HasSubstr("root")));
}

TEST(LinuxEnergySourceTest, CountersThatCannotBeReadHaveFailed) {
  const UnpackedTree tree = UnpackedTree::fixture("linux/desktop.tree");
  LinuxEnergySource source{faultySys(tree, {{package0, EIO}})};
  EXPECT_EQ(source.begin(), nullptr);
  EXPECT_EQ(source.diagnose().availability, SourceAvailability::failed);
}

TEST(LinuxEnergySourceTest, AMachineWithoutCountersHasNone) {
  const UnpackedTree tree = UnpackedTree::fixture("linux/virtual-machine.tree");
  LinuxEnergySource source{faultySys(tree)};
  EXPECT_EQ(source.begin(), nullptr);
  const SourceDiagnosis absence{.source = "Energy counters",
                                .availability = SourceAvailability::absent,
                                .reason = "The kernel publishes no energy counter of a processor package.",
                                .path = tree.path("sys/class/powercap"),
                                .remedy = std::nullopt};
  EXPECT_EQ(source.diagnose(), absence);
  tree.write({"sys/class/powercap/intel-rapl/enabled", 0444, "1\n"});
  EXPECT_EQ(source.begin(), nullptr);
  EXPECT_EQ(source.diagnose(), absence);
}

TEST(LinuxEnergySourceTest, ACounterThatCannotBeReadDoesNotHideTheOthers) {
  const UnpackedTree tree = UnpackedTree::fixture("linux/server.tree");
  LinuxEnergySource source{faultySys(tree, {{package1, EACCES}})};
  EXPECT_NE(source.begin(), nullptr);
  const SourceDiagnosis diagnosis = source.diagnose();
  EXPECT_EQ(diagnosis.availability, SourceAvailability::available);
  EXPECT_EQ(diagnosis.reason, "Read: intel-rapl:0, intel-rapl:0:0, intel-rapl:1:0. " + tree.path("sys/") +
                                  package1 + ": Permission denied.");
  EXPECT_THAT(diagnosis.remedy, Optional(HasSubstr("root")));
}

TEST(LinuxEnergySourceTest, TheDiagnosisTellsAbsenceFromRefusalAndFailure) {
  const UnpackedTree tree = UnpackedTree::fixture("linux/server.tree");
  const std::map<int, SourceAvailability> verdicts = {{ENOENT, SourceAvailability::absent},
                                                      {EACCES, SourceAvailability::notPermitted},
                                                      {EIO, SourceAvailability::failed}};
  for (const auto& [code, availability] : verdicts) {
    LinuxEnergySource source{faultySys(tree, {{"class/powercap", code}})};
    EXPECT_EQ(source.diagnose().availability, availability) << code;
    EXPECT_EQ(source.diagnose().path, tree.path("sys/class/powercap")) << code;
  }
}

TEST(LinuxEnergySourceTest, TheDiagnosisNamesTheZones) {
  const UnpackedTree tree = UnpackedTree::fixture("linux/server.tree");
  const SourceDiagnosis diagnosis = LinuxEnergySource{faultySys(tree)}.diagnose();
  EXPECT_EQ(diagnosis.availability, SourceAvailability::available);
  EXPECT_EQ(diagnosis.reason, "Read: intel-rapl:0, intel-rapl:0:0, intel-rapl:1, intel-rapl:1:0.");
}

}  // namespace
}  // namespace quellin
