#pragma once

namespace quellin {

/// The variables that this process was started with and has set since, as a child inherits them: "NAME=value"
/// each, a null pointer behind the last. Null when all were cleared; not to be kept, nor read while another
/// thread sets one.
[[nodiscard]] char** ownEnvironment();

}  // namespace quellin
