#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "QuellinCore/Services/HIDSensorService.h"
#include "Support/FakeHost.h"

namespace quellin {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using testing_support::FakeHIDSensorSource;

TEST(HIDSensorServiceTest, GivesPlausibleReadingsSortedByName) {
  const auto source = std::make_shared<FakeHIDSensorSource>();
  source->services = {{"PMU tdie2", 41}, {"PMU tdie1", 40}, {"PMU tdev4", -21.5}};
  EXPECT_THAT(HIDSensorService(source).readTemperatures(),
              ElementsAre(TemperatureSensor{"PMU_tdie1", "PMU tdie1", 40},
                          TemperatureSensor{"PMU_tdie2", "PMU tdie2", 41}));
}

TEST(HIDSensorServiceTest, CountsTheKeysOfEachCallAnew) {
  const auto source = std::make_shared<FakeHIDSensorSource>();
  source->services = {{"A", 40}};
  const HIDSensorService service(source);
  EXPECT_EQ(service.readTemperatures(), service.readTemperatures());
  EXPECT_EQ(service.readTemperatures().at(0).key, "A");
}

TEST(HIDSensorServiceTest, IsEmptyWithoutServices) {
  EXPECT_THAT(HIDSensorService(std::make_shared<FakeHIDSensorSource>()).readTemperatures(), IsEmpty());
}

}  // namespace
}  // namespace quellin
