#include <cmath>

#include <gtest/gtest.h>

#include "PropertyListText.h"
#include "QuellinHelper/PropertyLists/XMLPropertyList.h"
#include "Support/Bytes.h"

namespace quellin {
namespace {

using namespace std::string_literals;
using testing_support::repeated;

std::string read(const std::string& xml) { return described(parseXMLPropertyList(xml)); }
std::string readValue(const std::string& element) {
  return read("<plist version=\"1.0\">" + element + "</plist>");
}

bool fails(const std::string& xml) { return !parseXMLPropertyList(xml).has_value(); }

const std::string prolog =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
    "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
    "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n";

TEST(XMLPropertyListTest, ReadsEveryKindInDocumentOrder) {
  EXPECT_EQ(
      read(prolog + R"(<plist version="1.0">
<dict>
  <key>zebra</key><true/> <key>ape</key><false/>
  <!-- a remark --> <?and instructions?>
  <key>list</key><array><integer>-1</integer><real>0.5</real><string>text</string><array/><dict/></array>
  <key>date</key><date>2001-01-01T00:00:01Z</date>
  <key>data</key><data>
    aGk=
  </data>
  <key/><string/>
</dict>
</plist>
)"),
      R"({zebra: true, ape: false, list: [-1, r0.5, "text", [], {}], date: @978307201, data: <hi>, : ""})");
}

TEST(XMLPropertyListTest, TakesARootWithoutTheWrapperAndAByteOrderMark) {
  EXPECT_EQ(read("<array/>"), "[]");
  EXPECT_EQ(read("<string>bare</string>"), "\"bare\"");
  EXPECT_EQ(read("\xEF\xBB\xBF" + prolog + "<plist><dict/></plist>"), "{}");
}

TEST(XMLPropertyListTest, ReadsTextWithEntitiesReferencesAndCharacterData) {
  EXPECT_EQ(readValue("<string> &lt;&gt;&amp;&quot;&apos; &#65;&#x20AC; </string>"), "\" <>&\"' A€ \"");
  EXPECT_EQ(readValue("<string>a<![CDATA[<b>&]]>c<!-- no -->d</string>"), "\"a<b>&cd\"");
  EXPECT_EQ(readValue("<dict><key>a&amp;b</key><true/></dict>"), "{a&b: true}");
}

TEST(XMLPropertyListTest, ReadsTextThatSpansTheParsersPieces) {
  const std::string longText = repeated("0123456789 é\n", 40'000);
  EXPECT_EQ(readValue("<string>" + longText + "</string>"), "\"" + longText + "\"");
}

TEST(XMLPropertyListTest, ReadsIntegers) {
  const std::pair<const char*, const char*> rows[] = {{"0", "0"},
                                                      {"  +42", "42"},
                                                      {"\n-7", "-7"},
                                                      {"007", "7"},
                                                      {"0x1F", "31"},
                                                      {"-0Xff", "-255"},
                                                      {"9223372036854775807", "9223372036854775807"},
                                                      {"-9223372036854775808", "-9223372036854775808"},
                                                      {"9223372036854775808", "large9223372036854775808"},
                                                      {"18446744073709551615", "large18446744073709551615"},
                                                      {"0xFFFFFFFFFFFFFFFF", "large18446744073709551615"}};
  for (const auto& [text, expected] : rows) {
    EXPECT_EQ(readValue("<integer>"s + text + "</integer>"), expected) << text;
  }
}

TEST(XMLPropertyListTest, RefusesMalformedIntegers) {
  for (const char* text :
       {"", " ", "-", "+-1", "12abc", "1.0", "1e3", "0x", "0xG", "1 ", "1 2", "18446744073709551616",
        "-9223372036854775809", "99999999999999999999999", "--1", "- 1"}) {
    EXPECT_TRUE(fails("<integer>"s + text + "</integer>")) << text;
  }
}

TEST(XMLPropertyListTest, ReadsReals) {
  const std::pair<const char*, const char*> rows[] = {{"0.5", "r0.5"},        {"1.02287e+09", "r1022870000"},
                                                      {" -3", "r-3"},         {"INF", "rinf"},
                                                      {"-infinity", "r-inf"}, {"+inf", "rinf"},
                                                      {"1e-7", "r1e-07"},     {"NaN", "rnan"}};
  for (const auto& [text, expected] : rows)
    EXPECT_EQ(readValue("<real>"s + text + "</real>"), expected) << text;
}

TEST(XMLPropertyListTest, RefusesMalformedReals) {
  for (const char* text : {"", " ", "abc", "1.5x", "1.5 ", "0x10", "infinite", "in", "+nan", "1,5"}) {
    EXPECT_TRUE(fails("<real>"s + text + "</real>")) << text;
  }
}

TEST(XMLPropertyListTest, ReadsDates) {
  const std::pair<const char*, const char*> rows[] = {{"1970-01-01T00:00:00Z", "@0"},
                                                      {"2025-03-01T09:30:12Z", "@1740821412"},
                                                      {"2000-02-29T23:59:59Z", "@951868799"},
                                                      {"1969-12-31T23:59:59Z", "@-1"},
                                                      {"0000-01-01T00:00:00Z", "@-62167219200"},
                                                      {"-0001-01-01T00:00:00Z", "@-62198755200"}};
  for (const auto& [text, expected] : rows)
    EXPECT_EQ(readValue("<date>"s + text + "</date>"), expected) << text;
}

TEST(XMLPropertyListTest, RefusesMalformedDates) {
  for (const char* text :
       {"", "2025-03-01", "2025-03-01T09:30:12", "2025-03-01T09:30:12.5Z", "2025-03-01T09:30:12+01:00",
        " 2025-03-01T09:30:12Z", "2025-03-01T09:30:12Z ", "2025-3-01T09:30:12Z", "2025-13-01T09:30:12Z",
        "2025-02-29T09:30:12Z", "2025-00-01T09:30:12Z", "2025-03-01T24:00:00Z", "2025-03-01T00:60:00Z",
        "2025-03-01T00:00:60Z", "-03-01T00:00:00Z", "2025-03-01 00:00:00Z", "99999-01-01T00:00:00Z",
        "99999999999-01-01T00:00:00Z", "2025-03-001T00:00:00Z"}) {
    EXPECT_TRUE(fails("<date>"s + text + "</date>")) << text;
  }
}

TEST(XMLPropertyListTest, ReadsData) {
  EXPECT_EQ(readValue("<data>aGVsbG8=</data>"), "<hello>");
  EXPECT_EQ(readValue("<data>\n\ta G V\r\nsbA==\n</data>"), "<hell>");
  EXPECT_EQ(readValue("<data>/+9h</data>"), "<\xFF\xEF\x61>");
}

TEST(XMLPropertyListTest, RefusesMalformedData) {
  for (const char* text :
       {"", "  ", "a", "aG", "aGk", "aGk=x", "a===", "====", "aGk=aGk=", "aG-k", "aG==k", "aGk==", "aG==="}) {
    EXPECT_TRUE(fails("<data>"s + text + "</data>")) << text;
  }
}

TEST(XMLPropertyListTest, RefusesWhatIsNoPropertyList) {
  for (const char* text : {"",
                           " \n",
                           "word",
                           "{a = 1;}",
                           "<plist/>",
                           "<plist></plist>",
                           "<plist><dict/>",
                           "<plist><dict/></plist>x",
                           "<dict/><dict/>",
                           "<plist><dict/><dict/></plist>",
                           "<plist><plist><dict/></plist></plist>",
                           "<dict><plist><true/></plist></dict>",
                           "<dict><key>a</key></dict>",
                           "<dict><true/></dict>",
                           "<dict><string>a</string><true/></dict>",
                           "<dict><key>a</key><key>b</key><true/></dict>",
                           "<key>a</key>",
                           "<array><key>a</key></array>",
                           "<array>text</array>",
                           "<dict>text</dict>",
                           "<plist>text<dict/></plist>",
                           "<true>x</true>",
                           "<true><false/></true>",
                           "<string><integer>1</integer></string>",
                           "<html/>",
                           "<DICT/>",
                           "<dict><key>a</dict></key>",
                           "<string>&unknown;</string>",
                           "<string>\x01</string>",
                           "<string>\xFF</string>",
                           "<string>\xC0\xAF</string>",
                           "<string>&#0;</string>",
                           "<string>&#xD800;</string>",
                           "<?xml version=\"1.0\" encoding=\"no-such-encoding\"?><dict/>"}) {
    EXPECT_TRUE(fails(text)) << text;
  }
}

TEST(XMLPropertyListTest, ADocumentCutAnywhereIsRefused) {
  const std::string whole =
      prolog + "<plist version=\"1.0\"><dict><key>a</key><array><integer>1</integer></array></dict></plist>";
  ASSERT_EQ(read(whole), "{a: [1]}");
  for (std::size_t length = 0; length < whole.size(); ++length)
    EXPECT_TRUE(fails(whole.substr(0, length))) << length;
}

TEST(XMLPropertyListTest, ARepeatedKeyKeepsItsFirstPositionAndItsLastValue) {
  EXPECT_EQ(read("<dict><key>a</key><true/><key>b</key><true/><key>a</key><false/></dict>"),
            "{a: false, b: true}");
}

TEST(XMLPropertyListTest, AnIdentifierStaysADictionary) {
  EXPECT_EQ(read("<dict><key>CF$UID</key><integer>3</integer></dict>"), "{CF$UID: 3}");
}

TEST(XMLPropertyListTest, NestsAsDeepAsTheLimitAndNoDeeper) {
  const auto nested = [](std::size_t depth) {
    return repeated("<array>", depth) + repeated("</array>", depth);
  };
  EXPECT_EQ(read(nested(512)), repeated("[", 512) + repeated("]", 512));
  EXPECT_EQ(read(nested(513)), "error: too many nested arrays or dictionaries");
  EXPECT_EQ(read(nested(1'000'000)), "error: too many nested arrays or dictionaries");
}

TEST(XMLPropertyListTest, DeclaredEntitiesAreRefusedBeforeTheyCanGrow) {
  std::string document = "<!DOCTYPE plist [<!ENTITY a0 \"ha\">";
  for (int level = 1; level < 30; ++level) {
    const std::string below = "&a" + std::to_string(level - 1) + ";";
    document.append("<!ENTITY a")
        .append(std::to_string(level))
        .append(" \"")
        .append(below)
        .append(below)
        .append("\">");
  }
  EXPECT_EQ(read(document + "]><string>&a29;</string>"), "error: entity declaration");
  EXPECT_EQ(read(document + "]><plist version=\"&a29;\"><true/></plist>"), "error: entity declaration");
}

TEST(XMLPropertyListTest, ExternalEntitiesAreNeverLoaded) {
  EXPECT_EQ(read("<!DOCTYPE plist [<!ENTITY x SYSTEM \"file:///etc/passwd\">]><string>&x;</string>"),
            "error: entity declaration");
  EXPECT_EQ(read("<!DOCTYPE plist [<!ENTITY % x SYSTEM \"file:///etc/passwd\"> %x;]><string/>"),
            "error: entity declaration");
  EXPECT_EQ(read("<!DOCTYPE plist SYSTEM \"file:///etc/passwd\"><string>&x;</string>"),
            "error: unknown entity");
  EXPECT_EQ(read("<!DOCTYPE plist SYSTEM \"file:///etc/passwd\"><string>kept</string>"), "\"kept\"");
}

TEST(XMLPropertyListTest, SaysWhereAndWhy) {
  const auto result = parseXMLPropertyList("<array><integer>x</integer></array>");
  ASSERT_FALSE(result);
  EXPECT_EQ(result.error().reason, "malformed number or date");
  EXPECT_EQ(result.error().offset, 17U);
}

TEST(XMLPropertyListTest, TheTreeOutlivesItsInput) {
  auto xml = std::make_unique<std::string>("<dict><key>key</key><string>value</string></dict>");
  const auto list = parseXMLPropertyList(*xml);
  xml.reset();
  ASSERT_TRUE(list);
  EXPECT_EQ(described(list->root()), "{key: \"value\"}");
}

}  // namespace
}  // namespace quellin
