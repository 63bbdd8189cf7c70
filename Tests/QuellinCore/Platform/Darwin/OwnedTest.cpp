#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "QuellinCore/Platform/Darwin/Owned.h"

namespace quellin::darwin {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

struct CountedKind {
  using Handle = int;
  static inline std::vector<int> retained;
  static inline std::vector<int> released;
  static void retain(int handle) { retained.push_back(handle); }
  static void release(int handle) { released.push_back(handle); }
};

using OwnedHandle = Owned<CountedKind>;

class OwnedTest : public testing::Test {
 protected:
  void SetUp() override {
    CountedKind::retained.clear();
    CountedKind::released.clear();
  }
};

TEST_F(OwnedTest, AdoptsWithoutRetainingAndReleasesOnce) {
  {
    const auto owner = OwnedHandle::adopt(7);
    EXPECT_TRUE(owner);
    EXPECT_EQ(owner.get(), 7);
    EXPECT_THAT(CountedKind::released, IsEmpty());
  }
  EXPECT_THAT(CountedKind::retained, IsEmpty());
  EXPECT_THAT(CountedKind::released, ElementsAre(7));
}

TEST_F(OwnedTest, RetainsABorrowedHandleAndReleasesItOnce) {
  {
    const auto owner = OwnedHandle::retain(7);
  }
  EXPECT_THAT(CountedKind::retained, ElementsAre(7));
  EXPECT_THAT(CountedKind::released, ElementsAre(7));
}

TEST_F(OwnedTest, TouchesNothingForNoHandle) {
  {
    const OwnedHandle empty;
    const auto adopted = OwnedHandle::adopt(0);
    const auto retained = OwnedHandle::retain(0);
    EXPECT_FALSE(empty);
    EXPECT_FALSE(adopted);
    EXPECT_FALSE(retained);
  }
  EXPECT_THAT(CountedKind::retained, IsEmpty());
  EXPECT_THAT(CountedKind::released, IsEmpty());
}

TEST_F(OwnedTest, MovesTheReferenceAlong) {
  {
    auto first = OwnedHandle::adopt(7);
    const OwnedHandle second = std::move(first);
    EXPECT_FALSE(first);  // NOLINT(bugprone-use-after-move): empty is what it promises
    EXPECT_EQ(second.get(), 7);
  }
  EXPECT_THAT(CountedKind::released, ElementsAre(7));
}

TEST_F(OwnedTest, ReleasesWhatItHeldWhenAnotherIsMovedIn) {
  auto target = OwnedHandle::adopt(7);
  target = OwnedHandle::adopt(8);
  EXPECT_THAT(CountedKind::released, ElementsAre(7));
  EXPECT_EQ(target.get(), 8);
}

TEST_F(OwnedTest, SurvivesBeingMovedIntoItself) {
  auto owner = OwnedHandle::adopt(7);
  auto& same = owner;
  owner = std::move(same);
  EXPECT_EQ(owner.get(), 7);
  EXPECT_THAT(CountedKind::released, IsEmpty());
}

TEST_F(OwnedTest, GivesTheReferenceAway) {
  {
    auto owner = OwnedHandle::adopt(7);
    EXPECT_EQ(owner.release(), 7);
    EXPECT_FALSE(owner);
  }
  EXPECT_THAT(CountedKind::released, IsEmpty());
}

TEST_F(OwnedTest, OwnsWhatIsStoredThroughItsOutParameter) {
  {
    OwnedHandle owner;
    *owner.outParameter() = 7;
    EXPECT_EQ(owner.get(), 7);
  }
  EXPECT_THAT(CountedKind::released, ElementsAre(7));
}

TEST_F(OwnedTest, LetsNoOutParameterOverwriteAReference) {
  EXPECT_EXIT(
      {
        auto owner = OwnedHandle::adopt(7);
        *owner.outParameter() = 8;
      },
      testing::KilledBySignal(SIGABRT), "");
}

}  // namespace
}  // namespace quellin::darwin
