#include <bit>
#include <cstring>
#include <thread>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "QuellinCore/Models/SMCDecoding.h"
#include "QuellinCore/Platform/VirtualSMC.h"
#include "QuellinCore/Services/SMCService.h"
#include "Support/Bytes.h"

namespace quellin {
namespace {

using testing::Each;
using testing::ElementsAre;
using testing::Eq;
using testing::IsEmpty;
using testing::SizeIs;
using testing_support::littleEndian;
using Bytes = std::vector<std::uint8_t>;

class SMCServiceTest : public testing::Test {
 protected:
  [[nodiscard]] std::vector<FanInfo> fans() const { return SMCService{smc}.readFans(); }
  [[nodiscard]] std::vector<TemperatureSensor> temperatures() const {
    return SMCService{smc}.readTemperatures();
  }

  std::shared_ptr<VirtualSMC> smc = std::make_shared<VirtualSMC>();
};

// Passes calls on, and keeps every question that was asked.
class Eavesdropper final : public SMCSource {
 public:
  explicit Eavesdropper(std::shared_ptr<SMCSource> source) : source_(std::move(source)) {}

  [[nodiscard]] std::unique_ptr<SMCConnection> open() override {
    ++opened;
    return std::make_unique<Connection>(*this, source_->open());
  }
  [[nodiscard]] SourceDiagnosis diagnose() override { return source_->diagnose(); }

  std::vector<SMCKeyData> questions;
  int opened = 0;
  int closed = 0;
  std::uint8_t resultByte = 0;

 private:
  class Connection final : public SMCConnection {
   public:
    Connection(Eavesdropper& owner, std::unique_ptr<SMCConnection> inner)
        : owner_(owner), inner_(std::move(inner)) {}
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;
    ~Connection() override { ++owner_.closed; }

    [[nodiscard]] std::int32_t callStruct(std::uint32_t selector, const SMCKeyData& input, SMCKeyData& output,
                                          std::size_t& outputSize) override {
      EXPECT_EQ(selector, 2U);
      EXPECT_EQ(outputSize, 80U);
      EXPECT_THAT(bytesOf(output), Each(Eq(0))) << "the output block has to be zero before each call";
      owner_.questions.push_back(input);
      const std::int32_t code = inner_->callStruct(selector, input, output, outputSize);
      output.result = owner_.resultByte;
      return code;
    }

   private:
    static std::array<std::uint8_t, 80> bytesOf(const SMCKeyData& block) {
      return std::bit_cast<std::array<std::uint8_t, 80>>(block);
    }

    Eavesdropper& owner_;
    std::unique_ptr<SMCConnection> inner_;
  };

  std::shared_ptr<SMCSource> source_;
};

class AbsentSource final : public SMCSource {
 public:
  [[nodiscard]] std::unique_ptr<SMCConnection> open() override { return nullptr; }
  [[nodiscard]] SourceDiagnosis diagnose() override { return {}; }
};

TEST_F(SMCServiceTest, ReadsNothingWithoutAnSMC) {
  const SMCService service{std::make_shared<AbsentSource>()};
  EXPECT_THAT(service.readFans(), IsEmpty());
  EXPECT_THAT(service.readTemperatures(), IsEmpty());
}

TEST_F(SMCServiceTest, ReadsNothingWhenEveryKeyIsUnknown) {
  EXPECT_THAT(fans(), IsEmpty());
  EXPECT_THAT(temperatures(), IsEmpty());
}

TEST_F(SMCServiceTest, ReadsFansInIndexOrderWithUnreadableSpeedsAsZero) {
  smc->set("FNum", "ui8 ", {3});
  smc->set("F0Ac", "fpe2", {0x1F, 0x40});
  smc->set("F0Mn", "fpe2", {0x12, 0xC0});
  smc->set("F0Mx", "fpe2", {0x5D, 0xC0});
  smc->set("F1Ac", "flt ", littleEndian(1234.5F));
  smc->set("F1Mn", "ui16", {0x12, 0xC0});
  smc->set("F1Mx", "flt ", {0, 0, 0});
  EXPECT_THAT(
      fans(),
      ElementsAre(FanInfo{.id = 0, .name = "Fan 0", .currentRPM = 2000, .minRPM = 1200, .maxRPM = 6000},
                  FanInfo{.id = 1, .name = "Fan 1", .currentRPM = 1235, .minRPM = 0, .maxRPM = 0},
                  FanInfo{.id = 2, .name = "Fan 2", .currentRPM = 0, .minRPM = 0, .maxRPM = 0}));
}

TEST_F(SMCServiceTest, AcceptsOneToFifteenFans) {
  for (const auto& [reported, expected] :
       std::map<std::uint8_t, std::size_t>{{0, 0}, {1, 1}, {15, 15}, {16, 0}, {255, 0}}) {
    smc->set("FNum", "ui8 ", {reported});
    EXPECT_THAT(fans(), SizeIs(expected)) << int{reported};
  }
}

TEST_F(SMCServiceTest, TakesTheFanCountFromTheFirstByteWhateverItsType) {
  smc->set("FNum", "????", {2, 0xFF, 0xFF, 0xFF});
  EXPECT_THAT(fans(), SizeIs(2));
}

// Keys are four bytes, so from the eleventh fan on the three speeds differ in their fourth byte only.
TEST_F(SMCServiceTest, ReadsTwoDigitFansByTheFirstFourBytesOfTheirKeys) {
  smc->set("FNum", "ui8 ", {11});
  smc->set("F10A", "fpe2", {0x1F, 0x40});
  smc->set("F10M", "fpe2", {0x12, 0xC0});
  EXPECT_EQ(fans().back(),
            (FanInfo{.id = 10, .name = "Fan 10", .currentRPM = 2000, .minRPM = 1200, .maxRPM = 1200}));
}

TEST_F(SMCServiceTest, AcceptsSizesFromOneToThirtyTwo) {
  for (const auto& [size, expected] : std::map<std::size_t, std::size_t>{{0, 0}, {1, 1}, {32, 1}, {33, 0}}) {
    smc->set("FNum", "ui8 ", Bytes(size, 1));
    EXPECT_THAT(fans(), SizeIs(expected)) << size;
  }
  for (const auto& [size, expected] :
       std::map<std::size_t, std::size_t>{{0, 0}, {1, 0}, {2, 1}, {32, 1}, {33, 0}}) {
    smc->set("TC0P", "sp78", Bytes(size, 0x2D));
    EXPECT_THAT(temperatures(), SizeIs(expected)) << size;
  }
}

TEST_F(SMCServiceTest, KeepsTemperaturesBetweenZeroAndOneHundredFifty) {
  struct Case {
    float value;
    bool isKept;
  };
  for (const Case& c :
       {Case{0.0F, false}, Case{0.01F, true}, Case{149.9F, true}, Case{150.0F, false}, Case{-1.0F, false},
        Case{1e30F, false}, Case{std::numeric_limits<float>::quiet_NaN(), false},
        Case{std::numeric_limits<float>::infinity(), false}}) {
    smc->set("TC0P", "flt ", littleEndian(c.value));
    EXPECT_THAT(temperatures(), SizeIs(c.isKept ? 1 : 0)) << c.value;
  }
}

TEST_F(SMCServiceTest, DecodesTemperaturesByType) {
  smc->set("TC0P", "sp78", {0x2D, 0x80});
  smc->set("TC0D", "flt ", littleEndian(61.25F));
  smc->set("TC0E", "ui8 ", {45});
  smc->set("TC0F", "fpe2", {0x1F, 0x40});
  smc->set("TG0P", "sp78", {0xFF, 0x00});
  smc->set("XXXX", "sp78", {0x2D, 0x80});
  EXPECT_THAT(temperatures(), ElementsAre(TemperatureSensor{"TC0D", "CPU Die", 61.25},
                                          TemperatureSensor{"TC0P", "CPU Proximity", 45.5}));
}

TEST_F(SMCServiceTest, SortsTemperaturesByName) {
  for (const auto& [key, name] : TemperatureSensor::knownSensors()) smc->set(key, "sp78", {0x2D, 0x80});
  const auto sensors = temperatures();
  ASSERT_THAT(sensors, SizeIs(37));
  EXPECT_TRUE(std::ranges::is_sorted(sensors, {}, &TemperatureSensor::name));
  const auto plain = std::ranges::find(sensors, "SSD", &TemperatureSensor::name);
  ASSERT_NE(plain, sensors.end());
  EXPECT_EQ((plain + 1)->name, "SSD A");
  EXPECT_EQ((plain + 2)->name, "SSD B");
}

TEST_F(SMCServiceTest, AsksForSizeAndTypeAndThenForThatManyBytes) {
  smc->set("FNum", "ui8 ", {0});
  const auto ear = std::make_shared<Eavesdropper>(smc);
  EXPECT_THAT(SMCService{ear}.readFans(), IsEmpty());
  SMCKeyData info;
  info.key = 0x464E756D;
  info.command = SMCCommand::readKeyInfo;
  SMCKeyData read = info;
  read.dataSize = 1;
  read.command = SMCCommand::readBytes;
  ASSERT_THAT(ear->questions, SizeIs(2));
  EXPECT_EQ(std::memcmp(ear->questions.data(), &info, sizeof(info)), 0);
  EXPECT_EQ(std::memcmp(&ear->questions[1], &read, sizeof(read)), 0);
}

TEST_F(SMCServiceTest, AsksForNoBytesWhenTheSizeIsOutOfRange) {
  for (const std::size_t size : {0U, 33U}) {
    smc->set("FNum", "ui8 ", Bytes(size, 1));
    const auto ear = std::make_shared<Eavesdropper>(smc);
    EXPECT_THAT(SMCService{ear}.readFans(), IsEmpty());
    EXPECT_THAT(ear->questions, SizeIs(1)) << size;
  }
}

TEST_F(SMCServiceTest, ReadsTheSpeedsOfAFanInTheirOrder) {
  smc->set("FNum", "ui8 ", {1});
  const auto ear = std::make_shared<Eavesdropper>(smc);
  EXPECT_THAT(SMCService{ear}.readFans(), SizeIs(1));
  std::vector<std::uint32_t> keys;
  for (const SMCKeyData& question : ear->questions) keys.push_back(question.key);
  using SMCDecoding::fourCharCode;
  EXPECT_THAT(keys, ElementsAre(fourCharCode("FNum"), fourCharCode("FNum"), fourCharCode("F0Ac"),
                                fourCharCode("F0Mn"), fourCharCode("F0Mx")));
}

TEST_F(SMCServiceTest, IgnoresTheResultByteOfTheBlock) {
  smc->set("FNum", "ui8 ", {1});
  smc->set("TC0P", "sp78", {0x2D, 0x80});
  const auto ear = std::make_shared<Eavesdropper>(smc);
  ear->resultByte = 0x84;
  EXPECT_THAT(SMCService{ear}.readFans(), SizeIs(1));
  EXPECT_THAT(SMCService{ear}.readTemperatures(), SizeIs(1));
}

TEST_F(SMCServiceTest, OpensOneConnectionPerCallAndClosesItOnEveryPath) {
  const auto ear = std::make_shared<Eavesdropper>(smc);
  const SMCService service{ear};
  int calls = 0;
  const auto expectClosed = [&] {
    EXPECT_EQ(ear->opened, ++calls);
    EXPECT_EQ(ear->closed, calls);
  };
  EXPECT_THAT(service.readFans(), IsEmpty());
  expectClosed();
  smc->set("FNum", "ui8 ", {16});
  EXPECT_THAT(service.readFans(), IsEmpty());
  expectClosed();
  smc->set("FNum", "ui8 ", {2});
  EXPECT_THAT(service.readFans(), SizeIs(2));
  expectClosed();
  EXPECT_THAT(service.readTemperatures(), IsEmpty());
  expectClosed();
}

TEST_F(SMCServiceTest, ServesSeveralThreadsAtOnce) {
  smc->set("FNum", "ui8 ", {2});
  smc->set("TC0P", "sp78", {0x2D, 0x80});
  const SMCService service{smc};
  std::vector<std::size_t> counts(8);
  std::vector<std::thread> threads;
  threads.reserve(counts.size());
  for (std::size_t& count : counts) {
    threads.emplace_back(
        [&service, &count] { count = service.readFans().size() + service.readTemperatures().size(); });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_THAT(counts, Each(Eq(3U)));
}

}  // namespace
}  // namespace quellin
