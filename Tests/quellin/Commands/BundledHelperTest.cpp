#include <filesystem>

#include <gmock/gmock.h>

#include "Support/TemporaryFolder.h"
#include "quellin/Commands/BundledHelper.h"
#include "quellin/Outcome/Failure.h"

namespace quellin::cli {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;
using testing::Property;
using testing::Throws;
using testing_support::TemporaryFolder;

struct BundledHelperTest : testing::Test {
  BundledHelperTest() {
    fs::create_directories(folder.pathOf("bin"));
    fs::create_directories(folder.pathOf("libexec/quellin"));
  }

  TemporaryFolder folder;
  fs::path program = folder.pathOf("bin/quellin");
  std::string beside = folder.pathOf("bin/QuellinHelper");
  std::string installed = folder.pathOf("libexec/quellin/QuellinHelper");
};

TEST_F(BundledHelperTest, LiesWhereBothAreInstalledElseBesideTheProgram) {
  folder.write("bin/QuellinHelper", "built");
  EXPECT_EQ(bundledHelper(program), beside);
  folder.write("libexec/quellin/QuellinHelper", "installed");
  EXPECT_EQ(bundledHelper(program), installed);
}

TEST_F(BundledHelperTest, IsAFailureThatNamesThePlaceWhereThereIsNone) {
  EXPECT_THAT([&] { (void)bundledHelper(program); },
              Throws<Failure>(Property(&Failure::what, HasSubstr(beside + " is not there."))));
}

TEST_F(BundledHelperTest, IsNotLookedForInTheFolderOfTheCallerWhereTheProgramIsUnknown) {
  folder.write("bin/QuellinHelper", "hostile");
  const fs::path before = fs::current_path();
  fs::current_path(folder.pathOf("bin"));
  EXPECT_THAT([] { (void)bundledHelper(std::nullopt); },
              Throws<Failure>(Property(&Failure::what, HasSubstr("does not say where this program lies"))));
  fs::current_path(before);
}

TEST(InstallationPromptTest, RootIsAskedForNothingWhereThePromptNeedsPolicyKit) {
  const AdministratorPrompt native = AdministratorPrompt::native();
  const bool isPolicyKit = native.kind == AdministratorPrompt::Kind::policyKit;
  EXPECT_EQ(installationPrompt(501).executable, native.executable);
  EXPECT_EQ(installationPrompt(0).executable, isPolicyKit ? "/usr/bin/env" : native.executable);
  EXPECT_EQ(installationPrompt(0).kind, native.kind);
}

}  // namespace
}  // namespace quellin::cli
