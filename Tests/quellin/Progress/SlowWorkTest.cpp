#include <string>

#include <gmock/gmock.h>

#include "quellin/Progress/SlowWork.h"
#include "quellin/Support/TalkPipe.h"

namespace quellin::cli {
namespace {

using testing::HasSubstr;
using testing::StartsWith;
using testing_support::TalkPipe;

constexpr Seconds noTime{0.001};
constexpr Seconds forever{1e6};

struct SlowWorkTest : testing::Test {
  TalkPipe pipe;
  const Invocation invocation = pipe.onTerminal(60);
};

TEST_F(SlowWorkTest, TellsWhatIsDoneAndForHowLongUntilItIsDone) {
  SlowWork work{invocation, "summing up", noTime};
  EXPECT_THAT(pipe.waitForText(), StartsWith("\rsumming up, 0 s\x1b[K"));
  work.end();
  work.end();
  EXPECT_THAT(pipe.said(), testing::EndsWith("\n"));
}

TEST_F(SlowWorkTest, TellsWhatIsDoneNow) {
  SlowWork work{invocation, "summing up", noTime};
  work.now("12 kB exported");
  std::string told;
  while (!told.contains("12 kB exported, 0 s")) {
    const std::string more = pipe.waitForText();
    ASSERT_FALSE(more.empty());
    told += more;
  }
}

TEST_F(SlowWorkTest, SaysNothingOfWhatIsOverInAMoment) {
  {
    const SlowWork work{invocation, "summing up", forever};
  }
  EXPECT_EQ(pipe.said(), "");
}

TEST_F(SlowWorkTest, TheLineIsLeftAlsoWhenTheWorkFails) {
  {
    const SlowWork work{invocation, "summing up", noTime};
    EXPECT_THAT(pipe.waitForText(), HasSubstr("summing up"));
  }
  EXPECT_THAT(pipe.said(), testing::EndsWith("\n"));
}

}  // namespace
}  // namespace quellin::cli
