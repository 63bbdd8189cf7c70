#include <cstdlib>
#include <filesystem>
#include <unistd.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "QuellinCore/Services/ProTelemetryService.h"
#include "Support/ManualClock.h"
#include "Support/TemporaryFolder.h"

namespace quellin {
namespace {

using testing::StartsWith;
using testing_support::contentOf;
using testing_support::ManualMonotonicClock;
using testing_support::ManualWallClock;
using testing_support::TemporaryFolder;

constexpr std::string_view usableStatus =
    R"({"isInstalled":true,"isExecutable":true,"isSetuidRoot":true,"ownerUserID":0,"groupID":0,)"
    R"("installedVersion":"7.8.9","supportsProTelemetry":true,"path":"elsewhere"})";

/// A service whose tool is a script, whose time moves by hand, and whose administrator is a script too.
class ProTelemetryServiceTest : public testing::Test {
 protected:
  /// Installs a tool that runs the lines of `body`.
  void installTool(std::string_view body) const { static_cast<void>(folder.writeScript("tool", body)); }
  /// A tool that prints `document`, whatever it is asked.
  void installToolThatPrints(std::string_view document) const {
    installTool("cat <<'END'\n" + std::string{document} + "\nEND");
  }
  void setMode(std::uint32_t mode) const {
    std::filesystem::permissions(toolPath, static_cast<std::filesystem::perms>(mode));
  }

  TemporaryFolder folder;
  std::string toolPath = folder.pathOf("tool");
  ManualWallClock wallClock{instantAt(1'741'081'260)};
  ProTelemetryService service{toolPath, AdministratorPrompt::native(), systemMonotonicClock(), wallClock};
};

TEST_F(ProTelemetryServiceTest, HasItsDefaults) {
  EXPECT_EQ(ProTelemetryService{}.helperPath(), "/Library/PrivilegedHelperTools/org.quellin.helper");
  EXPECT_EQ(ProTelemetryService::bundledHelperName, "QuellinHelper");
}

TEST_F(ProTelemetryServiceTest, AMissingToolIsReportedAsNotInstalled) {
  const HelperStatus status = service.helperStatus();
  EXPECT_FALSE(status.isInstalled);
  EXPECT_FALSE(status.isExecutable);
  EXPECT_FALSE(status.isSetuidRoot);
  EXPECT_FALSE(status.supportsProTelemetry);
  EXPECT_EQ(status.ownerUserID, -1);
  EXPECT_EQ(status.groupID, -1);
  EXPECT_EQ(status.installedVersion, std::nullopt);
  EXPECT_EQ(status.path, toolPath);
  EXPECT_EQ(status.error, "Helper is not installed");
  EXPECT_FALSE(status.isUsable());
}

TEST_F(ProTelemetryServiceTest, TakesVersionAndCapabilityFromTheToolAndTheRestFromTheFile) {
  installTool("[ \"$*\" = status-json ] || exit 64\necho '" + std::string{usableStatus} + "'");
  const HelperStatus status = service.helperStatus();
  EXPECT_TRUE(status.isInstalled);
  EXPECT_TRUE(status.isExecutable);
  EXPECT_FALSE(status.isSetuidRoot) << "the file has no set-user-ID bit, whatever the tool says";
  EXPECT_EQ(status.ownerUserID, geteuid());
  EXPECT_EQ(status.groupID, getegid());
  EXPECT_EQ(status.installedVersion, "7.8.9");
  EXPECT_TRUE(status.supportsProTelemetry);
  EXPECT_EQ(status.path, toolPath);
  EXPECT_EQ(status.error, std::nullopt);
}

TEST_F(ProTelemetryServiceTest, AToolWithoutAVersionKeepsItsCapability) {
  installToolThatPrints(
      R"({"isInstalled":true,"isExecutable":true,"isSetuidRoot":true,"ownerUserID":0,"groupID":0,)"
      R"("supportsProTelemetry":true,"path":"x"})");
  const HelperStatus status = service.helperStatus();
  EXPECT_EQ(status.installedVersion, std::nullopt);
  EXPECT_TRUE(status.supportsProTelemetry);
}

TEST_F(ProTelemetryServiceTest, AnAnswerThatIsNoStatusHasNeitherCapabilityNorError) {
  installToolThatPrints("hello");
  const HelperStatus status = service.helperStatus();
  EXPECT_TRUE(status.isInstalled);
  EXPECT_FALSE(status.supportsProTelemetry);
  EXPECT_EQ(status.error, std::nullopt);
}

TEST_F(ProTelemetryServiceTest, AFailingToolsMessageBecomesTheError) {
  installTool("echo 'QuellinHelper must run with effective uid 0' >&2; exit 77");
  const HelperStatus status = service.helperStatus();
  EXPECT_EQ(status.error, "QuellinHelper must run with effective uid 0");
  EXPECT_FALSE(status.supportsProTelemetry);
}

TEST_F(ProTelemetryServiceTest, AToolThatFailsSilentlyHasAnEmptyError) {
  installTool("exit 5");
  EXPECT_EQ(service.helperStatus().error, "");
}

TEST_F(ProTelemetryServiceTest, StandardOutputStandsInForAnErrorThatIsNoText) {
  installTool("printf '\\377' >&2; echo told; exit 5");
  EXPECT_EQ(service.helperStatus().error, "told");
}

TEST_F(ProTelemetryServiceTest, TheStatusStandsInWhenNeitherStreamIsText) {
  installTool("printf '\\377' >&2; printf '\\377'; exit 5");
  EXPECT_EQ(service.helperStatus().error, "Helper exited with status 5");
}

TEST_F(ProTelemetryServiceTest, AFileThatIsNotExecutableIsInstalledAllTheSame) {
  installToolThatPrints(usableStatus);
  setMode(0644);
  const HelperStatus status = service.helperStatus();
  EXPECT_TRUE(status.isInstalled);
  EXPECT_FALSE(status.isExecutable);
  EXPECT_EQ(status.error, "Permission denied");
}

TEST_F(ProTelemetryServiceTest, AToolThatHangsOnItsStatusIsTerminatedAfterTwoSeconds) {
  ManualMonotonicClock clock;
  installTool("exec sleep 600");
  const ProTelemetryService hanging{toolPath, AdministratorPrompt::native(), clock, wallClock};
  const HelperStatus status = hanging.helperStatus();
  EXPECT_EQ(status.error, "");
  EXPECT_FALSE(status.supportsProTelemetry);
  EXPECT_NEAR(clock.slept().count(), 2, 0.0501);
}

TEST_F(ProTelemetryServiceTest, ALinkIsNeverSetuidRoot) {
  installToolThatPrints(usableStatus);
  setMode(04755);
  const std::string link = folder.pathOf("link");
  std::filesystem::create_symlink(toolPath, link);
  const HelperStatus status = ProTelemetryService{link}.helperStatus();
  EXPECT_TRUE(status.isInstalled);
  EXPECT_FALSE(status.isSetuidRoot);
}

class ProTelemetryServiceNeedsRootTest : public ProTelemetryServiceTest {};

TEST_F(ProTelemetryServiceNeedsRootTest, ARootOwnedFileWithTheBitIsSetuidRootAndUsable) {
  installToolThatPrints(usableStatus);
  setMode(04755);
  const HelperStatus status = service.helperStatus();
  EXPECT_TRUE(status.isSetuidRoot);
  EXPECT_TRUE(status.isUsable());
}

TEST_F(ProTelemetryServiceNeedsRootTest, ARootOwnedFileWithoutTheBitIsNot) {
  installToolThatPrints(usableStatus);
  setMode(0755);
  EXPECT_FALSE(service.helperStatus().isSetuidRoot);
}

TEST_F(ProTelemetryServiceNeedsRootTest, AnotherUsersFileWithTheBitIsNot) {
  installToolThatPrints(usableStatus);
  ASSERT_EQ(chown(toolPath.c_str(), 65534, 65534), 0);
  setMode(04755);
  const HelperStatus status = service.helperStatus();
  EXPECT_FALSE(status.isSetuidRoot);
  EXPECT_EQ(status.ownerUserID, 65534);
  EXPECT_EQ(status.groupID, 65534);
}

class HelperInstallTest : public ProTelemetryServiceTest {
 protected:
  /// An administrator who does `body` instead of asking, and keeps the arguments.
  [[nodiscard]] ProTelemetryService serviceWithPrompt(std::string_view body,
                                                      AdministratorPrompt::Kind kind) const {
    const std::string keep = "printf '%s\\n' \"$@\" >'" + folder.pathOf("arguments") + "'\n";
    return ProTelemetryService{toolPath, {kind, folder.writeScript("prompt", keep + std::string{body})}};
  }
};

TEST_F(HelperInstallTest, HandsTheScriptToTheAppleScriptPrompt) {
  const auto installer = serviceWithPrompt("exit 1", AdministratorPrompt::Kind::appleScript);
  static_cast<void>(installer.installBundledHelper("/Apps/Bob's/QuellinHelper"));
  EXPECT_EQ(contentOf(folder.pathOf("arguments")),
            "-e\ndo shell script \"/usr/bin/install -d -m 755 '" + folder.path().string() +
                R"(' && /usr/bin/install -o root -g wheel -m 4755 '/Apps/Bob'\\''s/QuellinHelper' ')" +
                toolPath + "'\" with administrator privileges\n");
}

TEST_F(HelperInstallTest, HandsTheCommandsToTheShellOfThePolicyKitPrompt) {
  const auto installer = serviceWithPrompt("exit 1", AdministratorPrompt::Kind::policyKit);
  static_cast<void>(installer.installBundledHelper("/opt/QuellinHelper"));
  EXPECT_EQ(contentOf(folder.pathOf("arguments")),
            "/bin/sh\n-c\n" + installCommand("/opt/QuellinHelper", toolPath, "root") + "\n");
}

TEST_F(HelperInstallTest, ARefusedPromptGivesItsOwnText) {
  const auto installer = serviceWithPrompt("echo '0:1: execution error: User canceled. (-128)' >&2; exit 1",
                                           AdministratorPrompt::Kind::appleScript);
  EXPECT_EQ(installer.installBundledHelper("/x"),
            (HelperInstallResult{false, "0:1: execution error: User canceled. (-128)"}));
}

TEST_F(HelperInstallTest, APromptThatFailsSilentlyGivesAnEmptyMessage) {
  const auto installer = serviceWithPrompt("exit 1", AdministratorPrompt::Kind::appleScript);
  EXPECT_EQ(installer.installBundledHelper("/x"), (HelperInstallResult{false, ""}));
}

TEST_F(HelperInstallTest, APromptWhoseWordsAreNoTextGivesTheLastResort) {
  const auto installer =
      serviceWithPrompt("printf '\\377'; printf '\\377' >&2; exit 1", AdministratorPrompt::Kind::appleScript);
  EXPECT_EQ(installer.installBundledHelper("/x"), (HelperInstallResult{false, "Helper installation failed"}));
}

TEST_F(HelperInstallTest, AMissingPromptGivesTheSystemsDescription) {
  const ProTelemetryService installer{toolPath,
                                      {AdministratorPrompt::Kind::policyKit, "/nonexistent/pkexec"}};
  EXPECT_EQ(installer.installBundledHelper("/x"), (HelperInstallResult{false, "No such file or directory"}));
}

TEST_F(HelperInstallTest, APromptThatNobodyAnswersIsEndedAfterTwoMinutes) {
  ManualMonotonicClock clock;
  const ProTelemetryService installer{
      toolPath,
      {AdministratorPrompt::Kind::policyKit, folder.writeScript("prompt", "exec sleep 600")},
      clock};
  EXPECT_EQ(installer.installBundledHelper("/x"), (HelperInstallResult{false, ""}));
  EXPECT_NEAR(clock.slept().count(), 120, 0.0501);
}

TEST_F(HelperInstallTest, ACopyThatIsNotThereAfterwardsIsAFailure) {
  const auto installer = serviceWithPrompt("exit 0", AdministratorPrompt::Kind::appleScript);
  EXPECT_EQ(installer.installBundledHelper("/x"),
            (HelperInstallResult{false, "Helper copied, but status check failed: Helper is not installed"}));
}

TEST_F(HelperInstallTest, ACopyThatAnswersButIsNotUsableHasNoKnownError) {
  installToolThatPrints("{}");
  const auto installer = serviceWithPrompt("exit 0", AdministratorPrompt::Kind::appleScript);
  EXPECT_EQ(installer.installBundledHelper("/x"),
            (HelperInstallResult{false, "Helper copied, but status check failed: unknown error"}));
}

using HelperInstallNeedsRootTest = HelperInstallTest;

TEST_F(HelperInstallNeedsRootTest, AUsableCopyIsASuccess) {
  const auto installer =
      serviceWithPrompt("cat >'" + toolPath + "' <<'END'\n#!/bin/sh\necho '" + std::string{usableStatus} +
                            "'\nEND\nchmod 4755 '" + toolPath + "'",
                        AdministratorPrompt::Kind::appleScript);
  EXPECT_EQ(installer.installBundledHelper("/x"),
            (HelperInstallResult{true, "Pro Telemetry helper installed"}));
}

TEST_F(HelperInstallNeedsRootTest, TheCommandsInstallTheToolOnThisSystem) {
  const std::string built = folder.writeScript("built", "echo '" + std::string{usableStatus} + "'");
  const std::string installed = folder.pathOf("tools/helper");
  const std::string command = installCommand(built, installed, AdministratorPrompt::native().rootGroup());
  EXPECT_EQ(std::system(command.c_str()), 0);  // NOLINT(concurrency-mt-unsafe): no other thread runs
  const HelperStatus status = ProTelemetryService{installed}.helperStatus();
  EXPECT_TRUE(status.isUsable());
  EXPECT_EQ(status.groupID, 0);
}

class ReadSnapshotTest : public ProTelemetryServiceTest {
 protected:
  [[nodiscard]] ProTelemetrySnapshot unavailable(std::string error,
                                                 std::optional<std::string> summary = std::nullopt) const {
    ProTelemetrySnapshot snapshot;
    snapshot.isAvailable = false;
    snapshot.source = "powermetrics";
    snapshot.sampledAt = wallClock.now();
    snapshot.sampleIntervalMilliseconds = 1000;
    snapshot.rawSampleSummary = std::move(summary);
    snapshot.error = std::move(error);
    return snapshot;
  }
};

TEST_F(ReadSnapshotTest, AnAvailableSnapshotComesBackUnchanged) {
  installTool(
      "[ \"$*\" = read-pro-telemetry-json ] || exit 64\n"
      R"(echo '{"isAvailable":true,"source":"s","sampledAt":"2025-03-01T09:30:12Z","sampleIntervalMilliseconds":1000,)"
      R"("processes":[{"pid":7,"name":"a\/b","energyImpact":1.5}],"cpuPowerWatts":2}')");
  ProTelemetrySnapshot expected;
  expected.isAvailable = true;
  expected.source = "s";
  expected.sampledAt = instantAt(1'740'821'412);
  expected.sampleIntervalMilliseconds = 1000;
  expected.processes.resize(1);
  expected.processes[0].pid = 7;
  expected.processes[0].name = "a/b";
  expected.processes[0].energyImpact = 1.5;
  expected.cpuPowerWatts = 2;
  EXPECT_EQ(service.readSnapshot(), expected);
}

TEST_F(ReadSnapshotTest, TheToolsOwnFailureComesBackUnchanged) {
  installToolThatPrints(
      R"({"isAvailable":false,"source":"powermetrics","sampledAt":"2025-03-01T09:30:12Z",)"
      R"("sampleIntervalMilliseconds":1000,"processes":[],"error":"powermetrics timed out"})");
  const ProTelemetrySnapshot snapshot = service.readSnapshot();
  EXPECT_FALSE(snapshot.isAvailable);
  EXPECT_EQ(snapshot.sampledAt, instantAt(1'740'821'412));
  EXPECT_EQ(snapshot.error, "powermetrics timed out");
}

TEST_F(ReadSnapshotTest, AMissingToolGivesTheSystemsDescription) {
  EXPECT_EQ(service.readSnapshot(), unavailable("No such file or directory"));
}

TEST_F(ReadSnapshotTest, AToolThatIsNotExecutableGivesTheSystemsDescription) {
  installToolThatPrints("{}");
  setMode(0644);
  EXPECT_EQ(service.readSnapshot(), unavailable("Permission denied"));
}

TEST_F(ReadSnapshotTest, AFailingToolGivesItsStandardError) {
  installTool("echo 'QuellinHelper must run with effective uid 0' >&2; exit 77");
  EXPECT_EQ(service.readSnapshot(), unavailable("QuellinHelper must run with effective uid 0"));
}

TEST_F(ReadSnapshotTest, AFailingToolWithoutTextGivesItsOutputThenItsStatus) {
  installTool("printf '\\377' >&2; echo out; exit 70");
  EXPECT_EQ(service.readSnapshot(), unavailable("out"));
  installTool("printf '\\377' >&2; printf '\\377'; exit 70");
  EXPECT_EQ(service.readSnapshot(), unavailable("Helper exited with status 70"));
}

TEST_F(ReadSnapshotTest, ASuccessWithoutOutputGivesTheStandardErrorElseTheStatusZero) {
  installTool("exit 0");
  EXPECT_EQ(service.readSnapshot(), unavailable(""));
  installTool("printf '\\377' >&2");
  EXPECT_EQ(service.readSnapshot(), unavailable("")) << "the empty output is valid text";
}

TEST_F(ReadSnapshotTest, AnInstantThatIsNoneFailsTheDecoding) {
  const std::string document =
      R"({"isAvailable":true,"source":"s","sampledAt":"yesterday","sampleIntervalMilliseconds":1,"processes":[]})";
  installToolThatPrints(document);
  const ProTelemetrySnapshot snapshot = service.readSnapshot();
  EXPECT_FALSE(snapshot.isAvailable);
  EXPECT_EQ(snapshot.rawSampleSummary, document + "\n");
  EXPECT_THAT(snapshot.error.value_or(""), StartsWith("Failed to decode helper telemetry: "));
  EXPECT_EQ(snapshot.sampledAt, wallClock.now());
}

TEST_F(ReadSnapshotTest, MissingProcessesFailTheDecoding) {
  installToolThatPrints(
      R"({"isAvailable":true,"source":"s","sampledAt":"2025-03-01T09:30:12Z","sampleIntervalMilliseconds":1})");
  const ProTelemetrySnapshot snapshot = service.readSnapshot();
  EXPECT_FALSE(snapshot.isAvailable);
  EXPECT_THAT(snapshot.error.value_or(""), testing::HasSubstr("processes"));
}

TEST_F(ReadSnapshotTest, OutputThatIsNoTextHasNoSummary) {
  installTool("printf '\\377'");
  const ProTelemetrySnapshot snapshot = service.readSnapshot();
  EXPECT_EQ(snapshot.rawSampleSummary, std::nullopt);
  EXPECT_THAT(snapshot.error.value_or(""), StartsWith("Failed to decode helper telemetry: "));
}

TEST_F(ReadSnapshotTest, AnAnswerNestedWithoutEndIsRefused) {
  installTool("head -c 60000 /dev/zero | tr '\\000' '['");
  EXPECT_THAT(service.readSnapshot().error.value_or(""), StartsWith("Failed to decode helper telemetry: "));
}

TEST_F(ReadSnapshotTest, AToolThatHangsIsTerminatedAfterTwentySeconds) {
  ManualMonotonicClock clock;
  installTool("exec sleep 600");
  const ProTelemetryService hanging{toolPath, AdministratorPrompt::native(), clock, wallClock};
  EXPECT_EQ(hanging.readSnapshot(), unavailable(""));
  EXPECT_NEAR(clock.slept().count(), 20, 0.0501);
}

}  // namespace
}  // namespace quellin
