#include <cerrno>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "QuellinCore/Platform/Linux/LinuxHIDSensorSource.h"
#include "Support/FaultyTree.h"
#include "Support/TreeArchive.h"

namespace quellin {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using testing_support::faultySys;
using testing_support::UnpackedTree;
using Service = HIDTemperatureService;

LinuxHIDSensorSource sourceOf(const UnpackedTree& tree, std::map<std::string, int> faults = {}) {
  return LinuxHIDSensorSource{faultySys(tree, std::move(faults))};
}

TEST(LinuxHIDSensorSourceTest, InputsAreNamedByLabelElseByChipInNaturalOrder) {
  const UnpackedTree tree = UnpackedTree::fixture("linux/laptop-charge.tree");
  EXPECT_THAT(sourceOf(tree).temperatureServices(),
              ElementsAre(Service{"acpitz", 47.8}, Service{"CPU", 48}, Service{"thinkpad", -4},
                          Service{"Package id 0", 52}, Service{"Core 0", 51.5}, Service{"Core 8", 50.125}));
}

TEST(LinuxHIDSensorSourceTest, AnInputThatItsChipCallsFaultyIsLeftOut) {
  const UnpackedTree tree = UnpackedTree::fixture("linux/desktop.tree");
  EXPECT_THAT(sourceOf(tree).temperatureServices(),
              ElementsAre(Service{"SYSTIN", 34}, Service{"nct6798", 29.5}));
}

TEST(LinuxHIDSensorSourceTest, AnInputThatCannotBeReadIsLeftOut) {
  const UnpackedTree tree = UnpackedTree::fixture("linux/laptop-charge.tree");
  for (const int code : {ENODATA, EIO, EACCES}) {
    EXPECT_THAT(sourceOf(tree, {{"class/hwmon/hwmon0/temp1_input", code}}).temperatureServices(), SizeIs(5))
        << code;
  }
}

TEST(LinuxHIDSensorSourceTest, WithoutLabelAndChipNameAnInputHasNoName) {
  const UnpackedTree tree{
      "=== sys/class/hwmon/hwmon0/temp1_input 0444\n20000\n=== sys/class/hwmon/hwmon0/temp1_label 0444\n\n"};
  EXPECT_THAT(sourceOf(tree).temperatureServices(), ElementsAre(Service{std::nullopt, 20}));
}

TEST(LinuxHIDSensorSourceTest, MachinesWithoutSensorsHaveNone) {
  const UnpackedTree tree = UnpackedTree::fixture("linux/virtual-machine.tree");
  EXPECT_THAT(sourceOf(tree).temperatureServices(), IsEmpty());
  EXPECT_EQ(sourceOf(tree).diagnose(),
            (SourceDiagnosis{
                .source = "Temperature sensors",
                .availability = SourceAvailability::absent,
                .reason = "No monitoring chip of the machine has a temperature input that is switched on.",
                .path = tree.path("sys/class/hwmon"),
                .remedy = std::nullopt}));
}

TEST(LinuxHIDSensorSourceTest, NamesAreUTF8WhateverTheFirmwareSays) {
  const UnpackedTree tree{
      "=== sys/class/hwmon/hwmon0/temp1_input 0444\n20000\n"
      "=== sys/class/hwmon/hwmon0/temp1_label 0444\nCPU \xFF\n"};
  EXPECT_THAT(sourceOf(tree).temperatureServices(), ElementsAre(Service{"CPU \uFFFD", 20}));
}

TEST(LinuxHIDSensorSourceTest, TheDiagnosisTellsSwitchedOffFromFailing) {
  const UnpackedTree tree{"=== sys/class/hwmon/hwmon0/temp1_input 0444\n20000\n"};
  EXPECT_EQ(sourceOf(tree).diagnose().availability, SourceAvailability::available);
  EXPECT_EQ(sourceOf(tree).diagnose().reason, "1 temperature input is read.");
  const std::map<int, SourceAvailability> verdicts = {{ENODATA, SourceAvailability::absent},
                                                      {EACCES, SourceAvailability::notPermitted},
                                                      {EIO, SourceAvailability::failed}};
  for (const auto& [code, availability] : verdicts) {
    EXPECT_EQ(sourceOf(tree, {{"class/hwmon/hwmon0/temp1_input", code}}).diagnose().availability,
              availability)
        << code;
    const auto whole = sourceOf(tree, {{"class/hwmon", code}}).diagnose();
    EXPECT_EQ(whole.availability, availability) << code;
    EXPECT_EQ(whole.path, tree.path("sys/class/hwmon"));
  }
}

}  // namespace
}  // namespace quellin
