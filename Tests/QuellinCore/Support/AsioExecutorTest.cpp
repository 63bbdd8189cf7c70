#include <thread>
#include <vector>

#include <boost/asio/io_context.hpp>
#include <gmock/gmock.h>

#include "QuellinCore/Support/AsioExecutor.h"

namespace quellin {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// What `executor` says of itself on another thread.
bool isCurrentElsewhere(const AsioExecutor& executor) {
  bool isCurrent = false;
  std::thread([&] { isCurrent = executor.isCurrent(); }).join();
  return isCurrent;
}

class AsioExecutorTest : public testing::Test {
 protected:
  boost::asio::io_context loop;
  AsioExecutor executor{loop};
};

TEST_F(AsioExecutorTest, IsCurrentWhereItWasMadeAndNotElsewhere) {
  EXPECT_TRUE(executor.isCurrent());
  EXPECT_FALSE(isCurrentElsewhere(executor));
}

TEST_F(AsioExecutorTest, IsCurrentInTheHandlersOfALoopOnAnotherThread) {
  bool isCurrentInside = false;
  bool isCurrentBesides = true;
  executor.post([&] {
    isCurrentInside = executor.isCurrent();
    isCurrentBesides = isCurrentElsewhere(executor);
  });
  std::thread([&] { loop.run(); }).join();
  EXPECT_TRUE(isCurrentInside);
  EXPECT_FALSE(isCurrentBesides);
}

TEST_F(AsioExecutorTest, PostedTasksRunLaterInTheirOrderAlsoFromInsideATask) {
  std::vector<int> ran;
  executor.post([&] {
    executor.post([&] { ran.push_back(3); });
    ran.push_back(1);
  });
  executor.post([&] { ran.push_back(2); });
  EXPECT_THAT(ran, IsEmpty());
  loop.run();
  EXPECT_THAT(ran, ElementsAre(1, 2, 3));
}

}  // namespace
}  // namespace quellin
