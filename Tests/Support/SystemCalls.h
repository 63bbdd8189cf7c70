#pragma once

#include <string>
#include <vector>

namespace quellin::testing_support {

/// Throws std::system_error with what errno says when a step has failed.
void throwUnless(bool succeeded, const char* step);

/// Makes this process, a new one, another program; ends it with status 126 when that cannot be.
[[noreturn]] void becomeProgram(const std::string& executable, std::vector<std::string> arguments,
                                std::vector<std::string> environment);

}  // namespace quellin::testing_support
