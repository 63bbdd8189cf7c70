#pragma once

#if defined(__linux__)

namespace quellin::testing_support {

/// Makes the kernel refuse every call of this number, with EPERM, to this process and the programs it
/// becomes.
void refuseCall(long number);

/// As `refuseCall`, for openat(2) with exactly these flags.
void refuseOpening(int flags);

}  // namespace quellin::testing_support

#endif
