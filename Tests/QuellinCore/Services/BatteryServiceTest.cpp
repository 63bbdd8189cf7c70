#include <gtest/gtest.h>

#include "QuellinCore/Services/BatteryService.h"
#include "Support/FakeHost.h"

namespace quellin {
namespace {

using testing_support::FakeBatterySource;

TEST(BatteryServiceTest, ReadsTheTablesAfreshEachTime) {
  const auto source = std::make_shared<FakeBatterySource>();
  const BatteryService service(source);
  EXPECT_EQ(service.read(), std::nullopt);
  source->tables.powerSource = PropertyTable{{"Current Capacity", std::int64_t{41}}};
  EXPECT_EQ(service.read().value().chargePercent, 41);
  source->tables.registry = PropertyTable{{"CurrentCapacity", std::int64_t{40}}};
  EXPECT_EQ(service.read().value().chargePercent, 40);
}

}  // namespace
}  // namespace quellin
