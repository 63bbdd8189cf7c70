#include <stdexcept>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "quellin/Presentation/ReportPage.h"

namespace quellin::cli {
namespace {

std::string written(std::string_view page, std::string_view title, std::string_view data) {
  std::string result;
  writeReportPage(page, title, data, [&](std::string_view text) { result += text; });
  return result;
}

TEST(ReportPageTest, TitleAndDataStandInTheirPlaces) {
  EXPECT_EQ(written("<title>{{TITLE}}</title><p>{{DATA}}</p>", "A day", "[1]"),
            "<title>A day</title><p>[1]</p>");
}

TEST(ReportPageTest, ATitleThatNamesAPlaceIsStillATitle) {
  EXPECT_EQ(written("{{TITLE}}|{{DATA}}", "{{DATA}}", "\"{{TITLE}}\""), "{{DATA}}|\"{{TITLE}}\"");
}

TEST(ReportPageTest, ATitleCannotBecomeMarkup) {
  EXPECT_EQ(escapedForHTML("</title><script>\"a\" & 'b'"),
            "&lt;/title&gt;&lt;script&gt;&quot;a&quot; &amp; &#39;b&#39;");
  EXPECT_EQ(escapedForHTML("\x01\n\x7f\xc3\xa9"), "\xc3\xa9") << "control characters go, letters stay";
}

TEST(ReportPageTest, DataCannotEndTheirElement) {
  EXPECT_EQ(escapedForScript(R"({"name":"<\/script><!--&"})"),
            R"({"name":"\u003c\/script\u003e\u003c!--\u0026"})");
}

TEST(ReportPageTest, DataHaveNoLineSeparators) {
  EXPECT_EQ(escapedForScript("a\xe2\x80\xa8"
                             "b\xe2\x80\xa9"),
            "a\\u2028b\\u2029");
  EXPECT_EQ(escapedForScript("\xe2\x80\xa6\xe2\x82\xac\xe2"), "\xe2\x80\xa6\xe2\x82\xac\xe2")
      << "others stay";
}

TEST(ReportPageTest, APageWithoutItsPlacesIsAnError) {
  EXPECT_THROW(static_cast<void>(written("<title>{{TITLE}}</title>", "A day", "[1]")), std::logic_error);
}

TEST(ReportPageTest, ThisBuildHasAPageWithItsPlaces) {
  const auto page = builtReportPage();
  ASSERT_TRUE(page) << page.error();
  EXPECT_THAT(written(*page, "A <title>", "{}"), testing::HasSubstr("<title>A &lt;title&gt;</title>"));
}

}  // namespace
}  // namespace quellin::cli
