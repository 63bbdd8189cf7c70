// The library's client, as an ordinary user, with the real tool installed set-user-ID.

#include <filesystem>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "QuellinCore/Models/HelperStatus.h"
#include "QuellinCore/Models/ProTelemetrySnapshot.h"
#include "QuellinCore/Support/JSON/JSONDecoder.h"
#include "QuellinHelper/PowermetricsStandIn.h"
#include "Support/ProgramRun.h"
#include "Support/TemporaryFolder.h"

namespace quellin {
namespace {

using testing_support::becomeOrdinaryUser;
using testing_support::contentOf;
using testing_support::installProgram;
using testing_support::ordinaryUser;
using testing_support::PowermetricsStandIn;
using testing_support::ProgramResult;
using testing_support::runProgram;

class HelperClientNeedsRootTest : public testing::Test {
 protected:
  void installTool(unsigned owner, unsigned mode) const { installProgram(QUELLIN_HELPER, path, owner, mode); }

  /// What the client, run by an ordinary user, says of the tool.
  [[nodiscard]] std::string ask(const std::string& question) const {
    const ProgramResult result = runProgram({.executable = QUELLIN_CLIENT_PROBE,
                                             .arguments = {"probe", path, question},
                                             .environment = {"TMPDIR=/nonexistent"},
                                             .prepare = [this] {
                                               standIn.enter();
                                               becomeOrdinaryUser();
                                             }});
    EXPECT_EQ(result.exitStatus, 0) << result.error;
    return result.output;
  }

  [[nodiscard]] HelperStatus askStatus() const {
    const std::string answer = ask("status");
    const auto status = decodeJSON<HelperStatus>(answer);
    EXPECT_TRUE(status) << answer;
    return status.value_or(HelperStatus{});
  }

  PowermetricsStandIn standIn{R"(
printf '<plist><dict><key>gpu_power</key><real>850.5</real></dict></plist>' >"$output"
)"};
  std::string path = standIn.pathOf("org.quellin.helper");
};

TEST_F(HelperClientNeedsRootTest, AnInstalledToolIsUsable) {
  installTool(0, 04755);
  const HelperStatus status = askStatus();
  EXPECT_TRUE(status.isUsable());
  EXPECT_TRUE(status.isSetuidRoot);
  EXPECT_EQ(status.ownerUserID, 0);
  EXPECT_EQ(status.installedVersion, "0.9.4");
  EXPECT_EQ(status.path, path);
  EXPECT_EQ(status.error, std::nullopt);
}

TEST_F(HelperClientNeedsRootTest, AToolOfAnotherOwnerIsReportedAsItIs) {
  installTool(ordinaryUser, 04755);
  const HelperStatus status = askStatus();
  EXPECT_FALSE(status.isSetuidRoot);
  EXPECT_FALSE(status.isUsable());
  EXPECT_EQ(status.ownerUserID, ordinaryUser);
  EXPECT_EQ(status.error, "QuellinHelper must run with effective uid 0");
  EXPECT_FALSE(status.supportsProTelemetry);
}

TEST_F(HelperClientNeedsRootTest, AToolWithoutTheBitIsReportedAsItIs) {
  installTool(0, 0755);
  const HelperStatus status = askStatus();
  EXPECT_TRUE(status.isInstalled);
  EXPECT_TRUE(status.isExecutable);
  EXPECT_FALSE(status.isSetuidRoot);
  EXPECT_EQ(status.error, "QuellinHelper must run with effective uid 0");
}

TEST_F(HelperClientNeedsRootTest, AToolThatTheUserMayNotRunIsReportedAsItIs) {
  installTool(0, 04700);
  const HelperStatus status = askStatus();
  EXPECT_TRUE(status.isSetuidRoot);
  EXPECT_FALSE(status.isExecutable);
  EXPECT_FALSE(status.isUsable());
  EXPECT_EQ(status.error, "Permission denied");
}

TEST_F(HelperClientNeedsRootTest, TelemetryComesThroughTheTool) {
  installTool(0, 04755);
  const auto snapshot = decodeJSON<ProTelemetrySnapshot>(ask("telemetry"));
  ASSERT_TRUE(snapshot);
  EXPECT_TRUE(snapshot->isAvailable);
  EXPECT_EQ(snapshot->gpuPowerWatts, 0.8505);
}

TEST_F(HelperClientNeedsRootTest, TemperaturesComeThroughTheTool) {
  installTool(0, 04755);
  EXPECT_EQ(ask("temperatures"), "[]\n") << "a Linux machine has no temperature in its system controller";
}

class HangingHelperClientNeedsRootTest : public HelperClientNeedsRootTest {
 protected:
  HangingHelperClientNeedsRootTest() {
    hanging = std::make_unique<PowermetricsStandIn>(R"(
: >"$output"; echo $$ "$output" >)" + trace + R"(
exec sleep 600
)");
  }

  std::string trace = standIn.pathOf("trace");
  std::unique_ptr<PowermetricsStandIn> hanging;
};

TEST_F(HangingHelperClientNeedsRootTest, TheClientCanEndTheToolAtItsTimeLimit) {
  installTool(0, 04755);
  const ProgramResult result = runProgram({.executable = QUELLIN_CLIENT_PROBE,
                                           .arguments = {"probe", path, "impatient-telemetry"},
                                           .prepare = [this] {
                                             hanging->enter();
                                             becomeOrdinaryUser();
                                           }});
  const auto snapshot = decodeJSON<ProTelemetrySnapshot>(result.output);
  ASSERT_TRUE(snapshot) << result.output << result.error;
  EXPECT_FALSE(snapshot->isAvailable);
  EXPECT_EQ(snapshot->error, "") << "the tool was ended by the client's signal and wrote nothing";

  const std::string left = contentOf(trace);
  const auto blank = left.find(' ');
  ASSERT_NE(blank, std::string::npos);
  EXPECT_FALSE(std::filesystem::exists("/proc/" + left.substr(0, blank))) << "the measuring tool still runs";
  EXPECT_FALSE(std::filesystem::exists(left.substr(blank + 1, left.size() - blank - 2)))
      << "its file is left";
}

}  // namespace
}  // namespace quellin
