#pragma once

#include <string_view>

namespace quellin::testing_support {

/// The beginning of every script that stands in for the measuring tool: the path that follows the argument -o
/// is $output from here on.
inline constexpr std::string_view outputOfArguments = "while [ \"$1\" != -o ]; do shift; done; output=$2\n";

}  // namespace quellin::testing_support
