#include <gtest/gtest.h>

#include "QuellinHelper/PropertyLists/UTF16.h"

namespace quellin {
namespace {

using namespace std::string_view_literals;

TEST(UTF16Test, ConvertsToUTF8) {
  EXPECT_EQ(utf8FromUTF16BigEndian("\0a\x20\xAC\xD8\x3D\xDE\x00"sv), "a€😀");
  EXPECT_EQ(utf8FromUTF16BigEndian("\xD8\x00\xDC\x00\xDB\xFF\xDF\xFF\xE0\x00"sv),
            "\U00010000\U0010FFFF\uE000");
  EXPECT_EQ(utf8FromUTF16BigEndian(""sv), "");
}

TEST(UTF16Test, RefusesLoneSurrogatesAndHalfUnits) {
  for (const std::string_view bytes :
       {"\xD8\x3D"sv, "\xDE\x00"sv, "\xD8\x3D\0a"sv, "\xD8\x3D\xD8\x3D"sv, "\xDE\x00\xD8\x3D"sv, "a"sv}) {
    EXPECT_FALSE(utf8FromUTF16BigEndian(bytes));
  }
}

}  // namespace
}  // namespace quellin
