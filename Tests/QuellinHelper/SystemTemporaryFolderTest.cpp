#include <gmock/gmock.h>

#include "QuellinHelper/SystemTemporaryFolder.h"
#include "Support/EnvironmentVariable.h"

namespace quellin {
namespace {

using testing_support::EnvironmentVariable;

TEST(SystemTemporaryFolderTest, DoesNotAskTheEnvironment) {
  const EnvironmentVariable hostile{"TMPDIR", "/attacker"};
#if defined(__APPLE__)
  EXPECT_THAT(systemTemporaryFolder(), testing::StartsWith("/var/folders/"));
#else
  EXPECT_EQ(systemTemporaryFolder(), "/tmp");
#endif
}

}  // namespace
}  // namespace quellin
