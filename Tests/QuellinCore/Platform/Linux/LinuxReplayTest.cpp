#include <fstream>
#include <map>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "QuellinCore/Platform/Linux/LinuxBatterySource.h"
#include "QuellinCore/Platform/Linux/LinuxEnergySource.h"
#include "QuellinCore/Platform/Linux/LinuxHIDSensorSource.h"
#include "QuellinCore/Platform/Linux/LinuxProcessSource.h"
#include "QuellinCore/Platform/Linux/LinuxSMCSource.h"
#include "QuellinCore/Platform/Linux/LinuxThermalSource.h"
#include "Support/ManualClock.h"
#include "Support/Replay.h"
#include "Support/TreeArchive.h"

namespace quellin {
namespace {

using testing::IsEmpty;
using testing::Not;
using namespace testing_support;

/// A Linux machine of a fixture tree, with the processes of another. Whenever somebody sleeps, its energy
/// counters and its processes move on by what the test says.
class LinuxReplayTest : public testing::TestWithParam<const char*> {
 protected:
  LinuxReplayTest() {
    clock.onSleep = [this](Seconds) {
      for (const auto& zone : zones) addMicrojoules("sys/" + zone, 2'500'000);
      cpuTimes.at(42) += 150'000'000;
    };
    for (const char* zone : {"intel-rapl:0", "intel-rapl:0:1", "intel-rapl:0:2", "intel-rapl:1"}) {
      const std::string path = std::string{"class/powercap/"} + zone + "/energy_uj";
      if (std::ifstream{tree.path("sys/" + path)}) zones.push_back(path);
    }
  }

  void addMicrojoules(const std::string& path, std::int64_t gain) const {
    std::int64_t counter = 0;
    std::ifstream{tree.path(path)} >> counter;
    tree.write({path, 0600, std::to_string(counter + gain) + "\n"});
  }

  [[nodiscard]] PlatformSources sources() const {
    const auto sys = directoryTree(tree.path("sys"));
    const ProcessClock cpuTime = [this](std::int32_t pid) {
      const auto found = cpuTimes.find(pid);
      return found == cpuTimes.end() ? std::nullopt : std::optional{found->second};
    };
    return {.smc = std::make_shared<LinuxSMCSource>(sys),
            .hid = std::make_shared<LinuxHIDSensorSource>(sys),
            .battery = std::make_shared<LinuxBatterySource>(sys),
            .energy = std::make_shared<LinuxEnergySource>(sys),
            .thermal = std::make_shared<LinuxThermalSource>(sys),
            .processes =
                std::make_shared<LinuxProcessSource>(directoryTree(processTree.path("proc")), cpuTime, 100)};
  }

  UnpackedTree tree = UnpackedTree::fixture(std::string{"linux/"} + GetParam() + ".tree");
  UnpackedTree processTree = UnpackedTree::fixture("linux/processes.tree");
  TemporaryFolder folder;
  std::vector<std::string> zones;
  std::map<std::int32_t, std::uint64_t> cpuTimes = {{1, 3750000123}, {42, 9999999999}};
  ManualMonotonicClock clock;
  ManualWallClock wallClock{instantAt(1741081260.25)};
};

TEST_P(LinuxReplayTest, ReadsAsTheMachineDid) {
  const Reading live = readEverything(sources(), clock, wallClock);
  ASSERT_THAT(live.activity, Not(IsEmpty()));
  ASSERT_EQ(live.state.power.has_value(), !zones.empty());
  const auto player =
      captureAndOpen(folder.pathOf("trace"), sources(), clock, wallClock, SerialNumbers::kept);
  EXPECT_EQ(readEverything(player), live);
}

TEST_P(LinuxReplayTest, SaysOfEachSourceWhetherTheMachineHadIt) {
  const auto live = sources().diagnose();
  const std::string path = folder.pathOf("trace");
  const auto player = captureAndOpen(path, sources(), clock, wallClock, SerialNumbers::redacted);
  const auto replayed = recordedSources(player).diagnose();
  ASSERT_EQ(replayed.size(), live.size());
  for (std::size_t index = 0; index < live.size(); ++index) {
    EXPECT_EQ(replayed[index].availability, live[index].availability) << live[index].reason;
    EXPECT_EQ(replayed[index].source, live[index].source);
    EXPECT_EQ(replayed[index].path, path);
  }
}

TEST_P(LinuxReplayTest, WithoutSerialNumbersNothingElseIsLost) {
  Reading live = readEverything(sources(), clock, wallClock);
  const auto player =
      captureAndOpen(folder.pathOf("trace"), sources(), clock, wallClock, SerialNumbers::redacted);
  if (live.state.battery && live.state.battery->serialNumber) {
    EXPECT_THAT(contentOf(folder.pathOf("trace")),
                Not(testing::HasSubstr(*live.state.battery->serialNumber)));
    live.state.battery->serialNumber = "redacted";
  }
  EXPECT_EQ(readEverything(player), live);
}

INSTANTIATE_TEST_SUITE_P(Machine, LinuxReplayTest,
                         testing::Values("desktop", "laptop-charge", "laptop-energy", "server",
                                         "virtual-machine"),
                         [](const auto& machine) {
                           std::string name = machine.param;
                           std::ranges::replace(name, '-', '_');
                           return name;
                         });

}  // namespace
}  // namespace quellin
