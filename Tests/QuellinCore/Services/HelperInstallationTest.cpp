#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "QuellinCore/Services/HelperInstallation.h"
#include "QuellinCore/Support/ChildProcess.h"

namespace quellin {
namespace {

using testing::ElementsAre;

const std::vector<std::string> hostileTexts = {
    "plain",
    "",
    "Bob's Apps",
    "'",
    "''''",
    "two  blanks ",
    "dollar $HOME $(id) `id`",
    R"(back\slash \\ \n)",
    R"(double " quote)",
    "line\nbreak\ttab",
    "semi; rm -rf / && || | > <",
    "-rf",
    "*?[a]{b,c}~#!",
    "Größe 電力 \xF0\x9F\x94\x8B",
};

/// What a POSIX shell understands when it is given the text as a word.
std::string readByShell(const std::string& word) {
  auto child = ChildProcess::start({.executable = "/bin/sh",
                                    .arguments = {"-c", "printf '%s' " + word},
                                    .standardOutput = ChildStream::pipe});
  if (!child) return "shell did not start";
  std::string output = child->readStandardOutput();
  EXPECT_EQ(child->wait(), 0);
  return output;
}

/// What stands for the text of an AppleScript string literal: a backslash takes the next character literally.
std::string readByAppleScript(std::string_view literal) {
  std::string text;
  for (std::size_t index = 0; index < literal.size(); ++index) {
    EXPECT_NE(literal[index], '"') << "an unescaped quote ends the literal early: " << literal;
    if (literal[index] == '\\') ++index;
    text += literal.at(index);
  }
  return text;
}

TEST(ShellQuotedTest, AShellReadsBackExactlyWhatWasQuoted) {
  for (const std::string& text : hostileTexts) EXPECT_EQ(readByShell(shellQuoted(text)), text);
}

TEST(ShellQuotedTest, ClosesEscapesAndReopensAtASingleQuote) {
  EXPECT_EQ(shellQuoted("/Users/x/Bob's Apps/QuellinHelper"), R"('/Users/x/Bob'\''s Apps/QuellinHelper')");
}

TEST(AppleScriptEscapedTest, TheLiteralReadsBackExactlyWhatWasEscaped) {
  for (const std::string& text : hostileTexts) EXPECT_EQ(readByAppleScript(appleScriptEscaped(text)), text);
}

TEST(AppleScriptEscapedTest, DoublesTheBackslashOfAQuotedQuote) {
  EXPECT_EQ(appleScriptEscaped(shellQuoted("Bob's")), R"('Bob'\\''s')");
}

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
