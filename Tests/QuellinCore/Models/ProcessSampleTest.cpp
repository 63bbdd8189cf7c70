#include <limits>
#include <numeric>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "QuellinCore/Models/ProcessSample.h"
#include "Support/Deaths.h"

namespace quellin {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using testing_support::endedByTrap;

/// Lists ids from 1 up to `count`, as far as there is room, and remembers how much room there was.
class CountingLister {
 public:
  explicit CountingLister(std::size_t count) : count_(count) {}

  std::int64_t operator()(std::span<std::int32_t> ids) {
    rooms.push_back(ids.size());
    const auto filled = ids.first(std::min(count_, ids.size()));
    std::iota(filled.begin(), filled.end(), 1);
    return static_cast<std::int64_t>(filled.size_bytes());
  }

  std::vector<std::size_t> rooms;

 private:
  std::size_t count_;
};

struct GrowthCase {
  std::size_t processes;
  std::size_t listed;
  std::vector<std::size_t> rooms;
};

class ProcessIDsTest : public ::testing::TestWithParam<GrowthCase> {};

TEST_P(ProcessIDsTest, DoublesTheRoomWhileAResultFillsIt) {
  CountingLister lister(GetParam().processes);
  const auto ids = processIDs(std::ref(lister));
  EXPECT_EQ(lister.rooms, GetParam().rooms);
  ASSERT_EQ(ids.size(), GetParam().listed);
  for (std::size_t index = 0; index < ids.size(); ++index)
    ASSERT_EQ(ids[index], static_cast<std::int32_t>(index) + 1);
}

INSTANTIATE_TEST_SUITE_P(Cases, ProcessIDsTest,
                         ::testing::Values(GrowthCase{1, 1, {4096}}, GrowthCase{4095, 4095, {4096}},
                                           GrowthCase{4096, 4096, {4096, 8192}},
                                           GrowthCase{20000, 20000, {4096, 8192, 16384, 32768}},
                                           GrowthCase{65535, 65535, {4096, 8192, 16384, 32768, 65536}},
                                           GrowthCase{65536, 0, {4096, 8192, 16384, 32768, 65536}}));

TEST(ProcessIDsRulesTest, GivesNoneWhenTheListFails) {
  EXPECT_THAT(processIDs([](std::span<std::int32_t>) { return std::int64_t{0}; }), IsEmpty());
  EXPECT_THAT(processIDs([](std::span<std::int32_t>) { return std::int64_t{-1}; }), IsEmpty());
}

TEST(ProcessIDsRulesTest, GivesNoneWhenTheListFailsInALargerRoom) {
  EXPECT_THAT(processIDs([](std::span<std::int32_t> ids) {
                return ids.size() == 4096 ? static_cast<std::int64_t>(ids.size_bytes()) : std::int64_t{0};
              }),
              IsEmpty());
}

TEST(ProcessIDsRulesTest, CountsWholeIDsOnly) {
  const auto ids = processIDs([](std::span<std::int32_t> buffer) {
    buffer[0] = 41;
    buffer[1] = 42;
    return std::int64_t{7};
  });
  EXPECT_THAT(ids, ElementsAre(41));
}

TEST(ProcessIDsRulesTest, HandsOutRoomFilledWithZeros) {
  static_cast<void>(processIDs([](std::span<std::int32_t> ids) {
    EXPECT_TRUE(std::ranges::all_of(ids, [](std::int32_t pid) { return pid == 0; }));
    return static_cast<std::int64_t>(ids.size_bytes());
  }));
}

TEST(ProcessNameTest, TakesTheBytesBeforeTheFirstNUL) {
  EXPECT_EQ(processName("kernel_task", 0), "kernel_task");
  EXPECT_EQ(processName(std::string_view("name\0rest", 9), 1), "name");
}

TEST(ProcessNameTest, ReplacesIllFormedBytes) {
  EXPECT_EQ(processName("caf\xC3", 1), "caf\xEF\xBF\xBD");
  EXPECT_EQ(processName("\xFFx", 1), "\xEF\xBF\xBDx");
}

TEST(ProcessNameTest, FallsBackToTheNumber) {
  EXPECT_EQ(processName(std::nullopt, 123), "PID 123");
  EXPECT_EQ(processName("", 7), "PID 7");
  EXPECT_EQ(processName(std::string_view("\0x", 2), 7), "PID 7");
}

TEST(ProcessSampleTest, AddsUpWhatBelongsTogether) {
  const ProcessUsage usage{.userTimeNanoseconds = 1,
                           .systemTimeNanoseconds = 2,
                           .packageIdleWakeups = 3,
                           .interruptWakeups = 4,
                           .diskBytesRead = 5,
                           .diskBytesWritten = 6,
                           .energyNanojoules = 7,
                           .startToken = 8};
  EXPECT_EQ(processSample(9, "name", usage), (ProcessSample{.pid = 9,
                                                            .name = "name",
                                                            .cpuTimeNanoseconds = 3,
                                                            .wakeups = 7,
                                                            .diskBytes = 11,
                                                            .energyNanojoules = 7,
                                                            .startToken = 8}));
}

TEST(ProcessSampleTest, KeepsUnknownCountersAbsent) {
  EXPECT_EQ(processSample(9, "name", {}), (ProcessSample{.pid = 9,
                                                         .name = "name",
                                                         .cpuTimeNanoseconds = 0,
                                                         .wakeups = {},
                                                         .diskBytes = {},
                                                         .energyNanojoules = {},
                                                         .startToken = {}}));
  ProcessUsage usage;
  usage.interruptWakeups = 4;
  usage.diskBytesRead = 5;
  EXPECT_EQ(processSample(9, "name", usage).wakeups, 4U);
  EXPECT_EQ(processSample(9, "name", usage).diskBytes, 5U);
}

TEST(ProcessSampleDeathTest, EndsTheProcessWhenASumOverflows) {
  ProcessUsage usage;
  usage.userTimeNanoseconds = std::numeric_limits<std::uint64_t>::max();
  usage.systemTimeNanoseconds = 1;
  EXPECT_EXIT(static_cast<void>(processSample(1, "", usage)), endedByTrap, "");
}

TEST(ProcessSampleTest, KnowsTheCountersItCanAdd) {
  for (const auto counter : {&ProcessUsage::packageIdleWakeups, &ProcessUsage::interruptWakeups,
                             &ProcessUsage::diskBytesRead, &ProcessUsage::diskBytesWritten}) {
    ProcessUsage usage;
    usage.*counter = largestProcessCounter;
    EXPECT_TRUE(canReckonWith(usage));
    ++*(usage.*counter);
    EXPECT_FALSE(canReckonWith(usage));
  }
  for (const auto time : {&ProcessUsage::userTimeNanoseconds, &ProcessUsage::systemTimeNanoseconds}) {
    ProcessUsage usage;
    usage.*time = largestProcessCounter;
    EXPECT_TRUE(canReckonWith(usage));
    ++(usage.*time);
    EXPECT_FALSE(canReckonWith(usage));
  }
  ProcessUsage usage;
  usage.energyNanojoules = usage.startToken = std::numeric_limits<std::uint64_t>::max();
  EXPECT_TRUE(canReckonWith(usage)) << "these are added to nothing";
}

TEST(ProcessSampleTest, AddsTheLargestCountersItCanReckonWith) {
  ProcessUsage usage;
  usage.userTimeNanoseconds = usage.systemTimeNanoseconds = largestProcessCounter;
  EXPECT_EQ(processSample(1, "", usage).cpuTimeNanoseconds, std::numeric_limits<std::uint64_t>::max() - 1);
}

}  // namespace
}  // namespace quellin
