#include <map>
#include <string>

#include <gmock/gmock.h>

#include "QuellinCore/Support/FileDescriptor.h"
#include "Support/PseudoTerminal.h"
#include "quellin/Terminal/Terminal.h"

namespace quellin::cli {
namespace {

using testing_support::PseudoTerminal;

Environment environmentOf(std::map<std::string, std::string> variables) {
  return [variables = std::move(variables)](const std::string& name) -> std::optional<std::string> {
    const auto found = variables.find(name);
    return found == variables.end() ? std::nullopt : std::optional{found->second};
  };
}

struct TerminalTest : testing::Test {
  PseudoTerminal terminal{30, 100};

  [[nodiscard]] Terminal with(std::map<std::string, std::string> variables) const {
    return Terminal::at(terminal.slave(), environmentOf(std::move(variables)));
  }
};

TEST_F(TerminalTest, ATerminalHasColoursAndItsOwnWidth) {
  const Terminal found = with({{"TERM", "xterm-256color"}});
  EXPECT_TRUE(found.isTerminal);
  EXPECT_FALSE(found.isDumb);
  EXPECT_TRUE(found.hasColours);
  EXPECT_EQ(found.width, 100U);
}

TEST_F(TerminalTest, COLUMNSGoesBeforeTheTerminalsOwnWidth) {
  EXPECT_EQ(with({{"TERM", "xterm"}, {"COLUMNS", "66"}}).width, 66U);
}

TEST_F(TerminalTest, LINESGoesBeforeTheTerminalsOwnHeight) {
  terminal.resize(50, 100);
  EXPECT_EQ(with({{"TERM", "xterm"}}).height, 50U);
  EXPECT_EQ(with({{"TERM", "xterm"}, {"LINES", "7"}}).height, 7U);
  EXPECT_EQ(with({{"TERM", "xterm"}, {"LINES", "0"}}).height, 50U);
}

TEST_F(TerminalTest, COLUMNSThatIsNoWidthIsIgnored) {
  for (const char* const columns : {"", "0", "-5", "wide", "80x", "99999999999999999999999"}) {
    EXPECT_EQ(with({{"TERM", "xterm"}, {"COLUMNS", columns}}).width, 100U) << columns;
  }
}

TEST_F(TerminalTest, ATerminalWithoutASizeIsTakenFor24RowsOf80Columns) {
  terminal.resize(0, 0);
  EXPECT_EQ(with({{"TERM", "xterm"}}).width, 80U);
  EXPECT_EQ(with({{"TERM", "xterm"}}).height, 24U);
}

TEST_F(TerminalTest, NOCOLORTakesColoursOnlyWhenItSaysAnything) {
  EXPECT_FALSE(with({{"TERM", "xterm"}, {"NO_COLOR", "1"}}).hasColours);
  EXPECT_FALSE(with({{"TERM", "xterm"}, {"NO_COLOR", "0"}}).hasColours);
  EXPECT_FALSE(with({{"TERM", "xterm"}, {"NO_COLOR", "1"}}).isDumb);
  EXPECT_TRUE(with({{"TERM", "xterm"}, {"NO_COLOR", ""}}).hasColours);
}

TEST_F(TerminalTest, ADumbTerminalCanOnlyAppend) {
  for (const auto& variables :
       std::vector<std::map<std::string, std::string>>{{{"TERM", "dumb"}}, {{"TERM", ""}}, {}}) {
    EXPECT_TRUE(with(variables).isDumb);
    EXPECT_FALSE(with(variables).hasColours);
  }
}

TEST_F(TerminalTest, APipeHasNeitherColoursNorAWidthUnlessCOLUMNSGivesOne) {
  const auto pipe = Pipe::open();
  ASSERT_TRUE(pipe);
  const Terminal plain = Terminal::at(pipe->writeEnd.get(), environmentOf({{"TERM", "xterm"}}));
  EXPECT_FALSE(plain.isTerminal);
  EXPECT_FALSE(plain.hasColours);
  EXPECT_EQ(plain.width, std::nullopt);
  EXPECT_EQ(plain.height, std::nullopt);
  EXPECT_EQ(plain.presentWidth(), std::nullopt);
  EXPECT_EQ(Terminal::at(pipe->writeEnd.get(), environmentOf({{"COLUMNS", "40"}})).width, 40U);
}

TEST_F(TerminalTest, ThePresentWidthIsThatOfTheWindowAsItWasPulled) {
  const Terminal own = with({{"TERM", "xterm"}});
  const Terminal told = with({{"TERM", "xterm"}, {"COLUMNS", "66"}});
  terminal.resize(30, 40);
  EXPECT_EQ(own.presentWidth(), 40U);
  EXPECT_EQ(told.presentWidth(), 66U);
  terminal.resize(0, 0);
  EXPECT_EQ(own.presentWidth(), 80U);
}

TEST_F(TerminalTest, StylesShowOnlyWhereThereAreColours) {
  const Terminal colourful = with({{"TERM", "xterm"}});
  EXPECT_EQ(colourful.styled(Style::strong, "a"), "\x1b[1ma\x1b[0m");
  EXPECT_EQ(colourful.styled(Style::good, "a"), "\x1b[32ma\x1b[0m");
  EXPECT_EQ(colourful.styled(Style::warning, "a"), "\x1b[33ma\x1b[0m");
  EXPECT_EQ(colourful.styled(Style::bad, "a"), "\x1b[31ma\x1b[0m");
  EXPECT_EQ(colourful.styled(Style::faint, "a"), "\x1b[2ma\x1b[0m");
  EXPECT_EQ(colourful.styled(Style::plain, "a"), "a");
  EXPECT_EQ(with({{"TERM", "xterm"}, {"NO_COLOR", "1"}}).styled(Style::bad, "a"), "a");
}

}  // namespace
}  // namespace quellin::cli
