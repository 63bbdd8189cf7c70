#include <gmock/gmock.h>

#include "quellin/CommandLine/Hint.h"

namespace quellin::cli {
namespace {

TEST(HintTest, NamesTheStoreThatTheUserNamed) {
  Options options;
  EXPECT_EQ(hintAt("stop", options), "'quellin stop'");
  options.store = "/tmp/a-b.store";
  EXPECT_EQ(hintAt("show last", options), "'quellin show last --store /tmp/a-b.store'");
}

TEST(HintTest, TheStoreIsNoWordOfAnotherCommand) {
  Options options;
  EXPECT_EQ(hintAt("run -- COMMAND", options), "'quellin run -- COMMAND'");
  options.store = "a.store";
  EXPECT_EQ(hintAt("run --repeat 5 -- COMMAND", options),
            "'quellin run --repeat 5 --store a.store -- COMMAND'");
  EXPECT_EQ(hintAt("show 'a -- b'", options), "'quellin show 'a -- b' --store a.store'");
}

TEST(HintTest, AnOddNameIsOneWordForTheShell) {
  Options options;
  options.store = "my $store";
  EXPECT_EQ(hintAt("stop", options), "'quellin stop --store 'my $store''");
}

TEST(HintTest, OfTheDoctorNamesTheSourceThatTheUserNamed) {
  Options options;
  options.store = "a.store";
  EXPECT_EQ(hintAtDoctor(options), "'quellin doctor'");
  options.source = "day.trace";
  EXPECT_EQ(hintAtDoctor(options), "'quellin doctor --source day.trace'");
  options.source = "my $day";
  EXPECT_EQ(hintAtDoctor(options), "'quellin doctor --source 'my $day''");
}

}  // namespace
}  // namespace quellin::cli
