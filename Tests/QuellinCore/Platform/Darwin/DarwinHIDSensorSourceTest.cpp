#include <dlfcn.h>
#include <string>
#include <vector>

#include "FakeDarwin/DarwinTest.h"
#include "QuellinCore/Platform/HIDSensorSource.h"
#include "QuellinCore/Services/HIDSensorService.h"

namespace quellin {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// Every test ends with the fixture's check that nothing is leaked, closed twice or released too often.
class DarwinHIDSensorSourceTest : public fake::DarwinTest {
 protected:
  void addService(const std::string& product, std::optional<double> temperature) {
    system.hid.services.push_back(
        {.product = [this, product] { return system.coreFoundation.string(product); },
         .temperature = temperature});
  }

  const std::vector<std::string> functions{
      "IOHIDEventSystemClientCreate",       "IOHIDEventSystemClientSetMatching",
      "IOHIDEventSystemClientCopyServices", "IOHIDServiceClientCopyProperty",
      "IOHIDServiceClientCopyEvent",        "IOHIDEventGetFloatValue"};
  std::shared_ptr<HIDSensorSource> source = nativeHIDSensorSource();
};

TEST_F(DarwinHIDSensorSourceTest, ListsEveryTemperatureServiceInTheOrderOfTheSystem) {
  addService("PMU tdie1", 41.5);
  addService("PMU tdev4", -21.5);
  addService("gas gauge battery", std::nullopt);
  addService("PMU tdie1", 42.0);
  EXPECT_THAT(source->temperatureServices(),
              ElementsAre(HIDTemperatureService{"PMU tdie1", 41.5}, HIDTemperatureService{"PMU tdev4", -21.5},
                          HIDTemperatureService{"gas gauge battery", std::nullopt},
                          HIDTemperatureService{"PMU tdie1", 42.0}));
}

TEST_F(DarwinHIDSensorSourceTest, FeedsTheServicesReadings) {
  addService("Sensor A", 30.0);
  addService("Sensor A", 31.0);
  EXPECT_THAT(HIDSensorService{}.readTemperatures(),
              ElementsAre(TemperatureSensor{"Sensor_A", "Sensor A", 30.0},
                          TemperatureSensor{"Sensor_A_1", "Sensor A", 31.0}));
}

TEST_F(DarwinHIDSensorSourceTest, AsksForTemperatureServicesOnly) {
  addService("sensor", 30.0);
  system.hid.services.push_back({.product = {}, .temperature = 1.0, .usagePage = 1, .usage = 5});
  system.hid.services.push_back({.product = {}, .temperature = 1.0, .usagePage = 0xFF00, .usage = 6});
  EXPECT_EQ(source->temperatureServices().size(), 1U);
}

TEST_F(DarwinHIDSensorSourceTest, HasNoNameWithoutAProductThatIsAString) {
  system.hid.services.push_back({.product = {}, .temperature = 30.0});
  system.hid.services.push_back(
      {.product = [this] { return system.coreFoundation.integer(7); }, .temperature = 31.0});
  EXPECT_THAT(source->temperatureServices(), ElementsAre(HIDTemperatureService{std::nullopt, 30.0},
                                                         HIDTemperatureService{std::nullopt, 31.0}));
}

TEST_F(DarwinHIDSensorSourceTest, LooksTheFunctionsUpInTheProcessItselfForEachCall) {
  addService("sensor", 30.0);
  (void)source->temperatureServices();
  EXPECT_THAT(system.loader.openings(),
              ElementsAre(fake::FakeLoader::Opening{.path = std::nullopt, .mode = RTLD_NOW}));
  EXPECT_EQ(system.loader.lookUps(), functions);
  EXPECT_EQ(system.calls.count("dlclose"), 1);
  (void)source->temperatureServices();
  EXPECT_EQ(system.calls.count("dlopen"), 2);
  EXPECT_EQ(system.calls.count("dlclose"), 2);
}

TEST_F(DarwinHIDSensorSourceTest, ListsNothingWhenAnyFunctionIsMissing) {
  addService("sensor", 30.0);
  for (const std::string& function : functions) {
    system.loader.hide(function);
    EXPECT_THAT(source->temperatureServices(), IsEmpty()) << function;
    EXPECT_EQ(system.loader.lookUps().back(), function) << "nothing is looked up after a missing function";
    EXPECT_EQ(source->diagnose(), (SourceDiagnosis{.source = "Temperature sensors",
                                                   .availability = SourceAvailability::absent,
                                                   .reason = "The system has no function " + function + ".",
                                                   .path = "IOHIDEventSystem",
                                                   .remedy = std::nullopt}));
    system.loader.show(function);
  }
  EXPECT_EQ(system.calls.count("IOHIDEventSystemClientCreate"), 0);
}

TEST_F(DarwinHIDSensorSourceTest, ListsNothingWithoutAHandleAClientAMatchingOrServices) {
  addService("sensor", 30.0);
  for (const char* function :
       {"dlopen", "IOHIDEventSystemClientCreate", "CFDictionaryCreateMutable", "CFNumberCreate"}) {
    system.calls.fail(function);
    EXPECT_THAT(source->temperatureServices(), IsEmpty()) << function;
    EXPECT_EQ(source->diagnose().availability, SourceAvailability::failed) << function;
    system.calls.mend(function);
  }
  EXPECT_EQ(system.calls.count("IOHIDEventSystemClientCopyServices"), 0);
  system.hid.services.clear();
  EXPECT_THAT(source->temperatureServices(), IsEmpty());
  EXPECT_EQ(source->diagnose().availability, SourceAvailability::absent);
}

TEST_F(DarwinHIDSensorSourceTest, IsAbsentWhenNoServiceMeasuresTemperatures) {
  system.hid.services.push_back({.product = {}, .temperature = 1.0, .usagePage = 1, .usage = 5});
  EXPECT_THAT(source->temperatureServices(), IsEmpty());
  EXPECT_EQ(source->diagnose(), (SourceDiagnosis{.source = "Temperature sensors",
                                                 .availability = SourceAvailability::absent,
                                                 .reason = "The event system has no temperature services.",
                                                 .path = "IOHIDEventSystem",
                                                 .remedy = std::nullopt}));
}

TEST_F(DarwinHIDSensorSourceTest, LosesOnlyTheNamesWhenTheirKeyCannotBeMade) {
  addService("sensor", 30.0);
  system.calls.failNth("CFStringCreateWithCString", 3);
  EXPECT_THAT(source->temperatureServices(), ElementsAre(HIDTemperatureService{std::nullopt, 30.0}));
  EXPECT_EQ(system.calls.count("IOHIDServiceClientCopyProperty"), 0);
}

TEST_F(DarwinHIDSensorSourceTest, LosesOnlyTheServicesOwnReadingWhenItFails) {
  addService("first", 30.0);
  addService("second", 31.0);
  system.calls.failNth("IOHIDServiceClientCopyEvent", 1);
  EXPECT_THAT(source->temperatureServices(), ElementsAre(HIDTemperatureService{"first", std::nullopt},
                                                         HIDTemperatureService{"second", 31.0}));
}

TEST_F(DarwinHIDSensorSourceTest, SaysHowManyServicesThereAre) {
  addService("first", 30.0);
  addService("second", 31.0);
  EXPECT_EQ(source->diagnose(), (SourceDiagnosis{.source = "Temperature sensors",
                                                 .availability = SourceAvailability::available,
                                                 .reason = "Temperature services: 2.",
                                                 .path = "IOHIDEventSystem",
                                                 .remedy = std::nullopt}));
}

TEST_F(DarwinHIDSensorSourceTest, GivesEverythingBackWhicheverCallFails) {
  addService("first", 30.0);
  addService("second", std::nullopt);
  failEachCallIn([&] { (void)source->temperatureServices(); });
}

}  // namespace
}  // namespace quellin
