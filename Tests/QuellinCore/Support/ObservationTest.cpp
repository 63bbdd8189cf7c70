#include <memory>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>

#include "QuellinCore/Support/Observation.h"

namespace quellin {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(ObservationTest, ObserversAreToldInTheOrderOfSubscription) {
  Signal<int> signal;
  std::vector<std::string> heard;
  const auto first = signal.subscribe([&](int value) { heard.push_back("a" + std::to_string(value)); });
  const auto second = signal.subscribe([&](int value) { heard.push_back("b" + std::to_string(value)); });
  signal.notify(1);
  signal.notify(2);
  EXPECT_THAT(heard, ElementsAre("a1", "b1", "a2", "b2"));
}

TEST(ObservationTest, EndingASubscriptionEndsTheCalls) {
  Signal<> signal;
  int calls = 0;
  {
    const auto subscription = signal.subscribe([&] { ++calls; });
    signal.notify();
  }
  signal.notify();
  EXPECT_EQ(calls, 1);
}

TEST(ObservationTest, AMovedSubscriptionGoesOnAndAReplacedOneEnds) {
  Signal<> signal;
  std::vector<int> heard;
  auto kept = signal.subscribe([&] { heard.push_back(1); });
  auto moved = std::move(kept);
  signal.notify();
  moved = signal.subscribe([&] { heard.push_back(2); });
  signal.notify();
  EXPECT_THAT(heard, ElementsAre(1, 2));
}

TEST(ObservationTest, AnObserverMayEndItsOwnSubscription) {
  Signal<> signal;
  int calls = 0;
  Subscription own;
  // The captured string is read after the reset: it must still be there.
  own = signal.subscribe([&, text = std::string(100, 'x')] {
    own.reset();
    calls += text.size() == 100 ? 1 : 100;
  });
  signal.notify();
  signal.notify();
  EXPECT_EQ(calls, 1);
}

TEST(ObservationTest, AnObserverThatIsUnsubscribedByAnEarlierOneIsNotCalled) {
  Signal<> signal;
  int calls = 0;
  Subscription later;
  const auto earlier = signal.subscribe([&] { later.reset(); });
  later = signal.subscribe([&] { ++calls; });
  signal.notify();
  EXPECT_EQ(calls, 0);
}

TEST(ObservationTest, AnObserverAddedDuringANotificationHearsTheNextOne) {
  Signal<> signal;
  int calls = 0;
  std::vector<Subscription> added;
  const auto adding = signal.subscribe([&] { added.push_back(signal.subscribe([&] { ++calls; })); });
  signal.notify();
  EXPECT_EQ(calls, 0);
  signal.notify();
  EXPECT_EQ(calls, 1);
}

TEST(ObservationTest, AnObserverMayDestroyTheOwner) {
  struct Owner {
    Signal<const Owner&> changed;
  };
  auto owner = std::make_unique<Owner>();
  int laterCalls = 0;
  const auto destroying = owner->changed.subscribe([&](const Owner&) { owner.reset(); });
  const auto later = owner->changed.subscribe([&](const Owner&) { ++laterCalls; });
  owner->changed.notify(*owner);
  EXPECT_EQ(owner, nullptr);
  EXPECT_EQ(laterCalls, 0);
}

TEST(ObservationTest, AnObserverMayNotifyAgain) {
  Signal<int> signal;
  std::vector<int> heard;
  const auto subscription = signal.subscribe([&](int value) {
    heard.push_back(value);
    if (value < 3) signal.notify(value + 1);
  });
  signal.notify(1);
  EXPECT_THAT(heard, ElementsAre(1, 2, 3));
}

TEST(ObservationTest, AnObserverUnsubscribedInANestedNotificationStaysOut) {
  Signal<int> signal;
  std::vector<int> heard;
  Subscription second;
  const auto first = signal.subscribe([&](int value) {
    if (value == 1) signal.notify(2);
    if (value == 2) second.reset();
  });
  second = signal.subscribe([&](int value) { heard.push_back(value); });
  signal.notify(1);
  EXPECT_THAT(heard, IsEmpty());
}

TEST(ObservationTest, AnObserverMayOwnASubscriptionToTheSameSignal) {
  Signal<> signal;
  int calls = 0;
  auto inner = std::make_shared<Subscription>(signal.subscribe([&] { ++calls; }));
  auto outer = signal.subscribe([inner] {});
  inner.reset();
  outer.reset();  // destroys the inner subscription while the list is being swept
  signal.notify();
  EXPECT_EQ(calls, 0);
}

TEST(ObservationTest, AnExceptionReachesTheCallerAndTheSignalStaysUsable) {
  Signal<bool> signal;
  int calls = 0;
  const auto throwing = signal.subscribe([&](bool fails) {
    if (fails) throw std::runtime_error("no");
  });
  const auto counting = signal.subscribe([&](bool) { ++calls; });
  EXPECT_THROW(signal.notify(true), std::runtime_error);
  signal.notify(false);
  EXPECT_EQ(calls, 1);
}

TEST(ObservationTest, ASubscriptionMayOutliveItsSignal) {
  Subscription subscription;
  {
    Signal<> signal;
    subscription = signal.subscribe([] {});
  }
  EXPECT_NO_FATAL_FAILURE(subscription.reset());
}

}  // namespace
}  // namespace quellin
