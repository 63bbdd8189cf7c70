#include <limits>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "QuellinCore/Platform/Recorded/TraceProcesses.h"
#include "QuellinCore/Support/JSON/JSONDecoder.h"
#include "QuellinCore/Support/JSON/JSONEncoder.h"

namespace quellin {
namespace {

using testing::HasSubstr;

ProcessUsage busy(std::uint64_t nanoseconds) {
  return {.userTimeNanoseconds = nanoseconds,
          .systemTimeNanoseconds = 1,
          .packageIdleWakeups = 2,
          .interruptWakeups = 3,
          .diskBytesRead = 4,
          .diskBytesWritten = 5,
          .energyNanojoules = std::numeric_limits<std::uint64_t>::max(),
          .startToken = 7};
}

std::string faultOf(const std::string& first, const std::string& second) {
  const auto processes =
      decodeJSON<TraceProcesses>(R"({"seconds":1,"first":[)" + first + R"(],"second":[)" + second + "]}");
  const auto answers = processAnswers(processes.value());
  return answers ? "" : answers.error();
}

TEST(TraceProcessesTest, EverySnapshotIsReadBack) {
  ProcessUsage little;
  little.userTimeNanoseconds = 9;
  const ProcessAnswers answers{.interval = Seconds{0.35},
                               .first = {{9, busy(5), std::nullopt},
                                         {2, little, std::nullopt},
                                         {3, std::nullopt, std::nullopt},
                                         {1, busy(1), {}}},
                               .second = {{2, little, "zsh"},
                                          {9, busy(6), "caf\xE9"},
                                          {3, std::nullopt, std::nullopt},
                                          {4, busy(2), ""},
                                          {1, {}, {}}}};
  const auto text = encodeJSON(traceProcesses(answers));
  EXPECT_EQ(processAnswers(decodeJSON<TraceProcesses>(text.value()).value()), answers);
}

TEST(TraceProcessesTest, CountersThatStoodStillAreWrittenOnce) {
  const ProcessAnswers answers{
      .interval = Seconds{0.35}, .first = {{1, busy(5), {}}}, .second = {{1, busy(5), "idle"}}};
  const auto text = encodeJSON(traceProcesses(answers)).value();
  EXPECT_THAT(text, HasSubstr(R"({"pid":1,"name":"idle","unchanged":true})"));
}

TEST(TraceProcessesTest, RefusesWhatContradictsItself) {
  EXPECT_EQ(faultOf(R"({"pid":1,"user":1,"system":1})", R"({"pid":1,"unchanged":true})"), "");
  EXPECT_THAT(faultOf("", R"({"pid":1,"unchanged":true})"), HasSubstr("process 1"));
  EXPECT_THAT(faultOf(R"({"pid":1,"unchanged":true})", ""), HasSubstr("process 1"));
  EXPECT_THAT(faultOf(R"({"pid":1})", R"({"pid":1,"unchanged":true})"), HasSubstr("process 1"));
  EXPECT_THAT(faultOf(R"({"pid":2,"user":1})", ""), HasSubstr("process 2"));
  EXPECT_THAT(faultOf(R"({"pid":2,"system":1})", ""), HasSubstr("process 2"));
  EXPECT_THAT(faultOf("", R"({"pid":3,"nameBytes":"4"})"), HasSubstr("process 3"));
}

}  // namespace
}  // namespace quellin
