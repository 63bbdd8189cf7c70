#include <numeric>
#include <optional>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "QuellinCore/Models/SMCDecoding.h"
#include "QuellinCore/Platform/VirtualSMC.h"

namespace quellin {
namespace {

using SMCDecoding::fourCharCode;
using testing::Each;
using testing::Eq;

struct Answer {
  std::int32_t code = 0;
  SMCKeyData block;
  std::size_t size = sizeof(SMCKeyData);
};

Answer ask(SMCConnection& connection, SMCCommand command, std::string_view key, std::uint32_t dataSize = 0,
           std::uint32_t selector = smcStructSelector) {
  SMCKeyData question;
  question.key = fourCharCode(key);
  question.command = command;
  question.dataSize = dataSize;
  Answer answer;
  answer.code = connection.callStruct(selector, question, answer.block, answer.size);
  return answer;
}

TEST(VirtualSMCTest, AnswersSizeAndTypeThenBytes) {
  VirtualSMC smc;
  smc.set("TC0P", "sp78", {0x2D, 0x80});
  const auto connection = smc.open();

  const Answer info = ask(*connection, SMCCommand::readKeyInfo, "TC0P");
  EXPECT_EQ(info.code, 0);
  EXPECT_EQ(info.size, 80U);
  EXPECT_EQ(info.block.dataSize, 2U);
  EXPECT_EQ(info.block.dataType, fourCharCode("sp78"));
  EXPECT_THAT(info.block.bytes, Each(Eq(0)));

  const Answer value = ask(*connection, SMCCommand::readBytes, "TC0P", 2);
  EXPECT_EQ(value.code, 0);
  EXPECT_EQ(value.block.bytes[0], 0x2D);
  EXPECT_EQ(value.block.bytes[1], 0x80);
  EXPECT_EQ(value.block.bytes[2], 0);
}

TEST(VirtualSMCTest, RefusesWhatItDoesNotKnow) {
  VirtualSMC smc;
  smc.set("TC0P", "sp78", {0x2D, 0x80});
  const auto connection = smc.open();
  EXPECT_EQ(ask(*connection, SMCCommand::readKeyInfo, "TC0D").code, VirtualSMC::unknownKey);
  EXPECT_EQ(ask(*connection, SMCCommand::readBytes, "TC0D", 2).code, VirtualSMC::unknownKey);
  EXPECT_EQ(ask(*connection, SMCCommand::readBytes, "TC0P", 1).code, VirtualSMC::wrongSize);
  EXPECT_EQ(ask(*connection, SMCCommand{8}, "TC0P").code, VirtualSMC::unsupportedCall);
  EXPECT_EQ(ask(*connection, SMCCommand::readKeyInfo, "TC0P", 0, 3).code, VirtualSMC::unsupportedCall);
}

TEST(VirtualSMCTest, RefusesAnAnswerBlockThatIsTooShort) {
  VirtualSMC smc;
  smc.set("TC0P", "sp78", {0x2D, 0x80});
  SMCKeyData answer;
  std::size_t size = sizeof(answer) - 1;
  EXPECT_EQ(smc.open()->callStruct(smcStructSelector, {}, answer, size), VirtualSMC::wrongSize);
}

TEST(VirtualSMCTest, ReportsSizesThatNoBlockCanCarry) {
  std::vector<std::uint8_t> bytes(33);
  std::iota(bytes.begin(), bytes.end(), std::uint8_t{1});
  VirtualSMC smc;
  smc.set("LONG", "ch8*", bytes);
  smc.set("NONE", "ch8*", {});
  const auto connection = smc.open();
  EXPECT_EQ(ask(*connection, SMCCommand::readKeyInfo, "LONG").block.dataSize, 33U);
  EXPECT_EQ(ask(*connection, SMCCommand::readBytes, "LONG", 33).block.bytes[31], 32);
  EXPECT_EQ(ask(*connection, SMCCommand::readKeyInfo, "NONE").block.dataSize, 0U);
}

TEST(VirtualSMCTest, KeepsTheTableAConnectionWasOpenedOn) {
  std::optional<VirtualSMC> smc{std::in_place};
  smc->set("FNum", "ui8 ", {1});
  const auto connection = smc->open();
  smc->set("FNum", "ui8 ", {2});
  EXPECT_EQ(ask(*smc->open(), SMCCommand::readBytes, "FNum", 1).block.bytes[0], 2);
  smc.reset();
  EXPECT_EQ(ask(*connection, SMCCommand::readBytes, "FNum", 1).block.bytes[0], 1);
}

TEST(VirtualSMCTest, IsAvailableOnceItHasAKey) {
  VirtualSMC smc;
  EXPECT_EQ(smc.diagnose().availability, SourceAvailability::absent);
  smc.set("FNum", "ui8 ", {1});
  EXPECT_EQ(smc.diagnose().availability, SourceAvailability::available);
}

}  // namespace
}  // namespace quellin
