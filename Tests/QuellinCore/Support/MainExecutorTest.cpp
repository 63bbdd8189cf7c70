#include <thread>
#include <vector>

#include <gmock/gmock.h>

#include "QuellinCore/Support/MainExecutor.h"
#include "Support/Deaths.h"

namespace quellin {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing_support::expectRefusedElsewhere;

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
  const ThreadExecutor executor;
  requireCurrent(executor);
  expectRefusedElsewhere([&] { requireCurrent(executor); });
}

}  // namespace
}  // namespace quellin
