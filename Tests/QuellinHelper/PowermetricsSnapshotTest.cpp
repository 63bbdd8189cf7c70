#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "PropertyLists/BinaryDocument.h"
#include "QuellinHelper/PowermetricsSnapshot.h"
#include "Support/Bytes.h"

namespace quellin {
namespace {

using namespace std::string_literals;
using testing_support::repeated;

std::string row(int pid, const std::string& energy) {
  return "<dict><key>pid</key><integer>" + std::to_string(pid) +
         "</integer><key>name</key><string>p</string>" +
         (energy.empty() ? "<key>wakeups</key><integer>1</integer>" : "<key>energy_impact</key>" + energy) +
         "</dict>";
}
std::string real(const std::string& text) { return "<real>" + text + "</real>"; }

std::vector<int> pidsOf(const ProTelemetrySnapshot& snapshot) {
  std::vector<int> pids;
  pids.reserve(snapshot.processes.size());
  for (const auto& process : snapshot.processes) pids.push_back(process.pid);
  return pids;
}

TEST(PowermetricsSnapshotTest, CountsTheSamplesBetweenNULsAndNoneBehindTheLast) {
  const auto snapshot = snapshotFromOutput("<plist><dict/></plist>\0<plist><dict/></plist>\0\0"s);
  EXPECT_TRUE(snapshot.isAvailable);
  EXPECT_EQ(snapshot.rawSampleSummary, "Parsed 2 plist sample(s), 0 process energy row(s); power keys: ");
  EXPECT_EQ(snapshot.error, std::nullopt);
  EXPECT_EQ(snapshot.source, "powermetrics --show-process-energy");
  EXPECT_EQ(snapshot.cpuPowerWatts, std::nullopt);
}

TEST(PowermetricsSnapshotTest, FindsThePowersAndSaysHow) {
  const auto snapshot = snapshotFromOutput(
      "<dict><key>processor</key><dict><key>cpu_power</key><integer>7</integer><key>ANE total power</key>"
      "<string>250 mW</string></dict><key>cpu_power</key><integer>4523</integer></dict>");
  EXPECT_EQ(snapshot.cpuPowerWatts, 4.523);
  EXPECT_EQ(snapshot.gpuPowerWatts, std::nullopt);
  EXPECT_EQ(snapshot.anePowerWatts, 0.25);
  EXPECT_EQ(
      snapshot.rawSampleSummary,
      "Parsed 1 plist sample(s), 0 process energy row(s); power keys: "
      "cpu=exact:cpu_power raw=4523 normalized=4.523W, ane=fallback:[ane,power] raw=250 normalized=0.25W");
}

TEST(PowermetricsSnapshotTest, KeepsTheTwelveHighestRowsAndCountsAll) {
  std::string rows;
  for (int pid = 1; pid <= 20; ++pid) rows += row(pid, pid % 4 == 0 ? "" : real(std::to_string(pid % 5 - 1)));
  const auto snapshot = snapshotFromOutput("<array>" + rows + "</array>");
  // Energy 3: 9 14 19; 2: 3 13 18; 1: 2 7 17; 0, absent included, in order of discovery: 1 4 6 8 ...
  EXPECT_THAT(pidsOf(snapshot), testing::ElementsAre(9, 14, 19, 3, 13, 18, 2, 7, 17, 1, 4, 6));
  EXPECT_EQ(snapshot.rawSampleSummary, "Parsed 1 plist sample(s), 20 process energy row(s); power keys: ");
}

TEST(PowermetricsSnapshotTest, TwelveRowsAreAllKeptAndAbsentRanksAboveNegative) {
  std::string rows = row(1, real("-1")) + row(2, "") + row(3, real("nan"));
  for (int pid = 4; pid <= 12; ++pid) rows += row(pid, real("5"));
  EXPECT_THAT(pidsOf(snapshotFromOutput("<array>" + rows + "</array>")),
              testing::ElementsAre(4, 5, 6, 7, 8, 9, 10, 11, 12, 2, 3, 1));
}

TEST(PowermetricsSnapshotTest, RowsOfAllSamplesComeTogether) {
  EXPECT_THAT(
      pidsOf(snapshotFromOutput("<array>" + row(1, real("1")) + "</array>\0junk\0"s + row(2, real("2")))),
      testing::ElementsAre(2, 1));
}

TEST(PowermetricsSnapshotTest, ABinaryPropertyListIsOneSampleThoughItHoldsNULs) {
  const testing_support::BinaryDocument document{.objects = {"\xD1\x01\x02",
                                                             "\x59"
                                                             "cpu_power",
                                                             "\x11\x11\xAB"}};
  const auto snapshot = snapshotFromOutput(document.bytes());
  EXPECT_EQ(snapshot.cpuPowerWatts, 4.523);
  EXPECT_EQ(snapshot.rawSampleSummary,
            "Parsed 1 plist sample(s), 0 process energy row(s); power keys: "
            "cpu=exact:cpu_power raw=4523 normalized=4.523W");
}

TEST(PowermetricsSnapshotTest, OutputThatOnlyBeginsLikeABinaryPropertyListIsSplitAsAnyOther) {
  EXPECT_EQ(snapshotFromOutput("bplist00\0<dict/>\0"s).rawSampleSummary,
            "Parsed 1 plist sample(s), 0 process energy row(s); power keys: ");
}

TEST(PowermetricsSnapshotTest, ChoosesAmongTheRowsOfManySamplesTogether) {
  std::string output;
  for (int sample = 0; sample < 40; ++sample) {
    output += "<plist><dict><key>tasks</key><array>";
    for (int task = 0; task < 100; ++task) output += row(sample * 100 + task, real(std::to_string(task)));
    output += "</array><key>cpu_power</key>" + real("1500") + "</dict></plist>" + '\0';
  }
  const auto snapshot = snapshotFromOutput(output);
  EXPECT_EQ(snapshot.rawSampleSummary,
            "Parsed 40 plist sample(s), 4000 process energy row(s); power keys: "
            "cpu=exact:cpu_power raw=1500 normalized=1.5W");
  ASSERT_EQ(snapshot.processes.size(), 12U);
  EXPECT_EQ(snapshot.processes[0].pid, 99);
  EXPECT_EQ(snapshot.processes[11].pid, 1199);
}

TEST(PowermetricsSnapshotTest, OutputThatIsNoPropertyListIsShownInPart) {
  const auto shown = [](const std::string& output) {
    const auto snapshot = snapshotFromOutput(output);
    EXPECT_FALSE(snapshot.isAvailable);
    EXPECT_EQ(snapshot.source, "powermetrics --show-process-energy");
    EXPECT_EQ(snapshot.error, "powermetrics returned no parseable plist samples");
    EXPECT_TRUE(snapshot.processes.empty());
    return snapshot.rawSampleSummary;
  };
  EXPECT_EQ(shown("unknown sampler"), "unknown sampler");
  EXPECT_EQ(shown(" \n"), " \n");
  EXPECT_EQ(shown(repeated("x", 5000)), repeated("x", 4096));
  EXPECT_EQ(shown(repeated("x", 4094) + "é and more"), repeated("x", 4094) + "é");
  EXPECT_EQ(shown(repeated("x", 4095) + "é and more"), std::nullopt);
  EXPECT_EQ(shown("caf\xE9"), std::nullopt);
  EXPECT_EQ(shown(repeated("x", 4096) + "\xFF"), repeated("x", 4096));
  EXPECT_EQ(shown("\0\0"s), "\0\0"s);
}

TEST(PowermetricsSnapshotTest, AFailureTellsTheErrorTextOrTheStatus) {
  const auto snapshot =
      failureSnapshot({.terminationStatus = 3, .outputData = {}, .errorText = "not allowed"});
  EXPECT_EQ(snapshot, (ProTelemetrySnapshot{.isAvailable = false,
                                            .source = "powermetrics",
                                            .sampledAt = {},
                                            .sampleIntervalMilliseconds = 0,
                                            .processes = {},
                                            .cpuPowerWatts = {},
                                            .gpuPowerWatts = {},
                                            .anePowerWatts = {},
                                            .rawSampleSummary = {},
                                            .error = "not allowed"}));
  EXPECT_EQ(failureSnapshot({.terminationStatus = 0, .outputData = {}, .errorText = {}}).error,
            "powermetrics exited with status 0");
}

}  // namespace
}  // namespace quellin
