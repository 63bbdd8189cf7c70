#include <filesystem>
#include <sys/stat.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "quellin/EndToEnd/FrontEnd.h"
#include "quellin/EndToEnd/Transcript.h"
#include "quellin/Support/Golden.h"

namespace quellin::cli {
namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;
using testing_support::contentOf;
using testing_support::FrontEnd;
using testing_support::macbook;

class ReportTest : public testing::Test {
 protected:
  void record(const std::string& title) const {
    const auto recorded =
        frontEnd.run({"record", "--source", std::string(QUELLIN_PROJECT) + "/" + macbook, "--title", title});
    ASSERT_EQ(recorded.exitStatus, 0) << recorded.error;
  }

  testing_support::TemporaryFolder folder;
  FrontEnd frontEnd{folder.path().string()};
};

// What is embedded in a page, each key in a line of its own.
std::string embeddedData(const std::string& page) {
  const std::string opening = "<script id=\"data\" type=\"application/json\">";
  const std::size_t start = page.find(opening) + opening.size();
  std::string data = page.substr(start, page.find("</script>", start) - start);
  for (std::size_t place = 0; (place = data.find(",\"", place)) != std::string::npos; place += 2) {
    data.insert(place + 1, "\n");
  }
  return data + "\n";
}

class ReportGoldenTest : public ReportTest {};

TEST_F(ReportGoldenTest, EmbedsTheSession) {
  record("Its beginning");
  const auto run = frontEnd.run({"report", "last", "-o", "session.html"});
  ASSERT_EQ(run.exitStatus, 0) << run.error;
  const std::string page = contentOf(folder.path() / "session.html");
  EXPECT_THAT(page, StartsWith("<!doctype html>"));
  EXPECT_THAT(page, HasSubstr("<title>Its beginning</title>"));
  EXPECT_THAT(page, HasSubstr("Permission is hereby granted")) << "the notice of what it is bundled with";
  testing_support::expectGolden(QUELLIN_GOLDENS "/report.json",
                                testing_support::masked(embeddedData(page), folder.path().string()));
}

TEST_F(ReportTest, HasANameOfItsOwnUnlessItIsGivenOne) {
  record("A day");
  const auto run = frontEnd.run({"report", "last"});
  ASSERT_EQ(run.exitStatus, 0) << run.error;
  const std::string identifier = run.error.substr(run.error.find("session ") + 8, 8);
  EXPECT_THAT(run.error, HasSubstr(" to quellin-" + identifier + ".html"));
  EXPECT_THAT(contentOf(folder.path() / ("quellin-" + identifier + ".html")), EndsWith("</html>\n"));
}

TEST_F(ReportTest, IsForItsOwnerAndReplacesNothingUnasked) {
  record("A day");
  ASSERT_EQ(frontEnd.run({"report", "last", "-o", "day.html"}).exitStatus, 0);
  struct stat status{};
  ASSERT_EQ(stat((folder.path() / "day.html").c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777U, 0600U);
  const auto again = frontEnd.run({"report", "last", "-o", "day.html"});
  EXPECT_EQ(again.exitStatus, 1);
  EXPECT_THAT(again.error, HasSubstr("day.html is there already"));
  EXPECT_EQ(frontEnd.run({"report", "last", "-o", "day.html", "--force"}).exitStatus, 0);
}

TEST_F(ReportTest, NeedsASession) {
  const auto run = frontEnd.run({"report", "last"});
  EXPECT_EQ(run.exitStatus, 4);
  EXPECT_TRUE(std::filesystem::is_empty(folder.path())) << "nothing is left behind";
}

}  // namespace
}  // namespace quellin::cli
