#include "quellin/EndToEnd/FrontEnd.h"

#include <sstream>
#include <unistd.h>
#include <utility>

#include "Support/Replay.h"

namespace quellin::testing_support {

FrontEnd::FrontEnd(std::string folder) : folder_(std::move(folder)) {}

ProgramStart FrontEnd::start(const Words& arguments, const Words& environment) const {
  ProgramStart start{.executable = QUELLIN_EXECUTABLE, .arguments = {"quellin"}};
  start.arguments.insert(start.arguments.end(), arguments.begin(), arguments.end());
  start.environment = environment;
  start.environment.push_back("HOME=" + home_.path().string());
  start.environment.emplace_back("PATH=/usr/bin:/bin");
  start.prepare = [this] { require(chdir(folder_.c_str()) == 0, "chdir"); };
  return start;
}

ProgramResult FrontEnd::run(const Words& arguments, const Words& environment) const {
  return runProgram(start(arguments, environment));
}

std::string FrontEnd::damagedTrace(int goodLines) const {
  std::istringstream whole{contentOf(exampleTrace())};
  std::string damaged;
  std::string line;
  for (int count = 0; count < goodLines && std::getline(whole, line); ++count) damaged += line + "\n";
  return home_.write("damaged", damaged + "{\n" + line + "\n");
}

}  // namespace quellin::testing_support
