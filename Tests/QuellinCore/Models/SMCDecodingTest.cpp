#include <array>
#include <limits>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "QuellinCore/Models/SMCDecoding.h"
#include "Support/Bytes.h"
#include "Support/Deaths.h"

namespace quellin::SMCDecoding {
namespace {

using testing::Eq;
using testing::Optional;
using testing_support::endedByTrap;
using testing_support::littleEndian;
using Bytes = std::vector<std::uint8_t>;

std::optional<double> temperature(std::string_view type, const Bytes& bytes) {
  return decodeTemperature(fourCharCode(type), bytes);
}

std::optional<std::int64_t> fanRPM(std::string_view type, const Bytes& bytes) {
  return decodeFanRPM(fourCharCode(type), bytes);
}

TEST(SMCDecodingTest, PacksTheFirstFourBytesWithTheFirstOnTop) {
  EXPECT_EQ(fourCharCode("TC0P"), 0x54433050U);
  EXPECT_EQ(fourCharCode(""), 0U);
  EXPECT_EQ(fourCharCode("T"), 0x54000000U);
  EXPECT_EQ(fourCharCode("TC0"), 0x54433000U);
  EXPECT_EQ(fourCharCode("F10Ac"), 0x46313041U);
  EXPECT_EQ(fourCharCode("\xC3\xA4\xFF"), 0xC3A4FF00U);
}

TEST(SMCDecodingTest, TurnsACodeBackIntoText) {
  EXPECT_EQ(dataTypeString(0x73703738), "sp78");
  EXPECT_EQ(dataTypeString(0x666C7420), "flt ");
  EXPECT_EQ(dataTypeString(0), (std::string{"\0\0\0\0", 4}));
  EXPECT_EQ(dataTypeString(0x8ADBF041),
            "\xC3\xA4\xE2\x82\xAC\xEF\xA3\xBF"
            "A");
}

TEST(SMCDecodingTest, ReadsFloatTemperaturesUnrounded) {
  EXPECT_THAT(temperature("flt ", {0x00, 0x00, 0x36, 0x42}), Optional(45.5));
  EXPECT_THAT(temperature("flt ", littleEndian(149.9F)), Optional(static_cast<double>(149.9F)));
  EXPECT_THAT(temperature("flt ", littleEndian(-12.25F)), Optional(-12.25));
  EXPECT_THAT(temperature("flt ", {0x00, 0x00, 0x36, 0x42, 0xFF, 0xFF}), Optional(45.5));
  EXPECT_THAT(temperature("flt ", littleEndian(std::numeric_limits<float>::infinity())),
              Optional(std::numeric_limits<double>::infinity()));
}

TEST(SMCDecodingTest, ReadsEveryFixedPointTemperatureWithEightFractionBits) {
  struct Case {
    std::string type;
    Bytes bytes;
    double value;
  };
  const std::vector<Case> cases = {
      {"sp78", {0x2D, 0x80}, 45.5},   {"sp78", {0xFF, 0x00}, -1.0},
      {"sp78", {0x00, 0x00}, 0.0},    {"sp78", {0x7F, 0xFF}, 127.99609375},
      {"sp78", {0x80, 0x00}, -128.0}, {"sp78", {0xFF, 0xFF}, -0.00390625},
      {"sp5a", {0x2D, 0x80}, 45.5},   {"sp1e", {0x2D, 0x80}, 45.5},
      {"sp", {0x2D, 0x80}, 45.5},     {"sp78", {0x2D, 0x80, 0xFF, 0xFF}, 45.5},
      {" sp ", {0x2D, 0x80}, 45.5},
  };
  for (const Case& c : cases) {
    EXPECT_THAT(temperature(c.type, c.bytes), Optional(c.value)) << c.type << testing::PrintToString(c.bytes);
  }
}

TEST(SMCDecodingTest, ReadsNoTemperatureFromOtherTypesOrTooFewBytes) {
  const Bytes enough = {0x2D, 0x80, 0x36, 0x42};
  for (const char* type : {"ui8 ", "ui16", "fpe2", "FLT ", "SP78", "fltx", "xflt", "s", "ssp7", ""}) {
    EXPECT_THAT(temperature(type, enough), Eq(std::nullopt)) << type;
  }
  EXPECT_THAT(temperature("flt ", {}), Eq(std::nullopt));
  EXPECT_THAT(temperature("flt ", {0x00, 0x36, 0x42}), Eq(std::nullopt));
  EXPECT_THAT(temperature("sp78", {}), Eq(std::nullopt));
  EXPECT_THAT(temperature("sp78", {0x2D}), Eq(std::nullopt));
}

TEST(SMCDecodingTest, RoundsFloatFanSpeedsHalvesAwayFromZero) {
  struct Case {
    float value;
    std::int64_t rpm;
  };
  const std::vector<Case> cases = {{0.0F, 0},       {1234.5F, 1235},      {1234.49F, 1234},  {1235.5F, 1236},
                                   {0.5F, 1},       {-0.5F, -1},          {-1234.5F, -1235}, {0.49999997F, 0},
                                   {2000.0F, 2000}, {8388609.0F, 8388609}};
  for (const Case& c : cases) EXPECT_THAT(fanRPM("flt ", littleEndian(c.value)), Optional(c.rpm)) << c.value;
}

TEST(SMCDecodingTest, DropsTheFractionOfFixedPointFanSpeeds) {
  EXPECT_THAT(fanRPM("fpe2", {0x1F, 0x40}), Optional(2000));
  EXPECT_THAT(fanRPM("fpe2", {0x1F, 0x43}), Optional(2000));
  EXPECT_THAT(fanRPM("fpe2", {0xFF, 0xFF}), Optional(16383));
  EXPECT_THAT(fanRPM("fpe2", {0x00, 0x00}), Optional(0));
  EXPECT_THAT(fanRPM("fpe2", {0x1F, 0x40, 0xFF}), Optional(2000));
}

TEST(SMCDecodingTest, ReadsNoFanSpeedFromOtherTypesOrTooFewBytes) {
  const Bytes enough = {0x1F, 0x40, 0x36, 0x42};
  for (const char* type : {"ui8 ", "ui16", "sp78", "fpe", "fpe3", "FPE2", "FLT ", ""}) {
    EXPECT_THAT(fanRPM(type, enough), Eq(std::nullopt)) << type;
  }
  EXPECT_THAT(fanRPM("flt ", {0x00, 0x36, 0x42}), Eq(std::nullopt));
  EXPECT_THAT(fanRPM("fpe2", {0x1F}), Eq(std::nullopt));
  EXPECT_THAT(fanRPM("fpe2", {}), Eq(std::nullopt));
}

TEST(SMCDecodingTest, TrimsOnlyBlanksAndNULsFromTypes) {
  const Bytes bytes = littleEndian(45.5F);
  for (const std::uint32_t type : {0x666C7420U, 0x666C7400U, 0x20666C74U, 0x00666C74U}) {
    EXPECT_THAT(decodeTemperature(type, bytes), Optional(45.5)) << type;
    EXPECT_THAT(decodeFanRPM(type, bytes), Optional(46)) << type;
  }
  for (const std::uint32_t type : {0x666C7409U, 0x666C740AU, 0x666C74CAU, 0x66206C74U}) {
    EXPECT_THAT(decodeTemperature(type, bytes), Eq(std::nullopt)) << type;
  }
  EXPECT_THAT(decodeTemperature(0x20202020, bytes), Eq(std::nullopt));
  EXPECT_THAT(decodeTemperature(0, bytes), Eq(std::nullopt));
}

TEST(SMCDecodingTest, KnowsTheFanSpeedsItCanDecode) {
  for (const float value : {0.0F, -1.0F, 9.2e18F, -9.2e18F}) {
    EXPECT_TRUE(canDecodeFanRPM(fourCharCode("flt "), littleEndian(value))) << value;
  }
  const Bytes notANumber = littleEndian(std::numeric_limits<float>::quiet_NaN());
  EXPECT_TRUE(canDecodeFanRPM(fourCharCode("fpe2"), notANumber));
  EXPECT_TRUE(canDecodeFanRPM(fourCharCode("flt "), {}));
}

TEST(SMCDecodingTest, EndsTheProcessOverAFanSpeedThatIsNoInteger) {
  for (const float value : {std::numeric_limits<float>::quiet_NaN(), std::numeric_limits<float>::infinity(),
                            -std::numeric_limits<float>::infinity(), 9.3e18F, -9.3e18F}) {
    EXPECT_FALSE(canDecodeFanRPM(fourCharCode("flt "), littleEndian(value))) << value;
    EXPECT_EXIT(static_cast<void>(fanRPM("flt ", littleEndian(value))), endedByTrap, "") << value;
  }
}

TEST(SMCDecodingTest, TakesACodeApartMostSignificantByteFirst) {
  EXPECT_EQ(fourCharBytes(0x46300041), (std::array<std::uint8_t, 4>{0x46, 0x30, 0x00, 0x41}));
}

}  // namespace
}  // namespace quellin::SMCDecoding
