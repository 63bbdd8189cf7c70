#pragma once

#include <optional>

#include "QuellinCore/Sessions/PowerSessionRecorder.h"
#include "QuellinCore/Sessions/PowerSessionStore.h"
#include "quellin/CommandLine/Options.h"
#include "quellin/Measuring/MeasuredHost.h"
#include "quellin/Storage/RecorderLock.h"

namespace quellin::cli {

/// What records into a store.
struct Recorder {
  bool isAtWork = false;            ///< whether a program records into it now
  std::optional<bool> isOverTrace;  ///< whether what is or was recorded is a trace; absent when nothing tells
};

/// Who records into the store that the options name. The word of a recorder that is gone stays; a program
/// that records without the front end is not seen.
[[nodiscard]] Recorder recorderOf(const Options& options);

/// Takes `store`, which the options name, to record from now on what `host` measures. Throws `Failure` when
/// another program records into it, and when the session that is active there would be mixed up: one over a
/// trace with a machine or another trace, or one of a machine with another, a trace, or an earlier time. What
/// it is over is known from its recorder, see `RecorderLock`, and else guessed from when it was made. Nothing
/// that is stored changes. Throws `StoreError`.
[[nodiscard]] RecorderLock claimStore(PowerSessionStore& store, const Options& options,
                                      const MeasuredHost& host);

/// Takes back the claim with which `recorder` could not begin a session. The word stays where a session is
/// active that the next recorder might go on with. Throws `StoreError`.
void forgetClaim(RecorderLock& lock, const PowerSessionRecorder& recorder);

}  // namespace quellin::cli
