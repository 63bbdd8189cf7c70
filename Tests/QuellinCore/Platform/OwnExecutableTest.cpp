#include <filesystem>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "QuellinCore/Platform/OwnExecutable.h"

namespace quellin {
namespace {

TEST(OwnExecutableTest, IsTheFileOfTheRunningProgramHoweverItWasCalled) {
  const auto path = ownExecutablePath();
  ASSERT_TRUE(path);
  EXPECT_TRUE(path->is_absolute());
  EXPECT_EQ(*path, std::filesystem::canonical(*path));
  EXPECT_THAT(path->filename().string(), testing::EndsWith("Tests"));
}

}  // namespace
}  // namespace quellin
