#pragma once

namespace quellin {

/// The only entry of the environment in which the tool and the measuring tool run.
inline constexpr const char* fixedEnvironmentEntry = "PATH=/usr/bin:/bin:/usr/sbin:/sbin";

}  // namespace quellin
