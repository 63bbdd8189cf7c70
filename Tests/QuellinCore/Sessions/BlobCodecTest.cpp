#include <cstddef>
#include <random>
#include <string>

#include <gmock/gmock.h>

#include "QuellinCore/Sessions/BlobCodec.h"

namespace quellin {
namespace {

using enum BlobRole;

std::string activity(int seed) {
  std::mt19937 random(static_cast<unsigned>(seed));
  std::string text = "[";
  for (int row = 0; row < 5; ++row) {
    text += R"({"confidence":"estimated","cpuPercent":)" + std::to_string(random() % 10000) +
            R"(,"name":"process )" + std::to_string(random() % 40) + R"("},)";
  }
  text.back() = ']';
  return text;
}

std::string withFlippedBit(std::string stored, std::size_t bit) {
  stored[bit / 8] = static_cast<char>(stored[bit / 8] ^ (1 << (bit % 8)));
  return stored;
}

TEST(BlobCodecTest, AnythingComesBackByteForByte) {
  BlobCodec codec;
  codec.addReference(0, processActivity, activity(0));
  std::string everyByte;
  for (int byte = 0; byte < 256; ++byte) everyByte.push_back(static_cast<char>(byte));
  for (const std::string& blob :
       {std::string(), std::string("x"), everyByte, std::string(100000, 'a'), activity(1)}) {
    for (const BlobRole role : {snapshot, processActivity, proTelemetry}) {
      EXPECT_EQ(codec.decode(codec.encode(role, blob)), blob);
    }
  }
}

TEST(BlobCodecTest, AReferenceMakesItsLikeSmaller) {
  BlobCodec codec;
  const std::size_t alone = codec.encode(processActivity, activity(1)).size();
  codec.addReference(0, processActivity, activity(0));
  const std::size_t withReference = codec.encode(processActivity, activity(1)).size();
  EXPECT_LT(withReference, alone * 3 / 4);
}

TEST(BlobCodecTest, WhatCannotBeMadeSmallerStandsAsItIs) {
  BlobCodec codec;
  std::mt19937 random(1);
  std::string noise;
  for (int index = 0; index < 1000; ++index) noise.push_back(static_cast<char>(random()));
  const std::string stored = codec.encode(snapshot, noise);
  EXPECT_EQ(stored.size(), noise.size() + 5);
  EXPECT_EQ(codec.decode(stored), noise);
}

TEST(BlobCodecTest, OnlyTextsOfTheShapeAndRoleAreNumbers) {
  BlobCodec codec;
  EXPECT_EQ(codec.encodeAsNumbers(snapshot, "[1,2]"), std::nullopt);
  codec.addReference(0, snapshot, "[1,2]");
  codec.addReference(1, snapshot, "[1,2,3]");
  for (const std::string blob : {"[1,2]", "[30,40]", "[5,6,7]"}) {
    const auto stored = codec.encodeAsNumbers(snapshot, blob);
    ASSERT_TRUE(stored.has_value());
    EXPECT_EQ(codec.decode(*stored), blob);
  }
  EXPECT_EQ(codec.encodeAsNumbers(processActivity, "[1,2]"), std::nullopt);
  EXPECT_EQ(codec.encodeAsNumbers(snapshot, "[1]"), std::nullopt);
}

TEST(BlobCodecTest, ThereIsRoomForSeveralShapesOfSnapshotsAndOneReferenceOfTheOthers) {
  BlobCodec codec;
  std::uint32_t count = 0;
  for (; codec.hasRoomFor(snapshot, "[1]"); ++count)
    codec.addReference(codec.nextReference(), snapshot, "[1]");
  EXPECT_EQ(count, 16U);
  EXPECT_EQ(codec.nextReference(), 16U);
  EXPECT_TRUE(codec.hasRoomFor(proTelemetry, "{}"));
  codec.addReference(codec.nextReference(), proTelemetry, "{}");
  EXPECT_FALSE(codec.hasRoomFor(proTelemetry, "{}"));
  EXPECT_FALSE(codec.hasRoomFor(processActivity, std::string(100000, ' ')));
}

TEST(BlobCodecTest, ABlobWhoseReferenceIsMissingIsNotRead) {
  BlobCodec writer;
  writer.addReference(3, snapshot, "[1,2]");
  writer.addReference(4, processActivity, activity(0));
  const auto numbers = writer.encodeAsNumbers(snapshot, "[3,4]");
  const auto compressed = writer.encode(processActivity, activity(1));
  BlobCodec reader;
  reader.skipReference(3);
  EXPECT_EQ(reader.nextReference(), 4U);
  ASSERT_TRUE(numbers.has_value());
  EXPECT_EQ(reader.decode(*numbers), std::nullopt);
  EXPECT_EQ(reader.decode(compressed), std::nullopt);
}

TEST(BlobCodecTest, EveryFlippedBitAndEveryCutShows) {
  BlobCodec codec;
  codec.addReference(0, snapshot, R"({"a":1,"b":45.12345886230469})");
  codec.addReference(1, processActivity, activity(0));
  const auto numbers = codec.encodeAsNumbers(snapshot, R"({"a":2,"b":45.12346267700195})");
  ASSERT_TRUE(numbers.has_value());
  for (const std::string& stored :
       {*numbers, codec.encode(processActivity, activity(1)), codec.encode(snapshot, "plain")}) {
    for (std::size_t bit = 0; bit < stored.size() * 8; ++bit) {
      EXPECT_EQ(codec.decode(withFlippedBit(stored, bit)), std::nullopt) << bit;
    }
    for (std::size_t length = 0; length < stored.size(); ++length) {
      EXPECT_EQ(codec.decode(stored.substr(0, length)), std::nullopt) << length;
    }
    EXPECT_EQ(codec.decode(stored + "x"), std::nullopt);
  }
}

}  // namespace
}  // namespace quellin
