#pragma once

#include <string>
#include <string_view>

#include "quellin/CommandLine/Options.h"

namespace quellin::cli {

/// What the user can type next, in quotes for a message: `command`, its words behind the program's name, over
/// the same store as this one; for example 'quellin stop --store a.store'.
[[nodiscard]] std::string hintAt(std::string_view command, const Options& options);

/// The same of the command that says why something cannot be measured, over the same source as this one; for
/// example 'quellin doctor --source a.trace'.
[[nodiscard]] std::string hintAtDoctor(const Options& options);

}  // namespace quellin::cli
