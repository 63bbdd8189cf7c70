#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "QuellinCore/Services/HelperInstallation.h"

namespace quellin {
namespace {

using testing::ElementsAre;

TEST(InstallCommandTest, MakesTheFolderThenCopiesWithOwnerGroupAndMode) {
  EXPECT_EQ(
      installCommand("/Apps/Q.app/QuellinHelper", "/Library/PrivilegedHelperTools/org.example.tool", "wheel"),
      "/usr/bin/install -d -m 755 '/Library/PrivilegedHelperTools' && "
      "/usr/bin/install -o root -g wheel -m 4755 '/Apps/Q.app/QuellinHelper' "
      "'/Library/PrivilegedHelperTools/org.example.tool'");
}

TEST(InstallCommandTest, AFileInTheRootFolderHasTheRootFolder) {
  EXPECT_TRUE(installCommand("/a", "/tool", "wheel").starts_with("/usr/bin/install -d -m 755 '/' && "));
}

TEST(AdministratorPromptTest, RootsProgramsBelongToAGroupThatTheSystemHas) {
  EXPECT_EQ((AdministratorPrompt{AdministratorPrompt::Kind::appleScript, ""}.rootGroup()), "wheel");
  EXPECT_EQ((AdministratorPrompt{AdministratorPrompt::Kind::policyKit, ""}.rootGroup()), "root");
}

TEST(AdministratorPromptTest, AppleScriptWrapsTheCommandInALiteral) {
  const AdministratorPrompt prompt{AdministratorPrompt::Kind::appleScript, "/usr/bin/osascript"};
  EXPECT_THAT(prompt.arguments(R"(install 'a"b\c')"),
              ElementsAre("-e", R"(do shell script "install 'a\"b\\c'" with administrator privileges)"));
}

TEST(AdministratorPromptTest, PolicyKitHandsTheCommandUnchangedToAShell) {
  const AdministratorPrompt prompt{AdministratorPrompt::Kind::policyKit, "/usr/bin/pkexec"};
  EXPECT_THAT(prompt.arguments("a && b"), ElementsAre("/bin/sh", "-c", "a && b"));
}

}  // namespace
}  // namespace quellin
