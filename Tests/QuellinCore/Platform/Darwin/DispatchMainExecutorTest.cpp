#include <memory>
#include <vector>

#include "FakeDarwin/DarwinTest.h"
#include "QuellinCore/Platform/Darwin/DispatchMainExecutor.h"

namespace quellin::darwin {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class DispatchMainExecutorTest : public fake::DarwinTest {
 protected:
  DispatchMainExecutor executor;
};

TEST_F(DispatchMainExecutorTest, IsCurrentOnTheMainThreadOnly) {
  EXPECT_TRUE(executor.isCurrent());
  system.dispatch.isMainThread = false;
  EXPECT_FALSE(executor.isCurrent());
}

TEST_F(DispatchMainExecutorTest, RunsPostedTasksLaterInOrderOnTheMainThread) {
  system.dispatch.isMainThread = false;
  std::vector<int> ran;
  executor.post([&] {
    EXPECT_TRUE(executor.isCurrent());
    ran.push_back(1);
    executor.post([&] { ran.push_back(3); });
  });
  executor.post([&] { ran.push_back(2); });
  EXPECT_THAT(ran, IsEmpty());
  system.dispatch.runQueued();
  EXPECT_THAT(ran, ElementsAre(1, 2));
  system.dispatch.runQueued();
  EXPECT_THAT(ran, ElementsAre(1, 2, 3));
}

TEST_F(DispatchMainExecutorTest, DestroysATaskOnceItHasRun) {
  auto held = std::make_shared<int>(1);
  executor.post([held] { EXPECT_EQ(*held, 1); });
  EXPECT_EQ(held.use_count(), 2);
  system.dispatch.runQueued();
  EXPECT_EQ(held.use_count(), 1);
}

}  // namespace
}  // namespace quellin::darwin
