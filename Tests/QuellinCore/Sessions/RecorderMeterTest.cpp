#include <gtest/gtest.h>

#include "QuellinCore/Sessions/RecorderMeter.h"
#include "Support/ManualClock.h"
#include "Support/MemoryStore.h"

namespace quellin {
namespace {

class RecorderMeterTest : public testing::Test {
 protected:
  testing_support::MemoryStore fixture;
  testing_support::ManualCPUClock cpu;
  RecorderMeter meter{cpu, fixture.store};
};

TEST_F(RecorderMeterTest, CountsEveryPieceOnce) {
  cpu.use(Seconds{2});
  EXPECT_EQ(meter.take().cpuSeconds, 2);
  EXPECT_EQ(meter.take(), RecorderCost());
  cpu.use(Seconds{1});
  meter.restart();
  EXPECT_EQ(meter.take(), RecorderCost());
}

TEST_F(RecorderMeterTest, IsDueAtFirstAndOnceAMinute) {
  EXPECT_TRUE(meter.isDue(instantAt(100)));
  EXPECT_EQ(meter.take(instantAt(100)).bytesWritten, 0);
  for (const double second : {100.0, 130.0, 159.9}) EXPECT_FALSE(meter.isDue(instantAt(second))) << second;
  for (const double second : {160.0, 1e6, 99.9}) EXPECT_TRUE(meter.isDue(instantAt(second))) << second;
  meter.restart();
  EXPECT_TRUE(meter.isDue(instantAt(100)));
}

}  // namespace
}  // namespace quellin
