#include <cerrno>
#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "QuellinCore/Platform/Linux/LinuxSMCSource.h"
#include "QuellinCore/Services/SMCService.h"
#include "Support/FaultyTree.h"
#include "Support/TreeArchive.h"

namespace quellin {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using testing_support::faultySys;
using testing_support::UnpackedTree;

std::shared_ptr<LinuxSMCSource> sourceOf(const UnpackedTree& tree, std::map<std::string, int> faults = {}) {
  return std::make_shared<LinuxSMCSource>(faultySys(tree, std::move(faults)));
}

std::vector<std::int64_t> speeds(const std::shared_ptr<LinuxSMCSource>& source) {
  std::vector<std::int64_t> result;
  for (const FanInfo& fan : SMCService{source}.readFans()) result.push_back(fan.currentRPM);
  return result;
}

TEST(LinuxSMCSourceTest, FansAreReadLikeThoseOfAnSMC) {
  const UnpackedTree tree = UnpackedTree::fixture("linux/desktop.tree");
  const auto fans = SMCService{sourceOf(tree)}.readFans();
  ASSERT_THAT(fans, SizeIs(2));
  EXPECT_EQ(fans[0], (FanInfo{.id = 0, .name = "Fan 0", .currentRPM = 842, .minRPM = 300, .maxRPM = 0}));
  EXPECT_EQ(fans[1], (FanInfo{.id = 1, .name = "Fan 1", .currentRPM = 1204, .minRPM = 0, .maxRPM = 2200}));
}

TEST(LinuxSMCSourceTest, AFanAtRestCountsAndAFanThatCannotBeReadDoesNot) {
  const UnpackedTree tree = UnpackedTree::fixture("linux/laptop-charge.tree");
  EXPECT_THAT(speeds(sourceOf(tree)), ElementsAre(2410, 0));
  for (const int code : {ENODATA, EIO}) {
    EXPECT_THAT(speeds(sourceOf(tree, {{"class/hwmon/hwmon2/fan1_input", code}})), ElementsAre(0)) << code;
  }
}

TEST(LinuxSMCSourceTest, OfMoreFansThanReadersBelieveTheFirstArePublished) {
  const UnpackedTree tree = UnpackedTree::fixture("linux/server.tree");
  const auto source = sourceOf(tree);
  EXPECT_THAT(speeds(source), ElementsAre(7010, 7020, 7030, 7040, 7050, 7060, 7070, 7080, 7090, 7100, 7110,
                                          7120, 7130, 7140, 7150));
  EXPECT_EQ(source->diagnose().reason, "The first 15 of 18 fans are read.");
}

TEST(LinuxSMCSourceTest, KeysThatWouldBeCutToTheSameNameAreLeftOut) {
  const UnpackedTree tree = UnpackedTree::fixture("linux/server.tree");
  for (const int fan : {10, 11}) {
    const std::string stem = "sys/class/hwmon/hwmon2/fan" + std::to_string(fan);
    tree.write({stem + "_min", 0444, "100\n"});
    tree.write({stem + "_max", 0444, "9000\n"});
  }
  const auto fans = SMCService{sourceOf(tree)}.readFans();
  EXPECT_EQ(fans.at(9).minRPM, 100);
  EXPECT_EQ(fans.at(9).maxRPM, 9000);
  EXPECT_EQ(fans.at(10).minRPM, 0);
  EXPECT_EQ(fans.at(10).maxRPM, 0);
}

TEST(LinuxSMCSourceTest, AMachineWithoutFansHasNoSMC) {
  for (const char* name : {"linux/laptop-energy.tree", "linux/virtual-machine.tree"}) {
    const UnpackedTree tree = UnpackedTree::fixture(name);
    EXPECT_EQ(sourceOf(tree)->open(), nullptr) << name;
    EXPECT_EQ(sourceOf(tree)->diagnose().availability, SourceAvailability::absent) << name;
  }
}

TEST(LinuxSMCSourceTest, NoTemperatureIsAskedOfIt) {
  const UnpackedTree tree = UnpackedTree::fixture("linux/desktop.tree");
  EXPECT_THAT(SMCService{sourceOf(tree)}.readTemperatures(), IsEmpty());
}

TEST(LinuxSMCSourceTest, TheDiagnosisTellsSwitchedOffFromFailing) {
  const UnpackedTree tree{"=== sys/class/hwmon/hwmon0/fan1_input 0444\n900\n"};
  EXPECT_EQ(sourceOf(tree)->diagnose().reason, "1 fan is read.");
  const std::map<int, SourceAvailability> verdicts = {{ENODATA, SourceAvailability::absent},
                                                      {EACCES, SourceAvailability::notPermitted},
                                                      {EIO, SourceAvailability::failed}};
  for (const auto& [code, availability] : verdicts) {
    EXPECT_EQ(sourceOf(tree, {{"class/hwmon/hwmon0/fan1_input", code}})->diagnose().availability,
              availability)
        << code;
    EXPECT_EQ(sourceOf(tree, {{"class/hwmon", code}})->diagnose().availability, availability) << code;
    EXPECT_EQ(sourceOf(tree, {{"class/hwmon", code}})->open(), nullptr) << code;
  }
}

}  // namespace
}  // namespace quellin
