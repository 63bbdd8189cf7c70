// An engine that has polled for days holds what it held after the first thousand.
#include <memory>

#include <gmock/gmock.h>

#include "QuellinCore/Platform/Recorded/RecordedSources.h"
#include "QuellinCore/Platform/Recorded/TracePlayer.h"
#include "QuellinCore/Services/SystemReader.h"
#include "Support/FakeHost.h"
#include "Support/ManualClock.h"
#include "Support/PolledEngine.h"
#include "Support/Replay.h"

namespace quellin {
namespace {

using testing_support::expectNothingLeftBehind;
using testing_support::PolledEngine;

constexpr int warmUp = 1000;
constexpr int polls = 100'000;
constexpr int recordedPolls = 20'000;  // a tick is decoded for each

const PrivilegedSMCHelperService noTool{""};

TEST(EngineEnduranceTest, PollsOfAMachineLeaveNothingBehind) {
  testing_support::FakeHost host;
  testing_support::ManualMonotonicClock clock;
  host.smc->set("FNum", "ui8 ", {1});
  for (const char* key : {"F0Ac", "F0Mn", "F0Mx", "TC0P", "TB0T"})
    host.smc->set(key, "flt ", {0x00, 0x00, 0x36, 0x42});
  host.battery->tables.registry = PropertyTable{{"CurrentCapacity", std::int64_t{80}},
                                                {"AppleRawMaxCapacity", std::int64_t{5000}},
                                                {"Voltage", std::int64_t{12600}},
                                                {"Amperage", std::int64_t{-900}}};
  host.energy->gain = std::vector<EnergyChannel>{{"CPU Energy", 1'000}, {"GPU Energy", 2'000}};
  const SystemReader reader = SystemReader::over(host.sources(), noTool, clock);
  PolledEngine polled([&] {
    clock.sleeps.clear();
    return reader.readAll();
  });
  polled.poll(warmUp);
  expectNothingLeftBehind([&] { polled.poll(polls); });
  EXPECT_EQ(polled.engine().history().size(), 120U);
  EXPECT_TRUE(polled.engine().currentState().battery && polled.engine().currentState().power);
  EXPECT_EQ(polled.engine().currentState().sensors.size(), 2U);
}

// The trace goes round and round: every poll reads the tick that follows.
TEST(EngineEnduranceTest, PollsOfARecordedMachineLeaveNothingBehind) {
  std::shared_ptr<TracePlayer> player;
  const auto read = [&] {
    if (!player || player->atEnd()) player = TracePlayer::open(testing_support::exampleTrace()).value();
    const auto state =
        SystemReader::over(recordedSources(player), noTool, player->monotonicClock(), player->wallClock())
            .readAll();
    EXPECT_TRUE(player->advance());
    return state;
  };
  PolledEngine polled(read);
  // States differ in size, so that the heap is compared where the same ones are held.
  const auto pollToTheEnd = [&] {
    int done = 0;
    do {
      polled.poll();
      ++done;
    } while (!player->atEnd());
    return done;
  };
  pollToTheEnd();
  int done = pollToTheEnd();
  expectNothingLeftBehind([&] {
    while (done < recordedPolls) done += pollToTheEnd();
  });
  EXPECT_TRUE(polled.engine().currentState().battery);
}

}  // namespace
}  // namespace quellin
