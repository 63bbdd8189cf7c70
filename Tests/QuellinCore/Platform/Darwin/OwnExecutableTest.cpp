#include <filesystem>

#include "FakeDarwin/DarwinTest.h"
#include "QuellinCore/Platform/OwnExecutable.h"
#include "Support/TemporaryFolder.h"

namespace quellin {
namespace {

using testing_support::TemporaryFolder;

struct OwnExecutableTest : fake::DarwinTest {
  TemporaryFolder folder;
  std::string program = folder.write("program", "x");
};

TEST_F(OwnExecutableTest, IsWhatTheLoaderWasGivenWithoutLinks) {
  system.loader.executable = folder.pathOf("link");
  std::filesystem::create_symlink("./program", system.loader.executable);
  EXPECT_EQ(ownExecutablePath(), std::filesystem::canonical(program));
}

TEST_F(OwnExecutableTest, IsAbsentWhereTheLoaderDoesNotSay) {
  system.loader.executable = program;
  system.calls.fail("_NSGetExecutablePath");
  EXPECT_EQ(ownExecutablePath(), std::nullopt);
}

TEST_F(OwnExecutableTest, IsAbsentWhereTheFileHasGone) {
  system.loader.executable = folder.pathOf("gone");
  EXPECT_EQ(ownExecutablePath(), std::nullopt);
}

}  // namespace
}  // namespace quellin
