#include "QuellinCore/Support/Signals.h"

namespace quellin {

bool isIgnored(int signal) {
  struct sigaction present{};
  return sigaction(signal, nullptr, &present) == 0 && present.sa_handler == SIG_IGN;
}

AllSignalsBlocked::AllSignalsBlocked() {
  sigset_t every{};
  sigfillset(&every);
  pthread_sigmask(SIG_SETMASK, &every, &before_);
}

AllSignalsBlocked::~AllSignalsBlocked() { pthread_sigmask(SIG_SETMASK, &before_, nullptr); }

}  // namespace quellin
