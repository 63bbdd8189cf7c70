#include <string>

#include <gmock/gmock.h>

#include "Support/Replay.h"
#include "Support/TemporaryFolder.h"
#include "quellin/Measuring/MeasuredHost.h"
#include "quellin/Outcome/Failure.h"

namespace quellin::cli {
namespace {

using testing::HasSubstr;
using testing_support::exampleTrace;
using testing_support::TemporaryFolder;

MeasuredHost hostOf(const std::string& source) {
  Options options;
  options.source = source;
  return MeasuredHost::open(options);
}

struct MeasuredHostTest : testing::Test {
  TemporaryFolder folder;

  // A trace with nothing but ticks, at these monotonic times.
  [[nodiscard]] std::string emptyTrace(const std::vector<double>& ticks) const {
    std::string trace =
        R"({"kind":"trace","format":"quellin-trace","majorVersion":1,"minorVersion":0,"createdAt":0,)"
        R"("redactsSerialNumbers":true})"
        "\n";
    for (const double tick : ticks)
      trace += R"({"kind":"tick","wall":0,"monotonic":)" + std::to_string(tick) + "}\n";
    return folder.write("trace.jsonl", trace);
  }

  // The interval of such a trace, where 1 s is asked for.
  [[nodiscard]] double intervalOf(const std::vector<double>& ticks) const {
    const MeasuredHost host = hostOf(emptyTrace(ticks));
    return host.interval(Seconds{1}).count();
  }
};

TEST_F(MeasuredHostTest, ATraceHasItsOwnClocksAndInterval) {
  const MeasuredHost host = hostOf(exampleTrace());
  EXPECT_FALSE(host.isNative);
  ASSERT_NE(host.player, nullptr);
  EXPECT_NEAR((host.wallClock->now() - instantAt(1741081200)).count(), 0, 1);
  EXPECT_DOUBLE_EQ(host.interval(Seconds{1}).count(), 5);
}

TEST_F(MeasuredHostTest, TheIntervalOfATraceIsRoundedUnlessNothingIsLeft) {
  EXPECT_DOUBLE_EQ(intervalOf({100, 101.013}), 1);
  EXPECT_DOUBLE_EQ(intervalOf({100, 100.487, 200}), 0.5);
  EXPECT_DOUBLE_EQ(intervalOf({100, 100.25}), 0.25);
  EXPECT_NEAR(intervalOf({100, 100.01}), 0.01, 1e-9);
}

TEST_F(MeasuredHostTest, ATraceOfOneTickLeavesTheIntervalAsAsked) { EXPECT_DOUBLE_EQ(intervalOf({100}), 1); }

TEST_F(MeasuredHostTest, AMachineIsMeasurableWhenAnyOfItsSourcesGivesValues) {
  Options options;
  options.source = exampleTrace();
  EXPECT_NE(MeasuredHost::openMeasurable(options).player, nullptr);
  options.source = emptyTrace({100, 101});
  try {
    static_cast<void>(MeasuredHost::openMeasurable(options));
    FAIL() << "nothing was thrown";
  } catch (const Failure& failure) {
    EXPECT_EQ(failure.status(), ExitStatus::nothingMeasurable);
    EXPECT_EQ(failure.what(), "nothing can be measured here. 'quellin doctor --source " + options.source +
                                  "' says why and what would help.");
  }
}

TEST_F(MeasuredHostTest, AFileThatIsNoTraceIsNamed) {
  const std::string path = folder.write("notes.txt", "no trace\n");
  try {
    static_cast<void>(hostOf(path));
    FAIL() << "nothing was thrown";
  } catch (const Failure& failure) {
    EXPECT_EQ(failure.status(), ExitStatus::failed);
    EXPECT_THAT(failure.what(), HasSubstr(path + ", line 1: "));
  }
}

TEST(MeasuredNameTest, IsInWordsForThisMachineAndAPathForAnother) {
  Options options;
  EXPECT_EQ(measuredName(options), "this machine");
  options.source = "Examples/day.jsonl";
  EXPECT_EQ(measuredName(options), "Examples/day.jsonl");
}

}  // namespace
}  // namespace quellin::cli
