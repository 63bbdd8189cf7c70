#include <cstdlib>
#include <string>
#include <vector>

#include <gmock/gmock.h>

#include "QuellinCore/Support/OwnEnvironment.h"

namespace quellin {
namespace {

std::vector<std::string> variables() {
  std::vector<std::string> result;
  for (char** entry = ownEnvironment(); entry != nullptr && *entry != nullptr; ++entry)
    result.emplace_back(*entry);
  return result;
}

TEST(OwnEnvironmentTest, HoldsWhatIsSetAndNothingElse) {
  ASSERT_EQ(setenv("QUELLIN_OWN", "a=b", 1), 0);
  EXPECT_THAT(variables(), testing::Contains("QUELLIN_OWN=a=b"));
  ASSERT_EQ(unsetenv("QUELLIN_OWN"), 0);
  EXPECT_THAT(variables(), testing::Not(testing::Contains("QUELLIN_OWN=a=b")));
}

}  // namespace
}  // namespace quellin
