#include <thread>
#include <vector>

#include <gmock/gmock.h>

#include "QuellinCore/Support/MainExecutor.h"

namespace quellin {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(MainExecutorTest, AThreadExecutorIsCurrentOnItsOwnThreadOnly) {
  const ThreadExecutor executor;
  EXPECT_TRUE(executor.isCurrent());
  bool isCurrentElsewhere = true;
  std::thread([&] { isCurrentElsewhere = executor.isCurrent(); }).join();
  EXPECT_FALSE(isCurrentElsewhere);
}

TEST(MainExecutorTest, PostedTasksRunLaterInTheirOrder) {
  ThreadExecutor executor;
  std::vector<int> ran;
  std::thread([&] {
    executor.post([&] { ran.push_back(1); });
    executor.post([&] {
      ran.push_back(2);
      executor.post([&] { ran.push_back(3); });
    });
  }).join();
  EXPECT_THAT(ran, IsEmpty());
  executor.runPosted();
  EXPECT_THAT(ran, ElementsAre(1, 2));
  executor.runPosted();
  EXPECT_THAT(ran, ElementsAre(1, 2, 3));
}

TEST(MainExecutorTest, BeingElsewhereEndsTheProcess) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  const ThreadExecutor executor;
  requireCurrent(executor);
  EXPECT_EXIT(std::thread([&] { requireCurrent(executor); }).join(), testing::KilledBySignal(SIGABRT), "");
}

}  // namespace
}  // namespace quellin
