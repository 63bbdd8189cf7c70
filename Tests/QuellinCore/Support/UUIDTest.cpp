#include <set>

#include <gtest/gtest.h>

#include "QuellinCore/Support/UUID.h"

namespace quellin {
namespace {

constexpr UUID sample{UUID::Bytes{0xE6, 0x21, 0xE1, 0xF8, 0xC3, 0x6C, 0x49, 0x5A, 0x93, 0xFC, 0x0C, 0x24,
                                  0x7A, 0x3E, 0x6E, 0x5F}};

TEST(UUIDTest, IsSpelledInUpperCase) {
  EXPECT_EQ(sample.text(), "E621E1F8-C36C-495A-93FC-0C247A3E6E5F");
  EXPECT_EQ(UUID{}.text(), "00000000-0000-0000-0000-000000000000");
}

TEST(UUIDTest, IsReadInEitherCase) {
  EXPECT_EQ(UUID::fromText("E621E1F8-C36C-495A-93FC-0C247A3E6E5F"), sample);
  EXPECT_EQ(UUID::fromText("e621e1f8-c36c-495a-93fc-0C247a3e6e5f"), sample);
}

TEST(UUIDTest, IsNotReadFromAnyOtherForm) {
  for (const char* text : {"", "E621E1F8-C36C-495A-93FC-0C247A3E6E5", "E621E1F8-C36C-495A-93FC-0C247A3E6E5F0",
                           "{E621E1F8-C36C-495A-93FC-0C247A3E6E5}", "E621E1F8C36C-495A-93FC-0C247A3E6E5F0",
                           "G621E1F8-C36C-495A-93FC-0C247A3E6E5F", "E621E1F8_C36C_495A_93FC_0C247A3E6E5F",
                           "E621E1F-8C36C-495A-93FC-0C247A3E6E5F", " 621E1F8-C36C-495A-93FC-0C247A3E6E5F"}) {
    EXPECT_EQ(UUID::fromText(text), std::nullopt) << text;
  }
}

TEST(UUIDTest, MakesRandomVersionFourIdentifiersThatDiffer) {
  std::set<UUID> seen;
  for (int round = 0; round < 1000; ++round) {
    const UUID uuid = UUID::random();
    EXPECT_EQ(uuid.bytes()[6] >> 4, 4);
    EXPECT_EQ(uuid.bytes()[8] >> 6, 2);
    EXPECT_EQ(UUID::fromText(uuid.text()), uuid);
    seen.insert(uuid);
  }
  EXPECT_EQ(seen.size(), 1000U);
}

TEST(UUIDTest, OrdersByBytes) {
  EXPECT_LT(UUID{}, sample);
  EXPECT_LT(sample, (UUID{UUID::Bytes{0xE7}}));
}

}  // namespace
}  // namespace quellin
