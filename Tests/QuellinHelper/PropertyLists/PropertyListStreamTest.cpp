#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "PropertyListText.h"
#include "QuellinHelper/PropertyLists/PropertyListStream.h"

namespace quellin {
namespace {

using namespace std::string_view_literals;
using testing::ElementsAre;
using testing::IsEmpty;

std::vector<std::string> readStream(std::string_view bytes) {
  std::vector<std::string> texts;
  for (const PropertyList& list : parsePropertyListStream(bytes)) texts.push_back(described(list.root()));
  return texts;
}

TEST(PropertyListStreamTest, SplitsAtEveryNULAndDropsEmptyPieces) {
  EXPECT_THAT(splitAtNUL("a\0b"sv), ElementsAre("a", "b"));
  EXPECT_THAT(splitAtNUL("\0\0a\0\0\0bc\0\0"sv), ElementsAre("a", "bc"));
  EXPECT_THAT(splitAtNUL("a"sv), ElementsAre("a"));
  EXPECT_THAT(splitAtNUL("\0\0"sv), IsEmpty());
  EXPECT_THAT(splitAtNUL(""sv), IsEmpty());
}

TEST(PropertyListStreamTest, KeepsTheOrderAndSkipsWhatIsNoPropertyList) {
  EXPECT_THAT(readStream("<true/>\0word\0 \n\0<false/>\0<dict>\0bplist00junk\0<array/>\n\0"sv),
              ElementsAre("true", "false", "[]"));
}

TEST(PropertyListStreamTest, ChoosesTheEncodingByTheMagic) {
  EXPECT_EQ(described(parsePropertyList("bplist00 and nothing else that would make one of it")),
            "error: impossible integer size");
  EXPECT_EQ(described(parsePropertyList("<true/>")), "true");
}

TEST(PropertyListStreamTest, ReadsManyPieces) {
  std::string bytes;
  for (int index = 0; index < 60; ++index) bytes += "<integer>" + std::to_string(index) + "</integer>" + '\0';
  const auto texts = readStream(bytes);
  ASSERT_EQ(texts.size(), 60U);
  EXPECT_EQ(texts.back(), "59");
}

}  // namespace
}  // namespace quellin
