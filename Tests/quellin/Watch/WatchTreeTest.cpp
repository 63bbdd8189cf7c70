#include <gtest/gtest.h>

#include "Support/TerminalProgram.h"
#include "Support/TreeArchive.h"

namespace quellin::testing_support {
namespace {

// The live view of a tree of kernel files, which stands still.
TEST(WatchTreeTest, ShowsAnotherMachinesKernelFiles) {
  const UnpackedTree tree = UnpackedTree::fixture("linux/laptop-charge.tree");
  const TemporaryFolder home;
  TerminalProgram program{
      {.executable = QUELLIN_EXECUTABLE,
       .arguments = {"watch", "--source", tree.path("."), "--interval", "50ms"},
       .environment = {"TERM=xterm-256color", "LC_ALL=C.UTF-8", "HOME=" + home.path().string()}}};
  EXPECT_TRUE(program.waitFor("Battery draw")) << program.screen().text();
  EXPECT_TRUE(program.waitFor("62 %")) << program.screen().text();
  EXPECT_TRUE(program.waitFor("2 h 29 min")) << program.screen().text();
  EXPECT_TRUE(program.waitFor("-14.81 W")) << program.screen().text();
  program.type("q");
  EXPECT_EQ(program.finish(), (TerminalEnd{.exitStatus = 0, .signal = 0, .isAsBefore = true}));
}

}  // namespace
}  // namespace quellin::testing_support
