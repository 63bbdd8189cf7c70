#include <cstddef>
#include <cstdint>
#include <cstring>
#include <random>
#include <string>

#include <gmock/gmock.h>

#include "QuellinCore/Sessions/Storage/BlobCodec.h"
#include "QuellinCore/Sessions/Storage/ByteStream.h"
#include "QuellinCore/Support/Checksum.h"
#include "Support/Bytes.h"

namespace quellin {
namespace {

using testing_support::withFlippedBit;

using enum BlobRole;

BlobIdentity of(BlobRole role) { return {.key = 7, .role = role, .siblings = 1}; }

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

/// `stored` with its leading reference number, of one byte, replaced and the checksum made anew.
std::string withReference(const BlobIdentity& identity, const std::string& stored, std::uint64_t number) {
  std::string payload;
  appendVarint(payload, number);
  payload += stored.substr(6);
  std::string head(sizeof identity.key, '\0');
  std::memcpy(head.data(), &identity.key, sizeof identity.key);
  head += {static_cast<char>(identity.role), static_cast<char>(identity.siblings), stored.front()};
  const std::uint32_t checksum = crc32c(payload, crc32c(head));
  std::string bytes(sizeof checksum, '\0');
  std::memcpy(bytes.data(), &checksum, sizeof checksum);
  return stored.front() + bytes + payload;
}

TEST(BlobCodecTest, AnythingComesBackByteForByte) {
  BlobCodec codec;
  codec.addReference(0, processActivity, activity(0));
  std::string everyByte;
  for (int byte = 0; byte < 256; ++byte) everyByte.push_back(static_cast<char>(byte));
  for (const std::string& blob :
       {std::string(), std::string("x"), everyByte, std::string(100000, 'a'), activity(1)}) {
    for (const BlobRole role : {snapshot, processActivity, proTelemetry}) {
      EXPECT_EQ(codec.decode(of(role), codec.encode(of(role), blob)), blob);
    }
  }
}

TEST(BlobCodecTest, AReferenceMakesItsLikeSmaller) {
  BlobCodec codec;
  const std::size_t alone = codec.encode(of(processActivity), activity(1)).size();
  codec.addReference(0, processActivity, activity(0));
  const std::size_t withReference = codec.encode(of(processActivity), activity(1)).size();
  EXPECT_LT(withReference, alone * 3 / 4);
}

TEST(BlobCodecTest, WhatCannotBeMadeSmallerStandsAsItIs) {
  BlobCodec codec;
  std::mt19937 random(1);
  std::string noise;
  for (int index = 0; index < 1000; ++index) noise.push_back(static_cast<char>(random()));
  const std::string stored = codec.encode(of(snapshot), noise);
  EXPECT_EQ(stored.size(), noise.size() + 5);
  EXPECT_EQ(codec.decode(of(snapshot), stored), noise);
}

TEST(BlobCodecTest, OnlyTextsOfTheShapeAndRoleAreNumbers) {
  BlobCodec codec;
  EXPECT_EQ(codec.encodeAsNumbers(of(snapshot), "[1,2]"), std::nullopt);
  codec.addReference(0, snapshot, "[1,2]");
  codec.addReference(1, snapshot, "[1,2,3]");
  for (const std::string blob : {"[1,2]", "[30,40]", "[5,6,7]"}) {
    const auto stored = codec.encodeAsNumbers(of(snapshot), blob);
    ASSERT_TRUE(stored.has_value());
    EXPECT_EQ(codec.decode(of(snapshot), *stored), blob);
  }
  EXPECT_EQ(codec.encodeAsNumbers(of(processActivity), "[1,2]"), std::nullopt);
  EXPECT_EQ(codec.encodeAsNumbers(of(snapshot), "[1]"), std::nullopt);
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
  const auto numbers = writer.encodeAsNumbers(of(snapshot), "[3,4]");
  const auto compressed = writer.encode(of(processActivity), activity(1));
  BlobCodec reader;
  reader.skipReference(3);
  EXPECT_EQ(reader.nextReference(), 4U);
  ASSERT_TRUE(numbers.has_value());
  EXPECT_EQ(reader.decode(of(snapshot), *numbers), std::nullopt);
  EXPECT_EQ(reader.decode(of(processActivity), compressed), std::nullopt);
}

TEST(BlobCodecTest, ANumberBeyondThatOfAnyReferenceIsNotCutDownToOne) {
  BlobCodec codec;
  codec.addReference(0, snapshot, "[1,2]");
  codec.addReference(1, processActivity, activity(0));
  const auto numbers = codec.encodeAsNumbers(of(snapshot), "[3,4]");
  ASSERT_TRUE(numbers.has_value());
  EXPECT_EQ(codec.decode(of(snapshot), withReference(of(snapshot), *numbers, 0)), "[3,4]");
  const std::string compressed = codec.encode(of(processActivity), activity(1));
  EXPECT_EQ(codec.decode(of(processActivity), withReference(of(processActivity), compressed, 2)),
            activity(1));
  constexpr std::uint64_t beyond = std::uint64_t{1} << 32U;
  EXPECT_EQ(codec.decode(of(snapshot), withReference(of(snapshot), *numbers, beyond)), std::nullopt);
  EXPECT_EQ(codec.decode(of(processActivity), withReference(of(processActivity), compressed, beyond + 2)),
            std::nullopt);
}

TEST(BlobCodecTest, EveryFlippedBitAndEveryCutShows) {
  BlobCodec codec;
  codec.addReference(0, snapshot, R"({"a":1,"b":45.12345886230469})");
  codec.addReference(1, processActivity, activity(0));
  const auto numbers = codec.encodeAsNumbers(of(snapshot), R"({"a":2,"b":45.12346267700195})");
  ASSERT_TRUE(numbers.has_value());
  for (const std::string& stored :
       {*numbers, codec.encode(of(snapshot), activity(1)), codec.encode(of(snapshot), "plain")}) {
    for (std::size_t bit = 0; bit < stored.size() * 8; ++bit) {
      EXPECT_EQ(codec.decode(of(snapshot), withFlippedBit(stored, bit)), std::nullopt) << bit;
    }
    for (std::size_t length = 0; length < stored.size(); ++length) {
      EXPECT_EQ(codec.decode(of(snapshot), stored.substr(0, length)), std::nullopt) << length;
    }
    EXPECT_EQ(codec.decode(of(snapshot), stored + "x"), std::nullopt);
  }
}

TEST(BlobCodecTest, ABlobInTheWrongPlaceIsADamagedOne) {
  BlobCodec codec;
  const std::string stored = codec.encode({.key = 7, .role = snapshot, .siblings = 1}, "blob");
  EXPECT_EQ(codec.decode({.key = 7, .role = snapshot, .siblings = 1}, stored), "blob");
  EXPECT_EQ(codec.decode({.key = 8, .role = snapshot, .siblings = 1}, stored), std::nullopt);
  EXPECT_EQ(codec.decode({.key = 7, .role = proTelemetry, .siblings = 1}, stored), std::nullopt);
  EXPECT_EQ(codec.decode({.key = 7, .role = snapshot, .siblings = 0}, stored), std::nullopt);
}

}  // namespace
}  // namespace quellin
