#pragma once

#include <string>

#include "QuellinCore/Models/HelperStatus.h"

namespace quellin::cli {

/// What `status` means for the user, in sentences.
[[nodiscard]] std::string helperText(const HelperStatus& status);

}  // namespace quellin::cli
