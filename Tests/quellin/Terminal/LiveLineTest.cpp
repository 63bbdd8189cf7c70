#include <string>

#include <gmock/gmock.h>

#include "QuellinCore/Support/FileDescriptor.h"
#include "Support/ManualClock.h"
#include "quellin/Terminal/LiveLine.h"

namespace quellin::cli {
namespace {

using testing_support::ManualMonotonicClock;

// A live line on a terminal that is described, with its text going into a pipe.
struct LiveLineTest : testing::Test {
  Pipe pipe = std::move(*Pipe::open());
  Options options;
  Output out{pipe.writeEnd.get()};
  Talk talk{pipe.writeEnd.get()};
  ManualMonotonicClock clock;

  [[nodiscard]] Invocation on(const Terminal& terminal) {
    return {.options = options,
            .out = out,
            .talk = talk,
            .outTerminal = terminal,
            .talkTerminal = terminal,
            .program = ""};
  }

  std::string said() {
    pipe.writeEnd.reset();
    return readToEnd(pipe.readEnd.get());
  }
};

TEST_F(LiveLineTest, ATerminalShowsOneLineThatChanges) {
  const Invocation invocation =
      on({.isTerminal = true, .isDumb = false, .hasColours = false, .width = std::size_t{20}});
  LiveLine line{invocation, clock};
  line.show("1 sample");
  line.show("2 samples");
  line.end();
  line.end();
  EXPECT_EQ(said(), "\r1 sample\x1b[K\r2 samples\x1b[K\n");
}

TEST_F(LiveLineTest, TheLineNeverRunsIntoTheNext) {
  const Invocation invocation =
      on({.isTerminal = true, .isDumb = false, .hasColours = false, .width = std::size_t{6}});
  LiveLine line{invocation, clock};
  line.show("12 °C, much more");
  EXPECT_EQ(said(), "\r12 °C\x1b[K");
}

TEST_F(LiveLineTest, NamesCannotCommandTheTerminal) {
  const Invocation invocation =
      on({.isTerminal = true, .isDumb = false, .hasColours = false, .width = std::size_t{80}});
  LiveLine line{invocation, clock};
  line.show("a\x1b[2Jb");
  EXPECT_EQ(said(), "\ra?[2Jb\x1b[K");
}

TEST_F(LiveLineTest, APipeGetsALineEveryTenSeconds) {
  const Invocation invocation = on({});
  LiveLine line{invocation, clock};
  line.show("first");
  clock.advance(Seconds{9.5});
  line.show("too early");
  clock.advance(Seconds{0.5});
  line.show("second");
  line.end();
  EXPECT_EQ(said(), "quellin: first\nquellin: second\n");
}

TEST_F(LiveLineTest, WhatIsOverInAMomentIsNotShown) {
  const Invocation invocation = on({});
  LiveLine line{invocation, clock, LiveLine::untilSlow};
  clock.advance(Seconds{0.9});
  line.show("too early");
  clock.advance(Seconds{0.1});
  line.show("slow");
  EXPECT_EQ(said(), "quellin: slow\n");
}

TEST_F(LiveLineTest, ADumbTerminalIsTreatedAsAPipe) {
  const Invocation invocation =
      on({.isTerminal = true, .isDumb = true, .hasColours = false, .width = std::size_t{80}});
  LiveLine line{invocation, clock};
  line.show("first");
  line.end();
  EXPECT_EQ(said(), "quellin: first\n");
}

}  // namespace
}  // namespace quellin::cli
