#include <gtest/gtest.h>

#include "QuellinCore/Services/ThermalService.h"

namespace quellin {
namespace {

class FakeThermalSource final : public ThermalSource {
 public:
  ThermalSignals signals;

  ThermalSignals read() override { return signals; }
  SourceDiagnosis diagnose() override { return {}; }
};

TEST(ThermalServiceTest, MapsWhatTheSourceSaysNow) {
  const auto source = std::make_shared<FakeThermalSource>();
  const ThermalService service(source);
  EXPECT_EQ(service.read(), (ThermalInfo{ThermalState::nominal, 0, false}));
  source->signals = {.stateCode = 3, .pressureState = 8, .isLowPowerMode = true};
  EXPECT_EQ(service.read(), (ThermalInfo{ThermalState::critical, 4, true}));
}

}  // namespace
}  // namespace quellin
