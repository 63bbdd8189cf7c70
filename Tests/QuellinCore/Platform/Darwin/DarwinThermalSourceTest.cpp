#include <limits>

#include "FakeDarwin/DarwinTest.h"
#include "QuellinCore/Platform/ThermalSource.h"
#include "QuellinCore/Services/ThermalService.h"

namespace quellin {
namespace {

constexpr const char* pressureName = "com.apple.system.thermalpressurelevel";

// Every test ends with the fixture's check that no token and no pool is left.
class DarwinThermalSourceTest : public fake::DarwinTest {
 protected:
  std::shared_ptr<ThermalSource> source = nativeThermalSource();
};

TEST_F(DarwinThermalSourceTest, ReadsTheThreeSignals) {
  system.objectiveC.answers = {{"thermalState", 2}, {"isLowPowerModeEnabled", 1}};
  system.notify.states[pressureName] = 3;
  EXPECT_EQ(source->read(), (ThermalSignals{.stateCode = 2, .pressureState = 3, .isLowPowerMode = true}));
  EXPECT_EQ(ThermalService{}.read(),
            (ThermalInfo{.state = ThermalState::serious, .pressure = 3, .isLowPowerMode = true}));
}

TEST_F(DarwinThermalSourceTest, HandsOnValuesThatNoRuleExpects) {
  system.objectiveC.answers = {{"thermalState", 7}, {"isLowPowerModeEnabled", 0}};
  system.notify.states[pressureName] = std::numeric_limits<std::uint64_t>::max();
  EXPECT_EQ(source->read(), (ThermalSignals{.stateCode = 7,
                                            .pressureState = std::numeric_limits<std::uint64_t>::max(),
                                            .isLowPowerMode = false}));
}

TEST_F(DarwinThermalSourceTest, RegistersATokenForEachReadAndCancelsIt) {
  (void)source->read();
  (void)source->read();
  EXPECT_EQ(system.calls.count("notify_register_check"), 2);
  EXPECT_EQ(system.calls.count("notify_cancel"), 2);
}

TEST_F(DarwinThermalSourceTest, HasNothingToCancelWhenTheRegistrationFails) {
  system.objectiveC.answers["isLowPowerModeEnabled"] = 1;
  system.calls.fail("notify_register_check", 9);
  EXPECT_EQ(source->read(),
            (ThermalSignals{.stateCode = 0, .pressureState = std::nullopt, .isLowPowerMode = true}));
  EXPECT_EQ(system.calls.count("notify_cancel"), 0);
  EXPECT_EQ(source->diagnose().reason,
            "The system publishes its signs of heat. Missing: the thermal pressure "
            "(notify_register_check failed: status 9).");
  EXPECT_EQ(ThermalService{}.read(),
            (ThermalInfo{.state = ThermalState::nominal, .pressure = 0, .isLowPowerMode = true}));
}

TEST_F(DarwinThermalSourceTest, CancelsTheTokenWhenTheStateCannotBeRead) {
  system.calls.fail("notify_get_state", 2);
  EXPECT_EQ(source->read().pressureState, std::nullopt);
  EXPECT_EQ(system.calls.count("notify_cancel"), 1);
}

TEST_F(DarwinThermalSourceTest, TakesAFailingCancelAsDone) {
  system.notify.states[pressureName] = 1;
  system.calls.fail("notify_cancel");
  EXPECT_EQ(source->read().pressureState, 1U);
}

TEST_F(DarwinThermalSourceTest, AsksNoQuestionThatTheSystemDoesNotKnow) {
  system.objectiveC.answers = {{"thermalState", 1}};
  EXPECT_EQ(source->read(),
            (ThermalSignals{.stateCode = 1, .pressureState = 0, .isLowPowerMode = std::nullopt}));
  EXPECT_EQ(source->diagnose().availability, SourceAvailability::available);
  EXPECT_EQ(source->diagnose().reason, "The system publishes its signs of heat. Missing: low-power mode.");
}

TEST_F(DarwinThermalSourceTest, HasNoStateWithoutTheClassOrItsInstance) {
  for (const char* function : {"objc_getClass", "objc_msgSend"}) {
    system.calls.fail(function);
    EXPECT_EQ(source->read(),
              (ThermalSignals{.stateCode = std::nullopt, .pressureState = 0, .isLowPowerMode = std::nullopt}))
        << function;
    system.calls.mend(function);
  }
}

TEST_F(DarwinThermalSourceTest, SaysWhatIsThereAndWhatIsMissing) {
  EXPECT_EQ(source->diagnose(), (SourceDiagnosis{.source = "Thermal state",
                                                 .availability = SourceAvailability::available,
                                                 .reason = "The system publishes its signs of heat.",
                                                 .path = pressureName,
                                                 .remedy = std::nullopt}));
  system.objectiveC.answers.clear();
  system.calls.fail("notify_get_state", 2);
  EXPECT_EQ(
      source->diagnose(),
      (SourceDiagnosis{.source = "Thermal state",
                       .availability = SourceAvailability::failed,
                       .reason = "No sign of heat can be read. Missing: the state of the process. Missing: "
                                 "the thermal pressure (notify_get_state failed: status 2). Missing: "
                                 "low-power mode.",
                       .path = pressureName,
                       .remedy = std::nullopt}));
}

TEST_F(DarwinThermalSourceTest, GivesEverythingBackWhicheverCallFails) {
  failEachCallIn([&] { (void)source->read(); });
}

}  // namespace
}  // namespace quellin
