#include <algorithm>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "QuellinCore/Models/SMCDecoding.h"
#include "QuellinCore/Models/SMCKeys.h"
#include "QuellinCore/Models/TemperatureSensor.h"

namespace quellin {
namespace {

using SMCDecoding::fourCharCode;
using testing::Contains;
using testing::Not;

TEST(SMCKeysTest, NamesTheSpeedsOfAFanByItsNumber) {
  EXPECT_EQ(SMCKeys::fanSpeed(0, SMCKeys::currentSpeed), "F0Ac");
  EXPECT_EQ(SMCKeys::fanSpeed(3, SMCKeys::minimumSpeed), "F3Mn");
  EXPECT_EQ(SMCKeys::fanSpeed(14, SMCKeys::maximumSpeed), "F14Mx");
}

TEST(SMCKeysTest, KnowsTheSpeedsOfAllFans) {
  const auto speeds = SMCKeys::fanSpeeds();
  EXPECT_EQ(speeds.size(), (3 * 10) + (2 * 5));
  EXPECT_THAT(speeds, Contains(fourCharCode("F0Ac")));
  EXPECT_THAT(speeds, Not(Contains(fourCharCode("FNum"))));
}

TEST(SMCKeysTest, HoldsEveryFanAndEveryKnownSensor) {
  const auto keys = SMCKeys::all();
  EXPECT_THAT(keys, Contains(fourCharCode("FNum")));
  for (const char* fan : {"F0Ac", "F0Mn", "F0Mx", "F9Mx", "F14A"}) {
    EXPECT_THAT(keys, Contains(fourCharCode(fan))) << fan;
  }
  for (const auto& [key, name] : TemperatureSensor::knownSensors()) {
    EXPECT_THAT(keys, Contains(fourCharCode(key))) << key;
  }
}

TEST(SMCKeysTest, HoldsEachKeyOnce) {
  auto keys = SMCKeys::all();
  std::ranges::sort(keys);
  EXPECT_EQ(std::ranges::adjacent_find(keys), keys.end());
  // FNum; three keys for each of fans 0 to 9; "F1nA" and "F1nM" for fans 10 to 14.
  EXPECT_EQ(keys.size(), 1 + (3 * 10) + (2 * 5) + TemperatureSensor::knownSensors().size());
}

}  // namespace
}  // namespace quellin
