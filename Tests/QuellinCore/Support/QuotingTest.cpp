#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include "QuellinCore/Support/ChildProcess.h"
#include "QuellinCore/Support/Quoting.h"

namespace quellin {
namespace {

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

}  // namespace
}  // namespace quellin
