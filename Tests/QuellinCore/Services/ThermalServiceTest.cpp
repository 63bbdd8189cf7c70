#include <gtest/gtest.h>

#include "QuellinCore/Services/ThermalService.h"
#include "Support/FakeHost.h"

namespace quellin {
namespace {

using testing_support::FakeThermalSource;

TEST(ThermalServiceTest, MapsWhatTheSourceSaysNow) {
  const auto source = std::make_shared<FakeThermalSource>();
  const ThermalService service(source);
  EXPECT_EQ(service.read(), (ThermalInfo{ThermalState::nominal, 0, false}));
  source->signals = {.stateCode = 3, .pressureState = 8, .isLowPowerMode = true};
  EXPECT_EQ(service.read(), (ThermalInfo{ThermalState::critical, 4, true}));
}

}  // namespace
}  // namespace quellin
