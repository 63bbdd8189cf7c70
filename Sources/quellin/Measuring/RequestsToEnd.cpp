#include "quellin/Measuring/RequestsToEnd.h"

#include <csignal>
#include <utility>

namespace quellin::cli {

// Nobody insists by a hang-up: the kernel tells of it, and the shell once more.
RequestsToEnd::Answer RequestsToEnd::answerTo(int signal) {
  areHeard_ = true;
  if (isRefused_) return Answer::nothing;
  if (signal != SIGHUP && std::exchange(isUrged_, true)) return Answer::endAtOnce;
  return std::exchange(isAsked_, true) ? Answer::nothing : Answer::tell;
}

}  // namespace quellin::cli
