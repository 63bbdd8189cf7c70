#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "QuellinCore/Services/PowerService.h"
#include "Support/ManualClock.h"

namespace quellin {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using testing_support::ManualMonotonicClock;

/// Tells a story of what happened in which order.
class StoryEnergySource final : public EnergySource {
 public:
  bool begins = true;
  std::optional<std::vector<EnergyChannel>> delta;
  std::vector<std::string> events;

  std::unique_ptr<EnergyMeasurement> begin() override {
    events.push_back("begin");
    return begins ? std::make_unique<Measurement>(*this) : nullptr;
  }
  SourceDiagnosis diagnose() override { return {}; }

 private:
  class Measurement final : public EnergyMeasurement {
   public:
    explicit Measurement(StoryEnergySource& source) : source_(source) {}
    ~Measurement() override { source_.events.push_back("release"); }
    std::optional<std::vector<EnergyChannel>> finish() override {
      source_.events.push_back("finish");
      return source_.delta;
    }

   private:
    StoryEnergySource& source_;
  };
};

class PowerServiceTest : public ::testing::Test {
 protected:
  PowerServiceTest() {
    clock.onSleep = [this](Seconds) { source->events.push_back("sleep"); };
  }

  std::shared_ptr<StoryEnergySource> source = std::make_shared<StoryEnergySource>();
  ManualMonotonicClock clock;
  PowerService service{source, clock};
};

TEST_F(PowerServiceTest, CountsEnergyOverATenthOfASecond) {
  source->delta = {{"CPU Energy", 150'000'000}};
  const auto metrics = service.read();
  ASSERT_TRUE(metrics.has_value());
  EXPECT_DOUBLE_EQ(metrics->cpuPower, 1.5);
  EXPECT_THAT(clock.sleeps, ElementsAre(Seconds{0.1}));
  EXPECT_THAT(source->events, ElementsAre("begin", "sleep", "finish", "release"));
}

TEST_F(PowerServiceTest, DoesNotWaitWithoutAFirstSample) {
  source->begins = false;
  EXPECT_EQ(service.read(), std::nullopt);
  EXPECT_THAT(clock.sleeps, IsEmpty());
}

TEST_F(PowerServiceTest, GivesNothingWithoutASecondSample) {
  EXPECT_EQ(service.read(), std::nullopt);
  EXPECT_THAT(source->events, ElementsAre("begin", "sleep", "finish", "release"));
}

TEST_F(PowerServiceTest, GivesNothingWhenNoChannelIsRecognised) {
  source->delta.emplace();
  EXPECT_EQ(service.read(), std::nullopt);
  source->delta = {{"PCIe", 150'000'000}};
  EXPECT_EQ(service.read(), std::nullopt);
}

}  // namespace
}  // namespace quellin
