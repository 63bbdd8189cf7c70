#include <cstdint>
#include <limits>
#include <string>

#include <gmock/gmock.h>

#include "QuellinCore/Sessions/Storage/ByteStream.h"

namespace quellin {
namespace {

constexpr std::int64_t smallest = std::numeric_limits<std::int64_t>::min();
constexpr std::int64_t largest = std::numeric_limits<std::int64_t>::max();

TEST(ByteStreamTest, ZigzagKeepsEveryNumberAndMakesSmallMagnitudesSmall) {
  EXPECT_EQ(zigzag(0), 0U);
  EXPECT_EQ(zigzag(-1), 1U);
  EXPECT_EQ(zigzag(1), 2U);
  for (const std::int64_t value : {std::int64_t{0}, std::int64_t{-2}, smallest, largest}) {
    EXPECT_EQ(unzigzag(zigzag(value)), value);
  }
}

TEST(ByteStreamTest, VarintsComeBackAndTakeABytePerSevenBits) {
  struct Case {
    std::uint64_t value;
    std::size_t length;
  };
  for (const auto& [value, length] : {Case{0, 1}, Case{127, 1}, Case{128, 2}, Case{16383, 2}, Case{16384, 3},
                                      Case{~std::uint64_t{0}, 10}}) {
    std::string bytes;
    appendVarint(bytes, value);
    EXPECT_EQ(bytes.size(), length);
    ByteReader reader(bytes);
    EXPECT_EQ(reader.varint(), value);
    EXPECT_EQ(reader.rest(), "");
  }
}

TEST(ByteStreamTest, WhatIsCutShortOrTooLongHasNoValue) {
  EXPECT_EQ(ByteReader("").varint(), std::nullopt);
  EXPECT_EQ(ByteReader("\xFF\xFF").varint(), std::nullopt);
  EXPECT_EQ(ByteReader("\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF\x02").varint(), std::nullopt);
  EXPECT_EQ(ByteReader("\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF\x01").varint(), std::nullopt);
  EXPECT_EQ(ByteReader("").byte(), std::nullopt);
  EXPECT_EQ(ByteReader("ab").bytes(3), std::nullopt);
  EXPECT_EQ(ByteReader("ab").bytes(2), "ab");
}

}  // namespace
}  // namespace quellin
