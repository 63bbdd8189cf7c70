#include <cstddef>
#include <string>

#include <gmock/gmock.h>

#include "QuellinCore/Support/Checksum.h"

namespace quellin {
namespace {

TEST(ChecksumTest, PublishedValuesComeOut) {
  EXPECT_EQ(crc32c(""), 0U);
  EXPECT_EQ(crc32c("123456789"), 0xE3069283U);
  EXPECT_EQ(crc32c(std::string(32, '\0')), 0x8A9136AAU);
  EXPECT_EQ(crc32c(std::string(32, '\xFF')), 0x62A8AB43U);
}

TEST(ChecksumTest, PiecesGiveTheChecksumOfTheWhole) {
  const std::string whole = "The quick brown fox jumps over the lazy dog";
  for (std::size_t cut = 0; cut <= whole.size(); ++cut) {
    EXPECT_EQ(crc32c(whole.substr(cut), crc32c(whole.substr(0, cut))), crc32c(whole)) << cut;
  }
}

TEST(ChecksumTest, EveryFlippedBitShows) {
  std::string bytes = "twenty-three characters";
  const auto original = crc32c(bytes);
  for (char& byte : bytes) {
    for (int bit = 0; bit < 8; ++bit) {
      byte = static_cast<char>(byte ^ (1 << bit));
      EXPECT_NE(crc32c(bytes), original);
      byte = static_cast<char>(byte ^ (1 << bit));
    }
  }
}

}  // namespace
}  // namespace quellin
