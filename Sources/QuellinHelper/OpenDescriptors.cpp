#include "QuellinHelper/OpenDescriptors.h"

#include <unistd.h>

#if defined(__APPLE__)
#include <libproc.h>
#include <vector>
#endif

namespace quellin {

#if defined(__APPLE__)

bool closeDescriptorsFrom(int lowest) {
  constexpr int entrySize = static_cast<int>(sizeof(proc_fdinfo));
  const int needed = proc_pidinfo(getpid(), PROC_PIDLISTFDS, 0, nullptr, 0);
  if (needed <= 0) return false;
  // Nothing opens a descriptor meanwhile: the process has one thread and this is among the first things it
  // does.
  std::vector<proc_fdinfo> entries(static_cast<std::size_t>(needed / entrySize) + 1);
  const int filled = proc_pidinfo(getpid(), PROC_PIDLISTFDS, 0, entries.data(),
                                  static_cast<int>(entries.size()) * entrySize);
  if (filled <= 0) return false;
  entries.resize(static_cast<std::size_t>(filled / entrySize));
  for (const proc_fdinfo& entry : entries) {
    if (entry.proc_fd >= lowest) close(entry.proc_fd);
  }
  return true;
}

#else

bool closeDescriptorsFrom(int lowest) {
  closefrom(lowest);
  return true;
}

#endif

}  // namespace quellin
