#include <array>
#include <cstddef>
#include <cstdint>
#include <random>
#include <string>

#include <gmock/gmock.h>

#include "QuellinCore/Sessions/Storage/BlobNumber.h"
#include "QuellinCore/Support/JSON/ShortestDecimal.h"
#include "Support/CaseNames.h"

namespace quellin {
namespace {

using testing_support::namedBy;

using Form = BlobNumber::Form;

std::string spelled(const BlobNumber& number) {
  std::string text;
  appendSpelling(text, number);
  return text;
}

struct Case {
  const char* token;
  Form wish;
  Form form;
};

std::string tokenAndWish(const Case& given) {
  constexpr std::array wishes{"decimal", "single", "real"};
  return std::string{given.token} + " as " + wishes.at(static_cast<std::size_t>(given.wish));
}

class BlobNumberTest : public testing::TestWithParam<Case> {};

TEST_P(BlobNumberTest, TakesTheFormAndSpellsTheSameCharacters) {
  const BlobNumber number = blobNumber(GetParam().token, GetParam().wish);
  EXPECT_EQ(number.form, GetParam().form);
  EXPECT_EQ(spelled(number), GetParam().token);
}

INSTANTIATE_TEST_SUITE_P(
    Tokens, BlobNumberTest,
    testing::Values(
        Case{"0", Form::decimal, Form::decimal}, Case{"-7", Form::decimal, Form::decimal},
        Case{"12.340", Form::decimal, Form::decimal}, Case{"0.05", Form::decimal, Form::decimal},
        Case{"-0.05", Form::decimal, Form::decimal}, Case{"999999999", Form::decimal, Form::decimal},
        Case{"999999999999999999", Form::decimal, Form::decimal},
        Case{"0.0000000000000000000001", Form::decimal, Form::decimal},
        Case{"45.5", Form::single, Form::single}, Case{"45.5", Form::real, Form::decimal},
        Case{"45.12345886230469", Form::single, Form::single},
        Case{"45.12345886230469", Form::decimal, Form::single},
        Case{"-45.12345886230469", Form::decimal, Form::single},
        Case{"45.1234588623047", Form::single, Form::real},
        Case{"0.30000000000000004", Form::decimal, Form::real},
        Case{"-12.345678901234567", Form::single, Form::real},
        Case{"0.012345678901234567", Form::real, Form::real}, Case{"45.00", Form::single, Form::decimal},
        // These would be spelled another way by every other form.
        Case{"-0", Form::single, Form::text}, Case{"1e-05", Form::real, Form::text},
        Case{"1000000000000000000", Form::decimal, Form::text}, Case{"00", Form::decimal, Form::text},
        Case{"01.5", Form::decimal, Form::text}, Case{"1.", Form::decimal, Form::text},
        Case{".5", Form::decimal, Form::text}, Case{"-", Form::decimal, Form::text},
        Case{"1-2", Form::decimal, Form::text}, Case{"1.2.3", Form::decimal, Form::text},
        Case{"0.12345678901234567890123", Form::decimal, Form::text},
        Case{"0.3000000000000000044", Form::real, Form::text}),
    namedBy(tokenAndWish));

TEST(BlobNumberRandomTest, ShortestSpellingsOfRandomFloatsAndDoublesComeBack) {
  std::mt19937_64 random(7);
  std::normal_distribution<double> around(0, 60);
  int reals = 0;
  for (int round = 0; round < 20000; ++round) {
    const double value = around(random);
    const std::string asDouble(ShortestDecimal(value).text());
    const BlobNumber real = blobNumber(asDouble, Form::real);
    EXPECT_EQ(spelled(real), asDouble);
    reals += real.form == Form::real ? 1 : 0;
    const std::string asFloat(ShortestDecimal(static_cast<double>(static_cast<float>(value))).text());
    const BlobNumber single = blobNumber(asFloat, Form::single);
    EXPECT_EQ(single.form, Form::single) << asFloat;
    EXPECT_EQ(spelled(single), asFloat);
  }
  EXPECT_GT(reals, 19000);
}

TEST(BlobNumberRandomTest, NeighbouringFloatsHaveNeighbouringPayloadsAcrossZero) {
  const auto payload = [](const char* token) { return blobNumber(token, Form::single).payload; };
  EXPECT_LT(payload("-2"), payload("-1"));
  EXPECT_LT(payload("-1"), payload("0"));
  EXPECT_LT(payload("0"), payload("1"));
  EXPECT_EQ(payload("1.0000001192092896") - payload("1"), 1);
}

TEST(BlobNumberDateTest, DatesAreSecondsAndComeBack) {
  const auto date = blobDate("2025-03-04T09:41:00Z");
  ASSERT_TRUE(date.has_value());
  EXPECT_EQ(date->form, Form::date);
  EXPECT_EQ(date->payload, 1741081260);
  EXPECT_EQ(spelled(*date), "2025-03-04T09:41:00Z");
}

TEST(BlobNumberDateTest, WhatWouldBeSpelledAnotherWayIsNoDate) {
  EXPECT_EQ(blobDate("2025-03-04T09:41:00z"), std::nullopt);
  EXPECT_EQ(blobDate("2025-03-04T09:41:60Z"), std::nullopt);
  EXPECT_EQ(blobDate("twenty characters.. "), std::nullopt);
}

}  // namespace
}  // namespace quellin
