#include <cstddef>
#include <string>
#include <vector>

#include <gmock/gmock.h>

#include "QuellinCore/Sessions/Storage/BlobShape.h"

namespace quellin {
namespace {

const std::string original =
    R"({"at":"2025-03-04T09:41:00Z","key":"TC0P","list":[1,-2.5,45.12345886230469],"quote":"a\"7","watts":0.30000000000000004})";

std::string describe(const BlobShape& shape, const std::string& text) {
  std::string bytes;
  EXPECT_TRUE(shape.describe(text, bytes)) << text;
  return bytes;
}

TEST(BlobShapeTest, TheTextItselfIsAllZeros) {
  const BlobShape shape(original);
  EXPECT_EQ(describe(shape, original), std::string(6, '\0'));  // no other forms, one date, four numbers
  EXPECT_EQ(shape.spell(std::string(6, '\0')), original);
}

TEST(BlobShapeTest, OtherNumbersComeBackAsTheyWere) {
  const BlobShape shape(original);
  const std::vector<std::string> texts{
      R"({"at":"2025-03-04T23:59:59Z","key":"TC0P","list":[2,-2.4,45.12346267700195],"quote":"a\"7","watts":0.31})",
      R"({"at":"1969-12-31T23:59:59Z","key":"TC0P","list":[1e-05,-0,45],"quote":"a\"7","watts":12345678901234567890123})",
      R"({"at":"9999-03-04T23:59:59Z","key":"TC0P","list":[-9223372036854775808,0.00,7.1],"quote":"a\"7","watts":-0.1})",
  };
  for (const auto& text : texts) EXPECT_EQ(shape.spell(describe(shape, text)), text);
}

TEST(BlobShapeTest, CloseNumbersTakeFewBytes) {
  const BlobShape shape(R"([45.12345886230469])");
  EXPECT_EQ(describe(shape, "[45.12346267700195]").size(), 2U);
}

TEST(BlobShapeTest, AnotherTextHasAnotherShapeAndLeavesTheBytesAlone) {
  const BlobShape shape(original);
  const std::vector<std::string> others{
      "",
      "{}",
      original + " ",
      original.substr(0, original.size() - 1),
      R"({"at":"2025-03-04 09:41:00Z","key":"TC0P","list":[1,-2.5,45.12345886230469],"quote":"a\"7","watts":0.3})",
      R"({"at":"2025-03-04T09:41:00Z","key":"TC1P","list":[1,-2.5,45.12345886230469],"quote":"a\"7","watts":0.3})",
      R"({"at":"2025-03-04T09:41:00Z","key":"TC0P","list":[1,-2.5,null],"quote":"a\"7","watts":0.3})",
      R"({"at":"2025-03-04T09:41:00Z","key":"TC0P","list":[1,-2.5,45.12345886230469],"quote":"a\"8","watts":0.3})",
  };
  for (const auto& text : others) {
    std::string bytes = "before";
    EXPECT_FALSE(shape.describe(text, bytes)) << text;
    EXPECT_EQ(bytes, "before");
  }
}

TEST(BlobShapeTest, EveryTextIsOfItsOwnShape) {
  for (const std::string text :
       {"", "7", "\"", "\"\\", "\"unfinished 5", "a-b", "--", "[]", "2025-03-04T09:41:00Z"}) {
    const BlobShape shape(text);
    EXPECT_EQ(shape.spell(describe(shape, text)), text);
  }
}

TEST(BlobShapeTest, BytesThatMakeNoSenseGiveNoText) {
  const BlobShape shape(original);
  const std::string text =
      R"({"at":"2025-03-04T09:41:09Z","key":"TC0P","list":[-0,-2.5,45.5],"quote":"a\"7","watts":0.3})";
  const std::string bytes = describe(shape, text);
  for (std::size_t length = 0; length < bytes.size(); ++length) {
    EXPECT_EQ(shape.spell(bytes.substr(0, length)), std::nullopt) << length;
  }
  EXPECT_EQ(shape.spell(bytes + '\0'), std::nullopt);
  EXPECT_EQ(shape.spell(std::string("\x01\x09\x00\x00", 4) + std::string(6, '\0')),
            std::nullopt);  // a tenth number
  EXPECT_EQ(shape.spell(std::string("\x01\x01\x07\x00", 4) + std::string(6, '\0')),
            std::nullopt);  // an unknown form
  EXPECT_EQ(shape.spell(std::string("\x01\x01\x00\x17", 4) + std::string(6, '\0')),
            std::nullopt);  // 23 decimals
}

}  // namespace
}  // namespace quellin
