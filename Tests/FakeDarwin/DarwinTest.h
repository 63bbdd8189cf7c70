#pragma once

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

  FakeDarwin system;
};

}  // namespace quellin::fake
