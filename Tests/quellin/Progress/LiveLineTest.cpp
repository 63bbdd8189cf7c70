#include <cstddef>
#include <string>

#include <gmock/gmock.h>

#include "Support/ManualClock.h"
#include "Support/PseudoTerminal.h"
#include "quellin/Progress/LiveLine.h"
#include "quellin/Support/TalkPipe.h"

namespace quellin::cli {
namespace {

using testing_support::ManualMonotonicClock;
using testing_support::PseudoTerminal;
using testing_support::TalkPipe;

struct LiveLineTest : testing::Test {
  TalkPipe pipe;
  ManualMonotonicClock clock;

  // What a terminal of so many columns gets for a line with this text, until it goes.
  std::string shown(std::size_t columns, const std::string& text) {
    const Invocation invocation = pipe.onTerminal(columns);
    LiveLine{invocation, clock}.show(text);
    return pipe.said();
  }
};

TEST_F(LiveLineTest, ATerminalShowsOneLineThatChanges) {
  const Invocation invocation = pipe.onTerminal(20);
  LiveLine line{invocation, clock};
  line.show("1 sample");
  line.show("2 samples");
  line.end();
  line.end();
  EXPECT_EQ(pipe.said(), "\r1 sample\x1b[K\r2 samples\x1b[K\n");
}

TEST_F(LiveLineTest, TheLineNeverRunsIntoTheNext) {
  EXPECT_EQ(shown(6, "12 °C, much more"), "\r12 °C\x1b[K\n");
}

TEST_F(LiveLineTest, TheLineFollowsTheWidthOfTheWindow) {
  const PseudoTerminal window{24, 20};
  const Invocation invocation =
      pipe.on(Terminal::at(window.slave(), [](const std::string& name) -> std::optional<std::string> {
        return name == "TERM" ? std::optional<std::string>{"xterm"} : std::nullopt;
      }));
  LiveLine line{invocation, clock};
  line.show("0 s, 1 sample, 12 W");
  window.resize(24, 8);
  line.show("0 s, 2 samples, 12 W");
  EXPECT_EQ(pipe.said(), "\r0 s, 1 sample, 12 W\x1b[K\r0 s, 2 \x1b[K");
}

TEST_F(LiveLineTest, WideCharactersTakeTheirColumns) { EXPECT_EQ(shown(7, "日本語テ"), "\r日本語\x1b[K\n"); }

TEST_F(LiveLineTest, NamesCannotCommandTheTerminal) { EXPECT_EQ(shown(80, "a\x1b[2Jb"), "\ra?[2Jb\x1b[K\n"); }

TEST_F(LiveLineTest, APipeGetsALineEveryTenSeconds) {
  const Invocation invocation = pipe.on({});
  LiveLine line{invocation, clock};
  line.show("first");
  clock.advance(Seconds{9.5});
  line.show("too early");
  clock.advance(Seconds{0.5});
  line.show("second");
  line.end();
  EXPECT_EQ(pipe.said(), "quellin: first\nquellin: second\n");
}

TEST_F(LiveLineTest, ADumbTerminalIsTreatedAsAPipe) {
  const Invocation invocation =
      pipe.on({.isTerminal = true, .isDumb = true, .hasColours = false, .width = std::size_t{80}});
  LiveLine line{invocation, clock};
  line.show("first");
  line.end();
  EXPECT_EQ(pipe.said(), "quellin: first\n");
}

}  // namespace
}  // namespace quellin::cli
