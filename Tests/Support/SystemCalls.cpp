#include "Support/SystemCalls.h"

#include <cerrno>
#include <system_error>
#include <unistd.h>

namespace quellin::testing_support {
namespace {

constexpr int executionFailed = 126;

std::vector<char*> pointersTo(std::vector<std::string>& texts) {
  std::vector<char*> result;
  result.reserve(texts.size() + 1);
  for (std::string& text : texts) result.push_back(text.data());
  result.push_back(nullptr);
  return result;
}

}  // namespace

void throwUnless(bool succeeded, const char* step) {
  if (!succeeded) throw std::system_error(errno, std::generic_category(), step);
}

void becomeProgram(const std::string& executable, std::vector<std::string> arguments,
                   std::vector<std::string> environment) {
  execve(executable.c_str(), pointersTo(arguments).data(), pointersTo(environment).data());
  _exit(executionFailed);
}

}  // namespace quellin::testing_support
