#include <cstdint>
#include <limits>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "QuellinCore/Support/JSON/JSONEncoder.h"

namespace quellin {

enum class Colour { red, darkBlue };
template <>
inline constexpr std::array rawValues<Colour>{std::string_view{"red"}, std::string_view{"dark/blue"}};

namespace {

struct Leaf {
  std::string name;
  std::optional<double> value;

  static constexpr auto fields() {
    return std::tuple{Field{"name", &Leaf::name}, Field{"value", &Leaf::value}};
  }
};

struct Everything {
  bool zFlag = true;
  std::int32_t small = -5;
  std::int64_t wide = std::numeric_limits<std::int64_t>::min();
  std::uint64_t count = std::numeric_limits<std::uint64_t>::max();
  Instant when = instantAt(1741081260.9);
  UUID identifier{UUID::Bytes{0xAB, 0xCD, 0xEF}};
  Colour colour = Colour::darkBlue;
  std::vector<Leaf> leaves{{"b", 1}, {"a", std::nullopt}};
  std::vector<std::int32_t> numbers;
  std::optional<Leaf> leaf;

  static constexpr auto fields() {
    return std::tuple{Field{"zFlag", &Everything::zFlag},     Field{"small", &Everything::small},
                      Field{"wide", &Everything::wide},       Field{"count", &Everything::count},
                      Field{"when", &Everything::when},       Field{"identifier", &Everything::identifier},
                      Field{"colour", &Everything::colour},   Field{"leaves", &Everything::leaves},
                      Field{"numbers", &Everything::numbers}, Field{"leaf", &Everything::leaf}};
  }
};

struct Nothing {
  std::optional<bool> maybe;
  static constexpr auto fields() { return std::tuple{Field{"maybe", &Nothing::maybe}}; }
};

struct Tree {
  std::vector<Tree> children;
  static constexpr auto fields() { return std::tuple{Field{"c", &Tree::children}}; }
};

// The sorted order of these names tells byte order from an order that folds case or reads numbers.
struct Ordering {
  int processActivities = 1, proTelemetry = 2, sampledAt = 3, sampleInterval = 4, b10 = 5, b9 = 6, Zed = 7,
      ab = 8, a = 9;
  static constexpr auto fields() {
    return std::tuple{Field{"processActivities", &Ordering::processActivities},
                      Field{"proTelemetry", &Ordering::proTelemetry},
                      Field{"sampledAt", &Ordering::sampledAt},
                      Field{"sampleInterval", &Ordering::sampleInterval},
                      Field{"b10", &Ordering::b10},
                      Field{"b9", &Ordering::b9},
                      Field{"Zed", &Ordering::Zed},
                      Field{"ab", &Ordering::ab},
                      Field{"a", &Ordering::a}};
  }
};

Tree nested(std::size_t objects) {
  Tree tree;
  for (std::size_t level = 1; level < objects; ++level) {
    Tree parent;
    parent.children.push_back(std::move(tree));
    tree = std::move(parent);
  }
  return tree;
}

TEST(JSONEncoderTest, WritesEveryKindOfFieldCompactlyInDeclarationOrder) {
  EXPECT_EQ(encodeJSON(Everything{}),
            R"({"zFlag":true,"small":-5,"wide":-9223372036854775808,"count":18446744073709551615,)"
            R"("when":"2025-03-04T09:41:00Z","identifier":"ABCDEF00-0000-0000-0000-000000000000",)"
            R"("colour":"dark\/blue","leaves":[{"name":"b","value":1},{"name":"a"}],"numbers":[]})");
}

TEST(JSONEncoderTest, SortsTheKeysOfNestedObjectsToo) {
  Everything everything;
  everything.leaf = Leaf{"x", -0.5};
  EXPECT_EQ(encodeJSON(everything, KeyOrder::sorted),
            R"({"colour":"dark\/blue","count":18446744073709551615,)"
            R"("identifier":"ABCDEF00-0000-0000-0000-000000000000","leaf":{"name":"x","value":-0.5},)"
            R"("leaves":[{"name":"b","value":1},{"name":"a"}],"numbers":[],"small":-5,)"
            R"("when":"2025-03-04T09:41:00Z","wide":-9223372036854775808,"zFlag":true})");
}

TEST(JSONEncoderTest, SortsByBytesAndNotByLettersOrNumbers) {
  EXPECT_EQ(encodeJSON(Ordering{}, KeyOrder::sorted),
            R"({"Zed":7,"a":9,"ab":8,"b10":5,"b9":6,"proTelemetry":2,"processActivities":1,)"
            R"("sampleInterval":4,"sampledAt":3})");
}

TEST(JSONEncoderTest, IndentsByTwoBlanksWithABlankLineInsideEmptyContainers) {
  const Tree tree{{Tree{}, Tree{{Tree{}}}}};
  EXPECT_EQ(encodeJSON(tree, KeyOrder::declaration, JSONLayout::pretty), R"({
  "c" : [
    {
      "c" : [

      ]
    },
    {
      "c" : [
        {
          "c" : [

          ]
        }
      ]
    }
  ]
})");
  EXPECT_EQ(encodeJSON(Nothing{}, KeyOrder::sorted, JSONLayout::pretty), "{\n\n}");
  EXPECT_EQ(encodeJSON(std::vector<int>{}, KeyOrder::sorted, JSONLayout::pretty), "[\n\n]");
  EXPECT_EQ(encodeJSON(std::vector<int>{1, 2}, KeyOrder::sorted, JSONLayout::pretty), "[\n  1,\n  2\n]");
}

TEST(JSONEncoderTest, LeavesOutAbsentFieldsWhereverTheyStand) {
  EXPECT_EQ(encodeJSON(Nothing{}), "{}");
  EXPECT_EQ(encodeJSON(Nothing{false}), R"({"maybe":false})");
  EXPECT_EQ(encodeJSON(std::vector<Nothing>{{}, {true}, {}}), R"([{},{"maybe":true},{}])");
}

struct DoubleCase {
  double value;
  const char* text;
};

TEST(JSONEncoderTest, WritesDoublesInTheirShortestFormPlainlyFromOneTenThousandthToTwoToThe53) {
  const DoubleCase cases[] = {
      {0, "0"},
      {-0.0, "-0"},
      {12, "12"},
      {-1, "-1"},
      {0.1, "0.1"},
      {0.1 + 0.2, "0.30000000000000004"},
      {1.0 / 3, "0.3333333333333333"},
      {100000, "100000"},
      {123456789012, "123456789012"},
      {9007199254740992, "9007199254740992"},
      {-9007199254740992, "-9007199254740992"},
      {9007199254740994, "9.007199254740994e+15"},
      {1e16, "1e+16"},
      {-1.5e300, "-1.5e+300"},
      {1e-4, "0.0001"},
      {0.00012345678901234567, "0.00012345678901234567"},
      {0.000099999999999999991, "9.999999999999999e-05"},
      {1e-5, "1e-05"},
      {-2.5e-7, "-2.5e-07"},
      {5e-324, "5e-324"},
      {std::numeric_limits<double>::max(), "1.7976931348623157e+308"},
      {std::numeric_limits<double>::min(), "2.2250738585072014e-308"},
  };
  for (const auto& [value, text] : cases) EXPECT_EQ(encodeJSON(value), text);
}

TEST(JSONEncoderTest, EscapesQuotesBackslashesSlashesAndControlsOnly) {
  EXPECT_EQ(encodeJSON(std::string{"\" \\ / \b \f \n \r \t"}), R"("\" \\ \/ \b \f \n \r \t")");
  EXPECT_EQ(encodeJSON(std::string("\0\x01\x0B\x1F", 4)), R"("\u0000\u0001\u000b\u001f")");
  EXPECT_EQ(encodeJSON(std::string{"\x7F \xC2\x80 é € \xE2\x80\xA8\xE2\x80\xA9 😀 '<>&"}),
            "\"\x7F \xC2\x80 é € \xE2\x80\xA8\xE2\x80\xA9 😀 '<>&\"");
}

TEST(JSONEncoderTest, EscapesACharacterAtEveryPlaceOfALongText) {
  for (const auto& [character, escaped] :
       {std::pair{"/", "\\/"}, std::pair{"\n", "\\n"}, std::pair{"\"", "\\\""}, std::pair{"é", "é"}}) {
    for (std::size_t place = 0; place <= 20; ++place) {
      const std::string before(place, '~');
      const std::string after(20 - place, ' ');
      EXPECT_EQ(encodeJSON(before + character + after), '"' + before + escaped + after + '"');
    }
  }
}

TEST(JSONEncoderTest, RepairsTextThatIsNotUTF8) {
  EXPECT_EQ(encodeJSON(std::string{"a\xFF\xE2\x82z\xC0\xAF"}), "\"a\uFFFD\uFFFDz\uFFFD\uFFFD\"");
  EXPECT_EQ(encodeJSON(std::string{"\xE2"}), "\"\uFFFD\"");
}

TEST(JSONEncoderTest, RefusesNumbersAndDatesThatAreNotFiniteAndNamesWhere) {
  const double infinity = std::numeric_limits<double>::infinity();
  Everything everything;
  everything.leaves[1].value = -infinity;
  EXPECT_EQ(encodeJSON(everything).error().path, "leaves[1].value");
  EXPECT_EQ(encodeJSON(std::vector{everything}, KeyOrder::sorted).error().path, "[0].leaves[1].value");
  EXPECT_EQ(encodeJSON(std::vector<std::vector<double>>{{1}, {2, infinity}}).error().path, "[1][1]");
  EXPECT_EQ(encodeJSON(std::numeric_limits<double>::quiet_NaN()).error(),
            (EncodingError{"", "Unable to encode a number that is not finite directly in JSON."}));
  everything = {};
  everything.when = instantAt(infinity);
  EXPECT_EQ(encodeJSON(everything).error().path, "when");
}

TEST(JSONEncoderTest, RefusesFiveHundredAndTwelveNestedContainers) {
  // Every tree is an object with an array, the innermost array included.
  EXPECT_TRUE(encodeJSON(nested(255)));
  EXPECT_TRUE(encodeJSON(std::vector{nested(255)}));
  EXPECT_FALSE(encodeJSON(nested(256)));
  EXPECT_EQ(encodeJSON(nested(256)).error().reason, "Too many nested arrays or dictionaries.");
}

TEST(JSONEncoderTest, AppendsToWhatIsThereAndLeavesItAloneOnFailure) {
  std::string text = "head ";
  ASSERT_TRUE(appendJSON(text, std::vector<int>{1}));
  EXPECT_EQ(text, "head [1]");
  EXPECT_FALSE(appendJSON(text, std::vector<double>{1, std::numeric_limits<double>::infinity()}));
  EXPECT_EQ(text, "head [1]");
  text.reserve(100'000);
  const char* const buffer = text.data();
  for (int round = 0; round < 1000; ++round) ASSERT_TRUE(appendJSON(text, Nothing{true}, KeyOrder::sorted));
  EXPECT_EQ(text.data(), buffer);
  EXPECT_EQ(text.size(), 8U + 1000 * 14);
  EXPECT_TRUE(text.ends_with(R"({"maybe":true}{"maybe":true})"));
}

TEST(JSONEncoderTest, SaysWhereWhatCannotBeEncodedStands) {
  EXPECT_EQ((EncodingError{.path = "processes[2].energyImpact", .reason = "No."}).message(),
            R"("processes[2].energyImpact": No.)");
  EXPECT_EQ((EncodingError{.path = "", .reason = "No."}).message(), "No.");
}

}  // namespace
}  // namespace quellin
