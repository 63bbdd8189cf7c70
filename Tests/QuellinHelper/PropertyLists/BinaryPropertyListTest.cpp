#include <bit>
#include <cstdint>

#include <gtest/gtest.h>

#include "BinaryDocument.h"
#include "PropertyListText.h"
#include "QuellinHelper/PropertyLists/BinaryPropertyList.h"

namespace quellin {
namespace {

using namespace std::string_literals;
using testing_support::bigEndianBytes;
using testing_support::BinaryDocument;

std::string read(const BinaryDocument& document) {
  return described(parseBinaryPropertyList(document.bytes()));
}
std::string readObject(const std::string& object) { return read({.objects = {object}}); }
bool isError(const std::string& text) { return text.starts_with("error: "); }

TEST(BinaryPropertyListTest, ReadsScalars) {
  const std::pair<std::string, const char*> rows[] = {
      {"\x08", "false"},
      {"\x09", "true"},
      {"\x10\xFF", "255"},
      {"\x11\xFF\xFE", "65534"},
      {"\x12\xFF\xFF\xFF\xFF", "4294967295"},
      {"\x13" + std::string(8, '\xFF'), "-1"},
      {"\x14" + std::string(16, '\xFF'), "-1"},
      {"\x14" + std::string(8, '\0') + std::string(8, '\xFF'), "large18446744073709551615"},
      {"\x22" + bigEndianBytes(std::bit_cast<std::uint32_t>(0.5F), 4), "r0.5"},
      {"\x23" + bigEndianBytes(std::bit_cast<std::uint64_t>(-2.25), 8), "r-2.25"},
      {"\x33" + bigEndianBytes(std::bit_cast<std::uint64_t>(1.5), 8), "@978307201.5"},
      {"\x43\x61\0b"s, "<a\0b>"},
      {"\x40", "<>"},
      {"\x52hi", "\"hi\""},
      {"\x5F\x10\x10"s + "sixteen letters!", "\"sixteen letters!\""},
      {"\x62\0a\x20\xAC"s, "\"a€\""},
      {"\x80\x07", "{CF$UID: 7}"},
      {"\x81\x01\x02", "{CF$UID: 258}"}};
  for (const auto& [object, expected] : rows) {
    const std::string text = expected[0] == '<' && expected[1] == 'a' ? "<a\0b>"s : expected;
    EXPECT_EQ(readObject(object), text);
  }
}

TEST(BinaryPropertyListTest, ReadsContainersInStoredOrder) {
  EXPECT_EQ(read({.objects = {"\xD2\x01\x02\x03\x04", "\x51\x7A", "\x51\x61", "\x09", "\xA2\x01\x03"}}),
            "{z: true, a: [\"z\", true]}");
  EXPECT_EQ(read({.objects = {"\xA0"}}), "[]");
  EXPECT_EQ(read({.objects = {"\x09", "\xD0"}, .topObject = 1}), "{}");
  EXPECT_EQ(read({.objects = {"\xA1\0\x01"s, "\x08"}, .referenceSize = 2}), "[false]");
}

TEST(BinaryPropertyListTest, ARepeatedKeyKeepsItsFirstPositionAndItsLastValue) {
  EXPECT_EQ(read({.objects = {"\xD3\x01\x02\x01\x03\x03\x04", "\x51z", "\x51y", "\x09", "\x08"}}),
            "{z: false, y: true}");
}

TEST(BinaryPropertyListTest, RefusesUnsupportedObjects) {
  for (const std::string& object :
       {"\0"s, "\x0F"s, "\x01"s, "\xC1\x01"s, "\x15"s + std::string(32, 'x'), "\x20q"s,
        "\x24"s + std::string(16, 'x'), "\x32"s + std::string(4, 'x'), "\x77"s, "\x9F"s, "\xB0"s, "\xE0"s,
        "\xF0"s, "\x51\x80"s, "\x61\xD8\x3D"s, "\x14\x7F"s + std::string(15, 'x'),
        "\x14"s + std::string(8, '\xFF') + std::string(8, '\0'), "\x88"s + std::string(9, 'x')}) {
    EXPECT_TRUE(isError(readObject(object))) << testing::PrintToString(object);
  }
}

TEST(BinaryPropertyListTest, RefusesObjectsThatReachOutsideTheInput) {
  for (const std::string& object : {"\x11\x01"s,
                                    "\x13"s,
                                    "\x14x"s,
                                    "\x22x"s,
                                    "\x23"s,
                                    "\x33"s,
                                    "\x4Fx"s,
                                    "\x4F\x10"s,
                                    "\x4F\x10\x02z"s,
                                    "\x42x"s,
                                    "\x52x"s,
                                    "\x61x"s,
                                    "\x81x"s,
                                    "\xA1"s,
                                    "\xD1\x01"s,
                                    "\x4F\x13"s + std::string(8, '\xFF'),
                                    "\xAF\x13"s + std::string(8, '\xFF'),
                                    "\xDF\x13\x7F"s + std::string(7, '\xFF'),
                                    "\x6F\x13\x80"s + std::string(7, '\0'),
                                    "\x5F\x14"s + std::string(16, '\0'),
                                    "\x5F\x51x"s}) {
    EXPECT_TRUE(isError(readObject(object))) << testing::PrintToString(object);
  }
}

TEST(BinaryPropertyListTest, RefusesReferencesToMissingObjects) {
  EXPECT_EQ(read({.objects = {"\xA1\x01"}}), "error: object outside the input");
  EXPECT_EQ(read({.objects = {"\xD1\x02\x01", "\x09"}}), "error: object outside the input");
}

TEST(BinaryPropertyListTest, RefusesKeysThatAreNoStrings) {
  EXPECT_EQ(read({.objects = {"\xD1\x01\x01", "\x09"}}), "error: key that is no string");
  EXPECT_EQ(read({.objects = {"\xD1\x01\x02", "\xA0", "\x09"}}), "error: key that is no string");
}

TEST(BinaryPropertyListTest, RefusesAWrongTrailer) {
  const BinaryDocument good{.objects = {"\xA1\x01", "\x09"}};
  ASSERT_EQ(read(good), "[true]");
  const auto with = [&good](auto&& change) {
    BinaryDocument document = good;
    change(document);
    return read(document);
  };
  static constexpr std::uint64_t huge = UINT64_MAX;
  EXPECT_TRUE(isError(with([](BinaryDocument& d) { d.offsetSize = 0; })));
  EXPECT_TRUE(isError(with([](BinaryDocument& d) { d.offsetSize = 9; })));
  EXPECT_TRUE(isError(with([](BinaryDocument& d) { d.referenceSize = 0; })));
  EXPECT_TRUE(isError(with([](BinaryDocument& d) { d.referenceSize = 255; })));
  EXPECT_TRUE(isError(with([](BinaryDocument& d) { d.topObject = 2; })));
  EXPECT_TRUE(isError(with([](BinaryDocument& d) { d.topObject = huge; })));
  EXPECT_TRUE(isError(with([](BinaryDocument& d) { d.objectCount = 3; })));
  EXPECT_TRUE(isError(with([](BinaryDocument& d) { d.objectCount = huge; })));
  EXPECT_TRUE(isError(with([](BinaryDocument& d) { d.objectCount = std::uint64_t{1} << 63; })));
  EXPECT_TRUE(isError(with([](BinaryDocument& d) { d.objectCount = 0; })));
  EXPECT_TRUE(isError(with([](BinaryDocument& d) { d.tableOffset = huge; })));
  EXPECT_TRUE(isError(with([](BinaryDocument& d) { d.tableOffset = 0; })));
  EXPECT_TRUE(isError(with([](BinaryDocument& d) { d.tableOffset = 9; })));
  EXPECT_TRUE(isError(with([](BinaryDocument& d) { d.magic = "bplist15"; })));
}

TEST(BinaryPropertyListTest, AFileCutOrChangedAnywhereIsReadWithinItsBounds) {
  const std::string whole = BinaryDocument{.objects = {"\xD2\x01\x02\x03\x04", "\x51z", "\x62\0a\0b"s,
                                                       "\x13\0\0\0\0\0\0\0\x01"s, "\xA1\x01"}}
                                .bytes();
  ASSERT_FALSE(isError(described(parseBinaryPropertyList(whole))));
  for (std::size_t length = 0; length < whole.size(); ++length) {
    const auto cut =
        std::make_unique<char[]>(length);  // an exact allocation: the sanitizer sees one byte too many
    std::copy_n(whole.data(), length, cut.get());
    EXPECT_FALSE(parseBinaryPropertyList({cut.get(), length})) << length;
  }
  int readable = 0;
  for (std::size_t index = 0; index < whole.size(); ++index) {
    for (int value = 0; value < 256; ++value) {
      std::string changed = whole;
      changed[index] = static_cast<char>(value);
      if (const auto list = parseBinaryPropertyList(changed))
        readable += described(list->root()).empty() ? 0 : 1;
    }
  }
  EXPECT_GT(readable, 0);
}

TEST(BinaryPropertyListTest, RejectsCircles) {
  EXPECT_TRUE(isError(read({.objects = {"\xA1\0"s}})));
  EXPECT_TRUE(isError(read({.objects = {"\xA1\x01", "\xA1\0"s}})));
  EXPECT_TRUE(isError(read({.objects = {"\xD1\x01\0"s, "\x51k"}})));
}

TEST(BinaryPropertyListTest, NestsAsDeepAsTheLimitAndNoDeeper) {
  const auto nested = [](std::size_t depth) {
    BinaryDocument document{.objects = {}, .referenceSize = 2};
    for (std::size_t level = 1; level < depth; ++level)
      document.objects.push_back("\xA1" + bigEndianBytes(level, 2));
    document.objects.push_back("\xA0");
    return read(document);
  };
  EXPECT_FALSE(isError(nested(512)));
  EXPECT_EQ(nested(513), "error: too many nested arrays or dictionaries");
}

TEST(BinaryPropertyListTest, SharedContainersCannotBlowUp) {
  BinaryDocument document{.objects = {}};
  for (int level = 1; level < 60; ++level) {
    document.objects.push_back("\xA2" + std::string(2, static_cast<char>(level)));
  }
  document.objects.emplace_back("\xA0");
  EXPECT_EQ(read(document), "error: more nodes than bytes");
}

TEST(BinaryPropertyListTest, ASharedScalarIsCopiedOnce) {
  const std::string text(10'000, 'x');
  EXPECT_EQ(read({.objects = {"\xA3\x01\x01\x01", "\x5F\x11\x27\x10" + text}}),
            "[\"" + text + "\", \"" + text + "\", \"" + text + "\"]");
}

}  // namespace
}  // namespace quellin
