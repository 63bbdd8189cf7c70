#include <limits>
#include <tuple>

#include <gmock/gmock.h>

#include "quellin/Presentation/JSONOutput.h"

namespace quellin::cli {
namespace {

using testing::HasSubstr;

struct Reading {
  double watts = 0;

  static constexpr auto fields() { return std::tuple{Field{"watts", &Reading::watts}}; }
};

TEST(JSONOutputTest, ADocumentHasAsManyLinesAsItsLayout) {
  EXPECT_EQ(jsonText(Reading{.watts = 7.5}), "{\n  \"watts\" : 7.5\n}");
  EXPECT_EQ(jsonText(Reading{.watts = 7.5}, JSONLayout::compact), R"({"watts":7.5})");
}

TEST(JSONOutputTest, WhatHasNoJSONFormIsAFailureThatNamesIt) {
  try {
    static_cast<void>(
        jsonText(Reading{.watts = std::numeric_limits<double>::infinity()}, JSONLayout::compact));
    FAIL() << "nothing was thrown";
  } catch (const Failure& failure) {
    EXPECT_EQ(failure.status(), ExitStatus::failed);
    EXPECT_THAT(failure.what(), HasSubstr("no JSON can be written: watts "));
  }
}

}  // namespace
}  // namespace quellin::cli
