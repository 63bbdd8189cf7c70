#include <limits>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "QuellinCore/Models/ProcessSample.h"
#include "Support/Deaths.h"

namespace quellin {
namespace {

using testing_support::endedByTrap;

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
    EXPECT_TRUE(isWithinRange(usage));
    ++*(usage.*counter);
    EXPECT_FALSE(isWithinRange(usage));
  }
  for (const auto time : {&ProcessUsage::userTimeNanoseconds, &ProcessUsage::systemTimeNanoseconds}) {
    ProcessUsage usage;
    usage.*time = largestProcessCounter;
    EXPECT_TRUE(isWithinRange(usage));
    ++(usage.*time);
    EXPECT_FALSE(isWithinRange(usage));
  }
  ProcessUsage usage;
  usage.energyNanojoules = usage.startToken = std::numeric_limits<std::uint64_t>::max();
  EXPECT_TRUE(isWithinRange(usage)) << "these are added to nothing";
}

TEST(ProcessSampleTest, AddsTheLargestCountersItCanReckonWith) {
  ProcessUsage usage;
  usage.userTimeNanoseconds = usage.systemTimeNanoseconds = largestProcessCounter;
  EXPECT_EQ(processSample(1, "", usage).cpuTimeNanoseconds, std::numeric_limits<std::uint64_t>::max() - 1);
}

}  // namespace
}  // namespace quellin
