#include <fstream>
#include <sstream>
#include <string>

#include <gmock/gmock.h>

#include "quellin/EndToEnd/FrontEnd.h"

namespace quellin::cli {
namespace {

using testing_support::FrontEnd;
using testing_support::macbook;
using testing_support::RunningProgram;

// How many kilobytes of the files whose name holds `name` a process has in memory; -1 when it maps none.
long residentKilobytes(pid_t process, const std::string& name) {
  std::ifstream mappings{"/proc/" + std::to_string(process) + "/smaps"};
  long sum = -1;
  bool isNamed = false;
  for (std::string line; std::getline(mappings, line);) {
    if (line.find(" kB") == std::string::npos && line.find('-') != std::string::npos) {
      isNamed = line.find(name) != std::string::npos;
      if (isNamed && sum < 0) sum = 0;
    }
    if (isNamed && line.starts_with("Rss:")) sum += std::stol(line.substr(4));
  }
  return sum;
}

TEST(MemoryTest, ARecordingDoesWithoutTheDataOfAllLocales) {
  const FrontEnd frontEnd;
  RunningProgram recorder{frontEnd.start({"record", "--source", macbook, "--speed", "50"})};
  ASSERT_TRUE(recorder.waitFor("recording session"));
  ASSERT_TRUE(recorder.waitFor("Power Session "));
  const long resident = residentKilobytes(recorder.processID(), "libicudata");
  EXPECT_GE(resident, 0) << "the library of the locales is not there at all";
  EXPECT_LT(resident, 500);
}

}  // namespace
}  // namespace quellin::cli
