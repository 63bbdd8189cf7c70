#pragma once

#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "FakeDarwin/FakeDarwin.h"

namespace quellin::fake {

/// Base of every test that runs the Darwin sources: a system of its own, which fails the test when something
/// was not given back or was misused.
class DarwinTest : public testing::Test {
 protected:
  void TearDown() override {
    EXPECT_THAT(system.leaks(), testing::IsEmpty());
    EXPECT_THAT(system.ledger.takeViolations(), testing::IsEmpty());
  }

  /// Runs `action` once as it is, then once for every call that it makes, with that call failing. Whatever
  /// fails, nothing may be leaked or misused; the sweep itself notes nothing else.
  template <class Action>
  void failEachCallIn(Action action) {
    const auto before = system.calls.counts();
    action();
    const auto after = system.calls.counts();
    int swept = 0;
    for (const auto& [function, count] : after) {
      const auto earlier = before.find(function);
      const int calls = count - (earlier == before.end() ? 0 : earlier->second);
      for (int nth = 1; nth <= calls; ++nth, ++swept) {
        SCOPED_TRACE(function + " failing, call " + std::to_string(nth));
        system.calls.failNth(function, nth);
        action();
        EXPECT_THAT(system.leaks(), testing::IsEmpty());
        EXPECT_THAT(system.ledger.takeViolations(), testing::IsEmpty());
        system.calls.mend(function);
      }
    }
    EXPECT_GT(swept, 0);
  }

  FakeDarwin system;
};

}  // namespace quellin::fake
