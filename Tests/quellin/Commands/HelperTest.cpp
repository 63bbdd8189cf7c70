#include <string>
#include <sys/stat.h>

#include <gmock/gmock.h>

#include "QuellinCore/Support/FileDescriptor.h"
#include "Support/TemporaryFolder.h"
#include "quellin/CommandLine/Command.h"

namespace quellin::cli {
namespace {

using testing::HasSubstr;
using testing_support::TemporaryFolder;

/// What `quellin helper status` tells of a tool at a place of the test.
struct HelperTest : testing::Test {
  TemporaryFolder folder;
  std::string path = folder.pathOf("tool");
  Pipe outPipe = std::move(*Pipe::open());
  Pipe talkPipe = std::move(*Pipe::open());

  ExitStatus status(bool asJSON) {
    const ProTelemetryService tool{path};
    Options options;
    options.word = "status";
    options.json = asJSON;
    Output out{outPipe.writeEnd.get()};
    const Talk talk{talkPipe.writeEnd.get()};
    const ExitStatus result = helper(
        {.options = options, .out = out, .talk = talk, .outTerminal = {}, .talkTerminal = {}, .tool = tool});
    out.flush();
    return result;
  }

  static std::string textOf(Pipe& pipe) {
    pipe.writeEnd.reset();
    return readToEnd(pipe.readEnd.get());
  }

  // A tool that answers as the real one, and has its owner and mode where root runs the test.
  void install() {
    path = folder.writeScript("tool", R"(echo '{"isInstalled":true,"isExecutable":true,"isSetuidRoot":true,)"
                                      R"("ownerUserID":0,"groupID":0,"installedVersion":"0.9.4",)"
                                      R"("supportsProTelemetry":true,"path":"tool"}')");
    ASSERT_EQ(chmod(path.c_str(), 04755), 0);
  }
};

using HelperNeedsRootTest = HelperTest;

TEST_F(HelperTest, AToolThatIsNotInstalledIsANegativeAnswer) {
  EXPECT_EQ(status(true), ExitStatus::negative);
  EXPECT_THAT(textOf(outPipe), HasSubstr("\"isInstalled\" : false"));
  EXPECT_EQ(textOf(talkPipe), "");
}

TEST_F(HelperTest, TheTextSaysWhereToolIsLookedFor) {
  EXPECT_EQ(status(false), ExitStatus::negative);
  EXPECT_THAT(textOf(outPipe), HasSubstr(path));
  EXPECT_EQ(textOf(talkPipe), "");
}

TEST_F(HelperNeedsRootTest, AUsableToolIsAPositiveAnswer) {
  install();
  EXPECT_EQ(status(true), ExitStatus::ok);
  EXPECT_THAT(textOf(outPipe), HasSubstr("\"isInstalled\" : true"));
  EXPECT_EQ(textOf(talkPipe), "");
}

}  // namespace
}  // namespace quellin::cli
