#include <cerrno>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "QuellinCore/Platform/Linux/LinuxThermalSource.h"
#include "Support/FaultyTree.h"
#include "Support/TreeArchive.h"

namespace quellin {
namespace {

using testing_support::faultySys;
using testing_support::UnpackedTree;

constexpr const char* profilePath = "firmware/acpi/platform_profile";

LinuxThermalSource sourceOf(const UnpackedTree& tree, std::map<std::string, int> faults = {}) {
  return LinuxThermalSource{faultySys(tree, std::move(faults))};
}

ThermalSignals signalsOf(const char* fixture) { return sourceOf(UnpackedTree::fixture(fixture)).read(); }

TEST(LinuxThermalSourceTest, EachMachineGivesWhatItKnows) {
  EXPECT_EQ(signalsOf("linux/laptop-charge.tree"), (ThermalSignals{0, std::nullopt, true}));
  EXPECT_EQ(signalsOf("linux/laptop-energy.tree"), (ThermalSignals{2, std::nullopt, false}));
  EXPECT_EQ(signalsOf("linux/desktop.tree"), (ThermalSignals{0, std::nullopt, std::nullopt}));
  EXPECT_EQ(signalsOf("linux/server.tree"), ThermalSignals{});
  EXPECT_EQ(signalsOf("linux/virtual-machine.tree"), ThermalSignals{});
}

TEST(LinuxThermalSourceTest, OnlyTheLowPowerProfileIsLowPowerMode) {
  const UnpackedTree tree = UnpackedTree::fixture("linux/laptop-energy.tree");
  const std::vector<std::pair<const char*, bool>> profiles = {
      {"low-power", true}, {"quiet", false}, {"cool", false}, {"performance", false}, {"custom", false}};
  for (const auto& [profile, low] : profiles) {
    tree.write({"sys/firmware/acpi/platform_profile", 0644, profile});
    EXPECT_EQ(sourceOf(tree).read().isLowPowerMode, low) << profile;
  }
}

TEST(LinuxThermalSourceTest, OneSignalThatFailsLeavesTheOther) {
  const UnpackedTree tree = UnpackedTree::fixture("linux/laptop-charge.tree");
  EXPECT_EQ(sourceOf(tree, {{profilePath, EIO}}).read(), (ThermalSignals{0, std::nullopt, std::nullopt}));
  EXPECT_EQ(sourceOf(tree, {{"class/thermal", EIO}}).read(),
            (ThermalSignals{std::nullopt, std::nullopt, true}));
  EXPECT_EQ(sourceOf(tree, {{"class/thermal/cooling_device0/cur_state", EIO}}).read().stateCode, 0)
      << "the other throttle still speaks";
}

TEST(LinuxThermalSourceTest, TheDiagnosisSaysWhichSignalsThereAre) {
  const UnpackedTree laptop = UnpackedTree::fixture("linux/laptop-charge.tree");
  EXPECT_EQ(sourceOf(laptop).diagnose().reason,
            "Cooling devices give the thermal state. The platform profile gives low-power mode.");
  EXPECT_EQ(sourceOf(laptop).diagnose().availability, SourceAvailability::available);
  const SourceDiagnosis profileOnly = sourceOf(laptop, {{"class/thermal", ENOENT}}).diagnose();
  EXPECT_EQ(profileOnly.availability, SourceAvailability::available);
  EXPECT_EQ(profileOnly.path, laptop.path("sys/firmware/acpi/platform_profile"));
  EXPECT_EQ(
      profileOnly.reason,
      "No cooling device says how hard the machine throttles. The platform profile gives low-power mode.");
}

TEST(LinuxThermalSourceTest, TheDiagnosisTellsAbsenceFromRefusalAndFailure) {
  const UnpackedTree machine = UnpackedTree::fixture("linux/virtual-machine.tree");
  EXPECT_EQ(sourceOf(machine).diagnose().availability, SourceAvailability::absent);
  EXPECT_EQ(sourceOf(machine, {{"class/thermal", EACCES}}).diagnose().availability,
            SourceAvailability::notPermitted);
  EXPECT_EQ(sourceOf(machine, {{profilePath, EIO}}).diagnose().availability, SourceAvailability::failed);
  const UnpackedTree desktop = UnpackedTree::fixture("linux/desktop.tree");
  const SourceDiagnosis unread =
      sourceOf(desktop, {{"class/thermal/cooling_device0/cur_state", EIO}}).diagnose();
  EXPECT_EQ(unread.availability, SourceAvailability::failed);
  EXPECT_EQ(unread.path, desktop.path("sys/class/thermal/cooling_device0/cur_state"));
}

}  // namespace
}  // namespace quellin
