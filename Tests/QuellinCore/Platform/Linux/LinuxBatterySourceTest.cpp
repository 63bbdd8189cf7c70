#include <cerrno>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "QuellinCore/Platform/Linux/LinuxBatterySource.h"
#include "Support/FaultyTree.h"
#include "Support/TreeArchive.h"

namespace quellin {
namespace {

using testing::HasSubstr;
using testing_support::faultySys;
using testing_support::UnpackedTree;

LinuxBatterySource sourceOf(const UnpackedTree& tree, std::map<std::string, int> faults = {}) {
  return LinuxBatterySource{faultySys(tree, std::move(faults))};
}

TEST(LinuxBatterySourceTest, ABatteryThatCountsChargeFillsTheTables) {
  const UnpackedTree tree = UnpackedTree::fixture("linux/laptop-charge.tree");
  const BatteryTables tables = sourceOf(tree).read();
  EXPECT_EQ(tables.registry, (PropertyTable{{"CurrentCapacity", 62},
                                            {"AppleRawCurrentCapacity", 3100},
                                            {"AppleRawMaxCapacity", 5000},
                                            {"DesignCapacity", 5500},
                                            {"CycleCount", 214},
                                            {"Voltage", 11850},
                                            {"InstantAmperage", -1250},
                                            {"Temperature", 3050},
                                            {"InstantTimeToEmpty", 149},
                                            {"BatterySerialNumber", "12877"},
                                            {"IsCharging", false},
                                            {"FullyCharged", false},
                                            {"ExternalConnected", false}}));
  EXPECT_EQ(tables.powerSource, (PropertyTable{{"BatteryHealth", "Good"}}));
}

TEST(LinuxBatterySourceTest, TwoBatteriesThatCountEnergyAreOne) {
  const UnpackedTree tree = UnpackedTree::fixture("linux/laptop-energy.tree");
  const BatteryTables tables = sourceOf(tree).read();
  EXPECT_EQ(tables.registry, (PropertyTable{{"CurrentCapacity", 60},
                                            {"AppleRawCurrentCapacity", 2400},
                                            {"AppleRawMaxCapacity", 4000},
                                            {"DesignCapacity", 4800},
                                            {"CycleCount", 31},
                                            {"Voltage", 12500},
                                            {"InstantAmperage", 1760},
                                            {"BatterySerialNumber", "4411"},
                                            {"IsCharging", true},
                                            {"FullyCharged", false},
                                            {"AdapterDetails", PropertyTable{{"Watts", 65}}},
                                            {"ExternalConnected", true}}));
  EXPECT_EQ(tables.powerSource, std::nullopt);
}

TEST(LinuxBatterySourceTest, MachinesWithoutABatteryOfTheirOwnHaveNoTables) {
  for (const char* name : {"linux/desktop.tree", "linux/server.tree", "linux/virtual-machine.tree"}) {
    const UnpackedTree tree = UnpackedTree::fixture(name);
    EXPECT_EQ(sourceOf(tree).read(), BatteryTables{}) << name;
    EXPECT_EQ(sourceOf(tree).diagnose(),
              (SourceDiagnosis{.source = "Battery",
                               .availability = SourceAvailability::absent,
                               .reason = "None of the machine's power supplies is a battery of its own.",
                               .path = tree.path("sys/class/power_supply"),
                               .remedy = std::nullopt}))
        << name;
  }
}

TEST(LinuxBatterySourceTest, APropertyThatCannotBeReadLosesOnlyItself) {
  const UnpackedTree tree = UnpackedTree::fixture("linux/laptop-charge.tree");
  LinuxBatterySource source = sourceOf(tree, {{"class/power_supply/BAT0/serial_number", EACCES},
                                              {"class/power_supply/BAT0/temp", ENODATA},
                                              {"class/power_supply/BAT0/current_now", EIO}});
  const auto registry = source.read().registry.value();
  EXPECT_EQ(registry.find("BatterySerialNumber"), nullptr);
  EXPECT_EQ(registry.find("Temperature"), nullptr);
  EXPECT_EQ(registry.find("InstantAmperage"), nullptr);
  EXPECT_EQ(registry.integer("Voltage"), 11850);
  const SourceDiagnosis diagnosis = source.diagnose();
  EXPECT_EQ(diagnosis.availability, SourceAvailability::available);
  EXPECT_THAT(diagnosis.reason, HasSubstr("BAT0/serial_number: Permission denied."));
  EXPECT_THAT(diagnosis.reason, HasSubstr("BAT0/current_now: Input/output error."));
  EXPECT_THAT(diagnosis.reason, Not(HasSubstr("temp")));
  EXPECT_EQ(diagnosis.remedy, "Run as root: the file is readable for its owner only.");
}

TEST(LinuxBatterySourceTest, GarbageOfTheFirmwareIsLeftOut) {
  const UnpackedTree tree = UnpackedTree::fixture("linux/laptop-charge.tree");
  tree.write({"sys/class/power_supply/BAT0/charge_full", 0444, "9223372036854775807\n"});
  tree.write({"sys/class/power_supply/BAT0/voltage_now", 0444, "\n"});
  const auto registry = sourceOf(tree).read().registry.value();
  EXPECT_EQ(registry.find("AppleRawMaxCapacity"), nullptr);
  EXPECT_EQ(registry.find("Voltage"), nullptr);
}

TEST(LinuxBatterySourceTest, AProgrammableSupplyCountsAsConnected) {
  const UnpackedTree tree = UnpackedTree::fixture("linux/laptop-charge.tree");
  for (const auto& [online, connected] :
       std::map<std::string, bool>{{"0", false}, {"1", true}, {"2", true}}) {
    tree.write({"sys/class/power_supply/AC/online", 0444, online + "\n"});
    EXPECT_EQ(sourceOf(tree).read().registry->boolean("ExternalConnected"), connected) << online;
  }
}

TEST(LinuxBatterySourceTest, WithoutASupplyThatSaysSoNothingIsKnownOfExternalPower) {
  const UnpackedTree tree = UnpackedTree::fixture("linux/laptop-charge.tree");
  EXPECT_EQ(
      sourceOf(tree, {{"class/power_supply/AC/online", EIO}}).read().registry->find("ExternalConnected"),
      nullptr);
}

TEST(LinuxBatterySourceTest, TheDiagnosisNamesTheBatteriesAndTheApproximation) {
  const UnpackedTree charge = UnpackedTree::fixture("linux/laptop-charge.tree");
  EXPECT_EQ(sourceOf(charge).diagnose(), (SourceDiagnosis{.source = "Battery",
                                                          .availability = SourceAvailability::available,
                                                          .reason = "BAT0 is read.",
                                                          .path = charge.path("sys/class/power_supply/BAT0"),
                                                          .remedy = std::nullopt}));
  const UnpackedTree energy = UnpackedTree::fixture("linux/laptop-energy.tree");
  EXPECT_EQ(
      sourceOf(energy).diagnose().reason,
      "BAT0, BAT1 are read as one battery. The driver counts energy: capacities in mAh are approximate.");
}

TEST(LinuxBatterySourceTest, TheDiagnosisTellsAbsenceFromRefusalAndFailure) {
  const UnpackedTree tree = UnpackedTree::fixture("linux/laptop-charge.tree");
  const std::map<int, SourceAvailability> verdicts = {{ENOENT, SourceAvailability::absent},
                                                      {EACCES, SourceAvailability::notPermitted},
                                                      {EIO, SourceAvailability::failed}};
  for (const auto& [code, availability] : verdicts) {
    EXPECT_EQ(sourceOf(tree, {{"class/power_supply", code}}).diagnose().availability, availability) << code;
  }
  const SourceDiagnosis untyped = sourceOf(tree, {{"class/power_supply/BAT0/type", EIO}}).diagnose();
  EXPECT_EQ(untyped.availability, SourceAvailability::failed);
  EXPECT_EQ(untyped.path, tree.path("sys/class/power_supply/BAT0/type"));
}

}  // namespace
}  // namespace quellin
