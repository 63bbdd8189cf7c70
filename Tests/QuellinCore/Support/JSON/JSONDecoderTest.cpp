#include <cmath>
#include <limits>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "QuellinCore/Support/JSON/JSONDecoder.h"
#include "Support/Bytes.h"

namespace quellin {

enum class Season { spring, lateAutumn };
template <>
inline constexpr std::array rawValues<Season>{std::string_view{"spring"}, std::string_view{"late autumn"}};

namespace {

using testing_support::repeated;

using Kind = DecodingError::Kind;
using std::string_view_literals::operator""sv;

struct Leaf {
  std::string name;
  std::optional<double> value;

  static constexpr auto fields() {
    return std::tuple{Field{"name", &Leaf::name}, Field{"value", &Leaf::value}};
  }
  bool operator==(const Leaf&) const = default;
};

struct Everything {
  bool flag = false;
  std::int32_t small = 0;
  std::int64_t wide = 0;
  std::uint64_t count = 0;
  Instant when;
  UUID identifier;
  Season season = Season::spring;
  std::vector<Leaf> leaves;
  std::optional<Leaf> leaf;

  static constexpr auto fields() {
    return std::tuple{Field{"flag", &Everything::flag},     Field{"small", &Everything::small},
                      Field{"wide", &Everything::wide},     Field{"count", &Everything::count},
                      Field{"when", &Everything::when},     Field{"identifier", &Everything::identifier},
                      Field{"season", &Everything::season}, Field{"leaves", &Everything::leaves},
                      Field{"leaf", &Everything::leaf}};
  }
  bool operator==(const Everything&) const = default;
};

struct Tree {
  std::vector<Tree> children;
  static constexpr auto fields() { return std::tuple{Field{"c", &Tree::children}}; }
};

constexpr const char* notJSON = "The given data was not valid JSON.";

template <class T>
DecodingError errorOf(std::string_view text) {
  auto result = decodeJSON<T>(text);
  return result ? DecodingError{Kind::dataCorrupted, "", "no error"} : result.error();
}

TEST(JSONDecoderTest, ReadsEveryKindOfFieldInAnyOrder) {
  Everything expected{true,
                      -5,
                      std::numeric_limits<std::int64_t>::min(),
                      std::numeric_limits<std::uint64_t>::max(),
                      instantAt(1741081260),
                      UUID{UUID::Bytes{0xAB, 0xCD}},
                      Season::lateAutumn,
                      {{"b/", 1}, {"a", std::nullopt}},
                      Leaf{"", -0.5}};
  EXPECT_EQ(decodeJSON<Everything>(
                R"({"flag":true,"small":-5,"wide":-9223372036854775808,"count":18446744073709551615,)"
                R"("when":"2025-03-04T09:41:00Z","identifier":"ABCD0000-0000-0000-0000-000000000000",)"
                R"("season":"late autumn","leaves":[{"name":"b\/","value":1},{"name":"a"}],)"
                R"("leaf":{"name":"","value":-0.5}})"),
            expected);
  EXPECT_EQ(decodeJSON<Everything>(R"(
    { "leaf" : { "value" : -5e-1, "name" : "" }, "wide" : -9223372036854775808.0,
      "leaves" : [ { "value" : 1.0, "name" : "b/" }, { "value" : null, "name" : "\u0061" } ],
      "identifier" : "abcd0000-0000-0000-0000-000000000000", "season" : "late autumn", "flag" : true,
      "small" : -5, "count" : 18446744073709551615, "when" : "2025-03-04T10:41:00+01:00" }
  )"),
            expected);
}

TEST(JSONDecoderTest, ReadsVectorsAndScalarsAtTheTop) {
  EXPECT_EQ(decodeJSON<std::vector<Leaf>>("[]"), std::vector<Leaf>{});
  EXPECT_EQ(decodeJSON<std::vector<Leaf>>(R"([{"name":"a"}])"), (std::vector<Leaf>{{"a", std::nullopt}}));
  EXPECT_EQ(decodeJSON<std::vector<std::vector<int>>>("[[1,2],[],[3]]"),
            (std::vector<std::vector<int>>{{1, 2}, {}, {3}}));
  EXPECT_EQ(decodeJSON<int>(" 12 "), 12);
  EXPECT_EQ(decodeJSON<std::string>("\"x\""), "x");
  EXPECT_EQ(decodeJSON<bool>("false"), false);
  EXPECT_EQ(decodeJSON<double>("0.25"), 0.25);
}

TEST(JSONDecoderTest, IgnoresUnknownKeysWhateverTheyHold) {
  EXPECT_EQ(
      decodeJSON<Leaf>(R"({"x":{"name":"no","y":[1,[2,{"z":null}],"\ud83d\ude00"]},"name":"yes","":true})"),
      (Leaf{"yes", std::nullopt}));
}

TEST(JSONDecoderTest, LetsTheFirstOfEqualKeysWin) {
  EXPECT_EQ(decodeJSON<Leaf>(R"({"name":"first","value":1,"name":"second","value":2,"n\u0061me":"third"})"),
            (Leaf{"first", 1}));
  EXPECT_EQ(decodeJSON<Leaf>(R"({"name":"first","name":7})"), (Leaf{"first", std::nullopt}));
  EXPECT_EQ(decodeJSON<Leaf>(R"({"value":null,"name":"n","value":2})"), (Leaf{"n", std::nullopt}));
}

TEST(JSONDecoderTest, FindsKeysThatAreSpelledWithEscapes) {
  EXPECT_EQ(decodeJSON<Leaf>(R"({"\u006eam\u0065":"x"})"), (Leaf{"x", std::nullopt}));
  EXPECT_EQ(errorOf<Leaf>(R"({"\"name":"x"})").kind(), Kind::keyNotFound);
}

TEST(JSONDecoderTest, ReadsIntegersFromAnyNumberOfThatExactValue) {
  const std::pair<const char*, std::int64_t> cases[] = {
      {"12.0", 12},
      {"1e3", 1000},
      {"120e-1", 12},
      {"-0", 0},
      {"-0.0", 0},
      {"9007199254740993.0", 9007199254740993},
      {"9223372036854775807", 9223372036854775807},
      {"-92233720368547758080E-1", std::numeric_limits<std::int64_t>::min()}};
  for (const auto& [text, value] : cases) EXPECT_EQ(decodeJSON<std::int64_t>(text), value) << text;
}

TEST(JSONDecoderTest, RefusesIntegersThatTheirTypeCannotHold) {
  for (const char* text : {"12.5", "9223372036854775808", "-9223372036854775809", "1e19", "1e400", "1e-1"}) {
    EXPECT_EQ(errorOf<std::int64_t>(text),
              (DecodingError{Kind::dataCorrupted, "",
                             std::string{"Number "} + text + " is not representable in Int."}));
  }
  EXPECT_EQ(decodeJSON<std::int32_t>("-2147483648"), std::numeric_limits<std::int32_t>::min());
  EXPECT_EQ(errorOf<std::int32_t>("2147483648").debugDescription(),
            "Number 2147483648 is not representable in Int32.");
  EXPECT_EQ(errorOf<std::int32_t>("-2147483649").kind(), Kind::dataCorrupted);
  EXPECT_EQ(errorOf<std::uint64_t>("-1").debugDescription(), "Number -1 is not representable in UInt.");
  EXPECT_EQ(decodeJSON<std::uint64_t>("-0"), 0U);
}

TEST(JSONDecoderTest, ReadsDoublesToTheNearestOfAnyLength) {
  const std::pair<std::string, double> cases[] = {
      {"0", 0},
      {"12", 12},
      {"0.1", 0.1},
      {"1E-2", 0.01},
      {"123456789012345678901234567890", 1.2345678901234568e29},
      {"1" + std::string(308, '0'), 1e308},
      {"0." + std::string(400, '0') + "1e401", 1},
      {"9007199254740993", 9007199254740992},
      {"9007199254740993.000000000000000000000000000000000001", 9007199254740994},
      {"2.2250738585072011e-308", 2.2250738585072011e-308},
      {"5e-324", 5e-324},
      {"3e-324", 5e-324},
      {"1.7976931348623157e308", std::numeric_limits<double>::max()},
      {"0e999999999999", 0},
      {"0.22862320393561405648e69", 2.2862320393561406e+68},
      {"-0.0039891218425703422279e-82", -3.989121842570342e-85},
      {"0.99999999999999999999", 1},
      {"0.53004507462923587653008e161", 5.3004507462923586e+160},
      {"0." + std::string(20, '0') + "53004507462923587653008", 5.3004507462923587653e-21},
      {"0." + std::string(2000, '9'), 1},
      {"1e00000000000000000000000000001", 10},
      {"0.0e-00000000000000000000000000", 0},
      {"1234567890123456789012e-00000000000000000000000000003", 1234567890123456789.012},
  };
  for (const auto& [text, value] : cases) EXPECT_EQ(decodeJSON<double>(text), value) << text;
  EXPECT_TRUE(std::signbit(decodeJSON<double>("-0").value()));
  EXPECT_TRUE(std::signbit(decodeJSON<double>("-0.0").value()));
}

TEST(JSONDecoderTest, RefusesDoublesThatOverflowOrVanish) {
  for (const std::string& text :
       {std::string{"1e309"}, std::string{"-1e400"}, std::string{"1.8e308"}, "1" + std::string(400, '0'),
        std::string{"1e-400"}, std::string{"-2e-324"}, "0." + std::string(400, '0') + "1"}) {
    const DecodingError error = errorOf<double>(text);
    EXPECT_EQ(error.kind(), Kind::dataCorrupted) << text;
    EXPECT_THAT(error.debugDescription(), testing::EndsWith("is not representable in Double.")) << text;
  }
}

TEST(JSONDecoderTest, NamesTheTypeItWantedAndTheOneItFound) {
  const auto expectMismatch = [](const DecodingError& error, const char* text) {
    EXPECT_EQ(error, (DecodingError{Kind::typeMismatch, "", text}));
  };
  expectMismatch(errorOf<std::int64_t>("\"1\""), "Expected to decode Int but found a string instead.");
  expectMismatch(errorOf<std::int32_t>("true"), "Expected to decode Int32 but found bool instead.");
  expectMismatch(errorOf<double>("{}"), "Expected to decode Double but found a dictionary instead.");
  expectMismatch(errorOf<bool>("1"), "Expected to decode Bool but found number instead.");
  expectMismatch(errorOf<std::string>("[1]"), "Expected to decode String but found an array instead.");
  expectMismatch(errorOf<Instant>("1.5"), "Expected to decode String but found number instead.");
  expectMismatch(errorOf<UUID>("false"), "Expected to decode String but found bool instead.");
  expectMismatch(errorOf<Season>("0"), "Expected to decode String but found number instead.");
  expectMismatch(errorOf<Leaf>("[]"),
                 "Expected to decode Dictionary<String, Any> but found an array instead.");
  expectMismatch(errorOf<std::vector<int>>("{\"a\":[]}"),
                 "Expected to decode Array<Any> but found a dictionary instead.");
}

TEST(JSONDecoderTest, RefusesTextThatIsNoDateIdentifierOrKnownWord) {
  EXPECT_EQ(errorOf<Instant>("\"2025-03-04T09:41:00.5Z\""),
            (DecodingError{Kind::dataCorrupted, "", "Expected date string to be ISO8601-formatted."}));
  EXPECT_EQ(errorOf<UUID>("\"ABCD\""),
            (DecodingError{Kind::dataCorrupted, "", "Attempted to decode UUID from invalid UUID string."}));
  EXPECT_EQ(errorOf<Season>("\"Spring\""),
            (DecodingError{Kind::dataCorrupted, "", "Cannot initialize from invalid String value Spring"}));
}

TEST(JSONDecoderTest, ReportsNullAndMissingKeysForRequiredFieldsOnly) {
  EXPECT_EQ(decodeJSON<Leaf>(R"({"name":"n","value":null})"), (Leaf{"n", std::nullopt}));
  EXPECT_EQ(errorOf<Leaf>(R"({"name":null})"),
            (DecodingError{Kind::valueNotFound, "name",
                           "Cannot get value of type String -- found null value instead"}));
  EXPECT_EQ(errorOf<Leaf>(R"({"value":1})"),
            (DecodingError{
                Kind::keyNotFound, "",
                R"(No value associated with key CodingKeys(stringValue: "name", intValue: nil) ("name").)"}));
  // The first in declaration order, not in the order of names or of the document.
  EXPECT_THAT(errorOf<Everything>(R"({"leaves":[],"flag":true,"wide":1})").debugDescription(),
              testing::HasSubstr("(\"small\")"));
}

TEST(JSONDecoderTest, SaysWhereTheFaultyValueStands) {
  EXPECT_EQ(errorOf<Everything>(R"({"leaves":[{"name":"a"},{"name":"b","value":"c"}],"flag":1})").path(),
            "leaves[1].value");
  EXPECT_EQ(errorOf<Everything>(R"({"leaf":{}})").path(), "leaf");
  EXPECT_EQ(errorOf<std::vector<Leaf>>(R"([{"name":"a"},{"n\u0061me":1}])").path(), "[1].name");
  EXPECT_EQ(errorOf<std::vector<std::vector<int>>>("[[],[1,true]]").path(), "[1][1]");
}

TEST(JSONDecoderTest, RefusesWhatIsNotStrictJSONEvenWhereItIsSkipped) {
  const std::string_view broken[] = {
      "01",
      "1.",
      ".5",
      "+1",
      "-",
      "1e",
      "NaN",
      "Infinity",
      "-Infinity",
      "tru",
      "truee",
      "True",
      "nul",
      "nulll",
      "fals",
      "'a'",
      "a",
      "\"\\x\"",
      "\"\\u12\"",
      "\"\\ud83d\"",
      "\"\\ude00\"",
      "\"\\ud83d\\u0041\"",
      "\"\n\"",
      "\"\t\"",
      "\"\x01\"",
      "\"\xFF\"",
      "\"\xED\xA0\x80\"",
      "[1,]",
      "[,1]",
      "[1 2]",
      "[1",
      "]",
      "[}",
      "{]",
      "{\"a\"}",
      "{\"a\":}",
      "{\"a\":1,}",
      "{a:1}",
      "{1:1}",
      "{\"a\" 1}",
      "{,}",
      "{\"a\":1",
      "{\"\\q\":1}",
      "/**/1",
      "1//",
      "1,",
      "\"a\"\"b\"",
      "\"a\"b",
      "1\"a\"",
      "\"",
      "\"a",
      "12\0"sv,
      "\0"sv,
      "\v",
      "1\f",
      "[1]]",
      "[1],[2]",
      "{}{}",
      "[[]",
      "\\",
      "1\\",
      ":",
      "",
      "{\"a\":1:2}",
      "[1:2]",
      "\"\\",
      "\"a\":{}",
      "[\"a\":[]]",
      "[\"a\":\"b\"}]",
      "{\"a\":\"b\":{}}",
      "[1,\"a\":{}]",
      "[\"a\":1]",
      "\xC2\xA0"
      "1",
      "1\x1A",
      "[1\x0C"
      "2]",
      "{\"a\"\x1A"
      "1}",
  };
  for (const std::string_view text : broken) {
    EXPECT_EQ(errorOf<Leaf>(text).debugDescription(), notJSON) << text;
    EXPECT_EQ(errorOf<std::vector<int>>(text).debugDescription(), notJSON) << text;
    const std::string skipped = R"({"name":"n","unknown":)" + std::string{text} + "}";
    EXPECT_EQ(errorOf<Leaf>(skipped).debugDescription(), notJSON) << skipped;
    const std::string later = R"({"name":7,"value":[)" + std::string{text} + R"( ,1 1]})";
    EXPECT_EQ(errorOf<Leaf>(later).debugDescription(), notJSON) << later;
  }
}

TEST(JSONDecoderTest, AcceptsWhatIsStrictJSONWhereItIsSkipped) {
  for (const std::string_view text :
       {"0", "-0", "1e999999", "123456789012345678901234567890", "true", "null", "\"\\u0000\"",
        "\"\\ud83d\\ude00\"", "[ ]", "{ }", "[[[]]]", "\"\x7F\"", " \t\r\n1\t", "{\"\":\"\"}"}) {
    EXPECT_TRUE(decodeJSON<Leaf>(R"({"name":"n","unknown":)" + std::string{text} + "}")) << text;
  }
}

TEST(JSONDecoderTest, PutsBrokenJSONBeforeAnyOtherFault) {
  EXPECT_EQ(errorOf<Leaf>(R"({"name":1,"x":01})").debugDescription(), notJSON);
  EXPECT_EQ(errorOf<Leaf>(R"({"value":1} x)").debugDescription(), notJSON);
  EXPECT_EQ(errorOf<std::vector<int>>("[true,1.]").debugDescription(), notJSON);
  EXPECT_EQ(errorOf<std::vector<int>>("[true,1.0,null]").path(), "[0]");
}

TEST(JSONDecoderTest, AllowsFiveHundredAndTwelveNestedContainers) {
  const auto unknown = [](std::size_t depth) {
    return R"({"name":"n","u":)" + repeated("[", depth) + repeated("]", depth) + "}";
  };
  EXPECT_TRUE(decodeJSON<Leaf>(unknown(511)));
  EXPECT_EQ(errorOf<Leaf>(unknown(512)).debugDescription(), notJSON);
  EXPECT_EQ(errorOf<Leaf>(unknown(1'000'000)).debugDescription(), notJSON);
  EXPECT_EQ(errorOf<Leaf>(repeated("{\"u\":", 1'000'000)).debugDescription(), notJSON);
  const auto tree = [](std::size_t count) { return repeated("{\"c\":[", count) + repeated("]}", count); };
  EXPECT_TRUE(decodeJSON<Tree>(tree(256)));
  EXPECT_EQ(errorOf<Tree>(tree(257)).debugDescription(), notJSON);
}

TEST(JSONDecoderTest, ReadsTheOtherEncodings) {
  EXPECT_EQ(decodeJSON<std::string>("\xEF\xBB\xBF\"é\""), "é");
  EXPECT_EQ(decodeJSON<std::string>("\"\0\xE9\0\"\0"sv), "é");
  EXPECT_EQ(decodeJSON<std::string>("\xFE\xFF\0\"\0\xE9\0\""sv), "é");
  EXPECT_EQ(decodeJSON<int>("\0\0\0\x37"sv), 7);
  EXPECT_EQ(errorOf<std::string>("\"\0\x3D\xD8\"\0"sv).debugDescription(), notJSON);
  EXPECT_EQ(errorOf<int>("\xEF\xBB\xBF\xEF\xBB\xBF"
                         "1")
                .debugDescription(),
            notJSON);
}

TEST(JSONDecoderTest, GoesOnAfterAFaultAndAfterLargerAndSmallerDocuments) {
  JSONDecoder decoder;
  const std::string large = "[" + repeated("12345,", 100'000) + "1]";
  EXPECT_EQ(decoder.decode<std::vector<int>>(large)->size(), 100'001U);
  EXPECT_FALSE(decoder.decode<std::vector<int>>("[1,"));
  EXPECT_FALSE(decoder.decode<std::vector<int>>("[true]"));
  EXPECT_EQ(decoder.decode<std::vector<int>>("[1]"), std::vector<int>{1});
  EXPECT_EQ(decoder.decode<std::vector<int>>(large)->back(), 1);
}

TEST(JSONDecoderTest, NeverReadsPastAPrefixOfADocument) {
  const std::string whole = R"([{"name":"a\u00e9\ud83d\ude00\n","value":-12.5e-1,"u":[true,false,null,{}]}])";
  JSONDecoder decoder;
  for (std::size_t length = 0; length < whole.size(); ++length) {
    const std::vector<char> exact(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(length));
    EXPECT_FALSE(decoder.decode<std::vector<Leaf>>({exact.data(), exact.size()})) << length;
  }
  EXPECT_TRUE(decoder.decode<std::vector<Leaf>>(whole));
}

}  // namespace
}  // namespace quellin
