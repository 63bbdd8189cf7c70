#include <pwd.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "QuellinCore/Support/HomeFolder.h"
#include "Support/EnvironmentVariable.h"

namespace quellin {
namespace {

using testing_support::EnvironmentVariable;

// NOLINTNEXTLINE(concurrency-mt-unsafe)
std::filesystem::path homeInUserDatabase() { return getpwuid(getuid())->pw_dir; }

TEST(HomeFolderTest, IsWhatTheEnvironmentSays) {
  const EnvironmentVariable home{"HOME", "/some/where"};
  EXPECT_EQ(homeFolder(), "/some/where");
}

TEST(HomeFolderTest, IsThatOfTheUserDatabaseWhereTheEnvironmentNamesNoAbsolutePath) {
  for (const char* value : {"", "relative", static_cast<const char*>(nullptr)}) {
    const EnvironmentVariable home{"HOME", value};
    EXPECT_EQ(homeFolder(), homeInUserDatabase());
  }
}

}  // namespace
}  // namespace quellin
