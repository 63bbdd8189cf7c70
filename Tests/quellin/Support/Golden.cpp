#include "quellin/Support/Golden.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>

#include <gtest/gtest.h>

#include "Support/TemporaryFolder.h"

namespace quellin::testing_support {

void expectGolden(const std::string& path, const std::string& present) {
  if (std::getenv("QUELLIN_UPDATE_GOLDENS") != nullptr) {  // NOLINT(concurrency-mt-unsafe): nobody sets any
    std::filesystem::create_directories(std::filesystem::path{path}.parent_path());
    std::ofstream{path, std::ios::binary} << present;
    return;
  }
  ASSERT_TRUE(std::filesystem::exists(path)) << path << " is not there; ./dev goldens writes it";
  EXPECT_EQ(present, contentOf(path)) << "if this is meant, run ./dev goldens and read the diff of " << path;
}

}  // namespace quellin::testing_support
