#include <csignal>
#include <cstdio>
#include <limits>
#include <stdexcept>
#include <thread>
#include <vector>

#include <gmock/gmock.h>

#include "quellin/Measuring/Loop.h"

namespace quellin::cli {
namespace {

using testing::ElementsAre;

TEST(LoopTest, RunsActionsWhenTheirTimeComes) {
  Loop loop;
  std::vector<int> order;
  loop.after(Seconds{3600}, [&] { order.push_back(3); });
  loop.after(Seconds{1e-9}, [&] {
    order.push_back(1);
    loop.after(Seconds{-1}, [&] {
      order.push_back(2);
      loop.stop();
    });
  });
  loop.run();
  EXPECT_THAT(order, ElementsAre(1, 2));
}

// What is over at once runs before an action that was asked for later.
TEST(LoopTest, ADelayOfAgesIsNotOverAtOnce) {
  Loop loop;
  bool isOver = false;
  for (const double seconds : {1e11, 1e15, 1e300, std::numeric_limits<double>::infinity()}) {
    loop.after(Seconds{seconds}, [&] { isOver = true; });
  }
  loop.after(Seconds{0}, [&] { loop.stop(); });
  loop.run();
  EXPECT_FALSE(isOver);
}

TEST(LoopTest, HearsASignalAsOftenAsItComes) {
  Loop loop;
  int heard = 0;
  loop.onSignal(SIGWINCH, [&] { ++heard == 2 ? loop.stop() : static_cast<void>(std::raise(SIGWINCH)); });
  ASSERT_EQ(std::raise(SIGWINCH), 0);
  loop.run();
  EXPECT_EQ(heard, 2);
}

TEST(LoopTest, WhatAnActionThrowsReachesTheCaller) {
  Loop loop;
  loop.after(Seconds{0}, [] { throw std::runtime_error("lost"); });
  EXPECT_THROW(loop.run(), std::runtime_error);
}

class RequestToEndTest : public testing::TestWithParam<int> {};

TEST_P(RequestToEndTest, IsARequestToEnd) {
  Loop loop;
  bool isAsked = false;
  loop.onInterrupt([&] {
    isAsked = true;
    loop.stop();
  });
  loop.after(Seconds{0}, [] { std::raise(GetParam()); });
  loop.run();  // for ever, if it were none
  EXPECT_TRUE(isAsked);
}

INSTANTIATE_TEST_SUITE_P(LoopTest, RequestToEndTest, testing::Values(SIGINT, SIGTERM, SIGHUP));

TEST(LoopTest, AnImperturbableOneTellsNobodyOfThem) {
  Loop loop;
  int told = 0;
  loop.onInterrupt([&] { ++told; });
  EXPECT_FALSE(loop.beImperturbable());
  EXPECT_FALSE(loop.wasAskedToEnd());
  int heard = 0;
  loop.onSignal(SIGINT, [&] { ++heard == 3 ? loop.stop() : static_cast<void>(std::raise(SIGINT)); });
  loop.after(Seconds{0}, [] { std::raise(SIGINT); });
  loop.run();
  EXPECT_EQ(heard, 3);
  // Each time it returns, whoever were to end the process has dealt with one signal more.
  for (int times = 0; times < 3; ++times) EXPECT_FALSE(loop.beImperturbable()) << "asked before, that is";
  EXPECT_TRUE(loop.wasAskedToEnd());
  loop.after(Seconds{0}, [&] { loop.stop(); });
  loop.runAgain();
  EXPECT_EQ(told, 0);
}

TEST(LoopTest, AnImperturbableOneKnowsThatItWasAskedBefore) {
  Loop loop;
  loop.onInterrupt([&] { loop.stop(); });
  loop.after(Seconds{0}, [] { std::raise(SIGTERM); });
  loop.run();
  EXPECT_TRUE(loop.beImperturbable());
}

TEST(LoopTest, ASecondRequestEndsTheProcessThoughTheLoopIsOver) {
  testing::FLAGS_gtest_death_test_style = "threadsafe";
  EXPECT_EXIT(
      {
        Loop loop;
        loop.onInterrupt([&] { loop.stop(); });
        loop.after(Seconds{0}, [] { std::raise(SIGINT); });
        loop.run();
        std::raise(SIGINT);
        for (;;) std::this_thread::yield();  // a summary that takes its time
      },
      testing::ExitedWithCode(1), "");
}

TEST(LoopTest, TheLastThingBeforeASuddenEndIsWhatWasAskedFor) {
  testing::FLAGS_gtest_death_test_style = "threadsafe";
  EXPECT_EXIT(
      {
        Loop loop;
        loop.onSuddenEnd([] { std::fputs("rescued", stderr); });
        loop.after(Seconds{0}, [] {
          std::raise(SIGINT);
          std::raise(SIGINT);
          for (;;) std::this_thread::yield();
        });
        loop.run();
      },
      testing::ExitedWithCode(1), "rescued");
}

TEST(LoopTest, ASecondRequestEndsTheProcessThoughTheLoopIsHeldUp) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_EXIT(
      {
        Loop loop{ExitStatus::notMeasured};
        loop.after(Seconds{0}, [] {
          std::raise(SIGINT);
          std::raise(SIGTERM);
          for (;;) std::this_thread::yield();  // hardware that does not answer
        });
        loop.run();
      },
      testing::ExitedWithCode(125), "");
}

}  // namespace
}  // namespace quellin::cli
