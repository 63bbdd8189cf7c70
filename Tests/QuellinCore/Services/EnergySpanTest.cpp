#include <gmock/gmock.h>

#include "QuellinCore/Services/EnergySpan.h"
#include "Support/FakeHost.h"

namespace quellin {
namespace {

using testing_support::FakeEnergySource;
using Channels = std::vector<EnergyChannel>;

class EnergySpanTest : public testing::Test {
 protected:
  void gain(std::int64_t nanojoules) { source->gain = Channels{{"CPU Energy", nanojoules}}; }
  [[nodiscard]] static std::optional<double> joules(EnergySpan& span) {
    const auto energy = span.finish();
    return energy ? std::optional{energy->totalJoules} : std::nullopt;
  }

  std::shared_ptr<FakeEnergySource> source = std::make_shared<FakeEnergySource>();
};

TEST_F(EnergySpanTest, IsWhatTheCountersGainedBetweenItsEnds) {
  gain(2'500'000'000);
  EnergySpan span{source};
  gain(1);
  EXPECT_EQ(joules(span), 2.5);
}

TEST_F(EnergySpanTest, AddsUpWhatEveryLookFinds) {
  gain(1'000'000'000);
  EnergySpan span{source};
  gain(2'000'000'000);
  span.renew();
  gain(4'000'000'000);
  span.renew();
  EXPECT_EQ(joules(span), 7);
}

TEST_F(EnergySpanTest, EndsOnce) {
  gain(1);
  EnergySpan span{source};
  EXPECT_TRUE(joules(span).has_value());
  EXPECT_EQ(joules(span), std::nullopt);
}

TEST_F(EnergySpanTest, IsNotKnownWithoutCounters) {
  EnergySpan span{source};
  gain(1);
  span.renew();
  EXPECT_EQ(joules(span), std::nullopt);
}

TEST_F(EnergySpanTest, APartThatIsNotKnownTakesTheWholeWithIt) {
  for (const auto& failing : {FakeEnergySource::Channels{}, FakeEnergySource::Channels{Channels{}}}) {
    gain(1'000'000'000);
    EnergySpan span{source};
    source->gain = failing;
    span.renew();
    gain(1'000'000'000);
    span.renew();
    EXPECT_EQ(joules(span), std::nullopt);
  }
}

TEST_F(EnergySpanTest, CountersThatGoMissingTakeTheWholeWithThem) {
  gain(1'000'000'000);
  EnergySpan span{source};
  source->gain.reset();
  span.renew();
  EXPECT_EQ(joules(span), std::nullopt);
}

}  // namespace
}  // namespace quellin
