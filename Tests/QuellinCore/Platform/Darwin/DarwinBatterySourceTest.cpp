#include <IOKit/IOKitLib.h>

#include "FakeDarwin/DarwinTest.h"
#include "QuellinCore/Platform/BatterySource.h"
#include "QuellinCore/Services/BatteryService.h"

namespace quellin {
namespace {

// Every test ends with the fixture's check that nothing is leaked, released too often or used after its
// release.
class DarwinBatterySourceTest : public fake::DarwinTest {
 protected:
  void addRegistryEntry() {
    system.ioKit.addEntry("AppleSmartBattery", [this] {
      return make.dictionary({{"AppleRawCurrentCapacity", make.integer(4000)},
                              {"AppleRawMaxCapacity", make.integer(5000)},
                              {"DesignCapacity", make.integer(6000)},
                              {"CurrentCapacity", make.integer(80)},
                              {"Voltage", make.integer(12600)},
                              {"Amperage", make.integer(-1500)},
                              {"Temperature", make.integer(3034)},
                              {"IsCharging", make.boolean(false)},
                              {"AdapterDetails", make.dictionary({{"Watts", make.integer(96)}})}});
    });
  }

  void addPowerSource() {
    system.powerSources.descriptions.emplace_back([this] {
      return make.dictionary({{"Time to Empty", make.integer(123)}, {"BatteryHealth", make.string("Good")}});
    });
  }

  fake::FakeCoreFoundation& make = system.coreFoundation;
};

TEST_F(DarwinBatterySourceTest, ReadsBothTables) {
  addRegistryEntry();
  addPowerSource();
  const auto info = BatteryService{}.read();
  ASSERT_TRUE(info);
  EXPECT_EQ(info->chargePercent, 80);
  EXPECT_DOUBLE_EQ(info->wattage, -18.9);
  EXPECT_DOUBLE_EQ(info->temperature, 30.25);
  EXPECT_EQ(info->adapterWatts, 96);
  EXPECT_EQ(info->timeToEmpty(), 123);
  EXPECT_EQ(info->health, "Good");
}

TEST_F(DarwinBatterySourceTest, HasNeitherTableOnAMachineWithoutABattery) {
  const auto source = nativeBatterySource();
  EXPECT_EQ(source->read(), BatteryTables{});
  EXPECT_EQ(source->diagnose(), (SourceDiagnosis{.source = "Battery",
                                                 .availability = SourceAvailability::absent,
                                                 .reason = "The registry has no such entry.",
                                                 .path = "AppleSmartBattery",
                                                 .remedy = std::nullopt}));
}

TEST_F(DarwinBatterySourceTest, MatchesTheEntryByNameNotByClass) {
  system.ioKit.addService("AppleSmartBattery");
  EXPECT_FALSE(nativeBatterySource()->read().registry);
}

TEST_F(DarwinBatterySourceTest, ReadsEachTableWithoutTheOther) {
  addRegistryEntry();
  const auto source = nativeBatterySource();
  EXPECT_TRUE(source->read().registry);
  EXPECT_FALSE(source->read().powerSource);
  EXPECT_EQ(source->diagnose().reason,
            "Only the registry entry can be read. The list of power sources is empty.");
  addPowerSource();
  system.calls.fail("IORegistryEntryCreateCFProperties", 5);
  EXPECT_FALSE(source->read().registry);
  EXPECT_TRUE(source->read().powerSource);
  EXPECT_EQ(source->diagnose().reason,
            "Only the list of power sources can be read. IORegistryEntryCreateCFProperties failed: "
            "error 0x00000005");
  EXPECT_EQ(source->diagnose().availability, SourceAvailability::available);
}

TEST_F(DarwinBatterySourceTest, SaysThatBothTablesCanBeRead) {
  addRegistryEntry();
  addPowerSource();
  EXPECT_EQ(nativeBatterySource()->diagnose(),
            (SourceDiagnosis{.source = "Battery",
                             .availability = SourceAvailability::available,
                             .reason = "The registry entry and the list of power sources can be read.",
                             .path = "AppleSmartBattery",
                             .remedy = std::nullopt}));
}

TEST_F(DarwinBatterySourceTest, TakesTheFirstPowerSourceOnly) {
  addPowerSource();
  system.powerSources.descriptions.emplace_back(
      [this] { return make.dictionary({{"BatteryHealth", make.string("Poor")}}); });
  EXPECT_EQ(nativeBatterySource()->read().powerSource->string("BatteryHealth"), "Good");
}

TEST_F(DarwinBatterySourceTest, TakesNoOtherPowerSourceWhenTheFirstIsNoDictionary) {
  system.powerSources.descriptions.emplace_back([this] { return make.string("description"); });
  addPowerSource();
  EXPECT_FALSE(nativeBatterySource()->read().powerSource);
}

TEST_F(DarwinBatterySourceTest, TakesNothingThatIsNoDictionary) {
  system.ioKit.addEntry("AppleSmartBattery", [this] { return make.string("properties"); });
  system.powerSources.descriptions.emplace_back([this] { return make.string("description"); });
  const auto source = nativeBatterySource();
  EXPECT_EQ(source->read(), BatteryTables{});
  EXPECT_EQ(source->diagnose().availability, SourceAvailability::absent);
  EXPECT_EQ(source->diagnose().reason, "The registry entry has no table of properties.");
}

TEST_F(DarwinBatterySourceTest, TakesNoPropertiesAtAllForNone) {
  system.ioKit.addEntry("AppleSmartBattery", [] { return nullptr; });
  EXPECT_FALSE(nativeBatterySource()->read().registry);
}

TEST_F(DarwinBatterySourceTest, IsNotPermittedWhenTheKernelRefusesTheProperties) {
  addRegistryEntry();
  system.calls.fail("IORegistryEntryCreateCFProperties", kIOReturnNotPermitted);
  EXPECT_EQ(nativeBatterySource()->diagnose().availability, SourceAvailability::notPermitted);
}

TEST_F(DarwinBatterySourceTest, LosesOneTableWhenACallOfItFails) {
  addRegistryEntry();
  addPowerSource();
  const auto source = nativeBatterySource();
  for (const char* function :
       {"IOServiceNameMatching", "IOServiceGetMatchingService", "IORegistryEntryCreateCFProperties"}) {
    system.calls.failNth(function, 1);
    const BatteryTables tables = source->read();
    EXPECT_FALSE(tables.registry) << function;
    EXPECT_TRUE(tables.powerSource) << function;
  }
  for (const char* function :
       {"IOPSCopyPowerSourcesInfo", "IOPSCopyPowerSourcesList", "IOPSGetPowerSourceDescription"}) {
    system.calls.failNth(function, 1);
    const BatteryTables tables = source->read();
    EXPECT_TRUE(tables.registry) << function;
    EXPECT_FALSE(tables.powerSource) << function;
  }
}

TEST_F(DarwinBatterySourceTest, GivesEverythingBackWhicheverCallFails) {
  addRegistryEntry();
  addPowerSource();
  const auto source = nativeBatterySource();
  failEachCallIn([&] { (void)source->read(); });
}

}  // namespace
}  // namespace quellin
