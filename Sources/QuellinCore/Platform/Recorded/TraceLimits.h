#pragma once

#include <optional>
#include <string>

#include "QuellinCore/Platform/Recorded/HostAnswers.h"
#include "QuellinCore/Platform/Recorded/TraceHeader.h"

// What keeps a file from ending the process: the rules do so on numbers that they could only reckon with
// wrongly, such as no machine gives. Errors are texts that say what is wrong with the line.
namespace quellin {

/// The first number of a tick that is out of its range; no value when all are fit for every rule.
[[nodiscard]] std::optional<std::string> numberFault(const HostAnswers& answers);

/// The same of a header.
[[nodiscard]] std::optional<std::string> numberFault(const TraceHeader& header);

}  // namespace quellin
