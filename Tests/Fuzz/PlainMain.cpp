// Runs a harness once for each file below the folders and files it is given; for builds without libFuzzer.

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <string>

#include "Support/TemporaryFolder.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

void run(const std::filesystem::path& path) {
  const std::string input = quellin::testing_support::contentOf(path);
  LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(input.data()), input.size());
}

}  // namespace

int main(int count, char** arguments) {
  std::size_t inputs = 0;
  for (int index = 1; index < count; ++index) {
    for (const auto& entry : std::filesystem::recursive_directory_iterator(arguments[index])) {
      if (!entry.is_regular_file()) continue;
      run(entry.path());
      ++inputs;
    }
  }
  std::printf("%zu inputs\n", inputs);
  return inputs == 0 ? 1 : 0;
}
