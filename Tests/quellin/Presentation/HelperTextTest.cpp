#include <gmock/gmock.h>

#include "quellin/Presentation/HelperText.h"

namespace quellin::cli {
namespace {

using testing::AllOf;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

HelperStatus usableTool() {
  HelperStatus status;
  status.path = "/tool";
  status.isInstalled = status.isExecutable = status.isSetuidRoot = true;
  status.ownerUserID = 0;
  status.installedVersion = "0.9.4";
  status.supportsProTelemetry = true;
  return status;
}

TEST(HelperTextTest, AMachineWithoutTheToolIsToldHowToGetIt) {
  HelperStatus status;
  status.path = "/tool";
  status.error = "Helper is not installed";
  EXPECT_THAT(helperText(status), AllOf(StartsWith("/tool: not installed. 'quellin helper install'"),
                                        Not(HasSubstr("Helper is not installed"))));
}

TEST(HelperTextTest, AUsableToolIsNamedWithItsVersion) {
  ASSERT_TRUE(usableTool().isUsable());
  EXPECT_EQ(helperText(usableTool()), "/tool: version 0.9.4, usable.");
}

TEST(HelperTextTest, AToolWithoutItsRightsIsToldApart) {
  HelperStatus status = usableTool();
  status.isSetuidRoot = false;
  ASSERT_FALSE(status.isUsable());
  EXPECT_THAT(helperText(status), HasSubstr("installed, but not usable: it is not owned by root with the "
                                            "set-user-ID bit. 'quellin helper install' installs it anew."));
}

TEST(MissingTelemetryTextTest, AnotherMachineHasNone) {
  EXPECT_THAT(missingTelemetryText(false, true, std::nullopt)->c_str(),
              HasSubstr("measures this machine only"));
}

TEST(MissingTelemetryTextTest, NothingIsSaidWhileItMayStillComeOrOnceItIsThere) {
  EXPECT_EQ(missingTelemetryText(true, false, std::nullopt), std::nullopt);
  ProTelemetrySnapshot there;
  there.isAvailable = true;
  EXPECT_EQ(missingTelemetryText(true, true, there), std::nullopt);
}

TEST(MissingTelemetryTextTest, TheToolsOwnReasonIsGiven) {
  ProTelemetrySnapshot failed;
  failed.error = "powermetrics exited with status 1";
  EXPECT_THAT(
      *missingTelemetryText(true, true, failed),
      AllOf(StartsWith(
                "no telemetry: the tool, which asks powermetrics of macOS, answered \"powermetrics exited "
                "with status 1\". "),
            EndsWith("goes on without.")));
}

TEST(MissingTelemetryTextTest, AToolThatFailsSilentlyIsSaidToGiveNone) {
  ProTelemetrySnapshot failed;
  failed.error = "";
  EXPECT_THAT(*missingTelemetryText(true, true, failed),
              HasSubstr("powermetrics of macOS, has none. 'quellin helper status'"));
}

TEST(MissingTelemetryTextTest, AToolThatIsNotInstalledIsNamedWithItsPlaceAndTheWayToGetIt) {
  ProTelemetrySnapshot failed;
  failed.error = "No such file or directory";
  EXPECT_EQ(*missingTelemetryText(true, false, failed),
            "no telemetry: there is no tool at /Library/PrivilegedHelperTools/org.quellin.helper. 'quellin "
            "helper install' installs it; the recording goes on without.");
}

}  // namespace
}  // namespace quellin::cli
