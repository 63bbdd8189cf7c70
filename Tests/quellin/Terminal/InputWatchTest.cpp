#include <fcntl.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "quellin/Measuring/Loop.h"
#include "quellin/Terminal/InputWatch.h"

namespace quellin::cli {
namespace {

TEST(InputWatchTest, TellsEachTimeThereIsSomethingToReadAndThenThatTheOtherEndHasGone) {
  auto pipe = Pipe::open().value();
  Loop loop;
  std::string read;
  bool isGone = false;
  const InputWatch watch{pipe.readEnd.get(), loop.executor(), [&](InputState state) {
                           if (state == InputState::gone) {
                             isGone = true;
                             return loop.stop();
                           }
                           ASSERT_EQ(readOnce(pipe.readEnd.get(), read), ReadStep::bytes);
                           if (read == "a") {
                             ASSERT_EQ(write(pipe.writeEnd.get(), "b", 1), 1);
                           } else {
                             pipe.writeEnd.reset();
                           }
                         }};
  ASSERT_EQ(write(pipe.writeEnd.get(), "a", 1), 1);
  loop.run();
  EXPECT_EQ(read, "ab");
  EXPECT_TRUE(isGone);
}

TEST(InputWatchTest, EndsWhileNothingComes) {
  const auto pipe = Pipe::open().value();
  const Loop loop;
  {
    const InputWatch watch{pipe.readEnd.get(), loop.executor(), [](InputState) { FAIL(); }};
  }
  EXPECT_TRUE(pipe.writeEnd);
}

TEST(InputWatchTest, LeavesTheFlagsOfTheDescriptorAlone) {
  const auto pipe = Pipe::open().value();
  const Loop loop;
  const InputWatch watch{pipe.readEnd.get(), loop.executor(), [](InputState) {}};
  EXPECT_EQ(fcntl(pipe.readEnd.get(), F_GETFL) & O_NONBLOCK, 0);
}

}  // namespace
}  // namespace quellin::cli
