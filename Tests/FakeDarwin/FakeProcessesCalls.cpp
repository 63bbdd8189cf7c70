#include <algorithm>
#include <cerrno>
#include <cstring>
#include <libproc.h>
#include <mach/mach_time.h>
#include <span>
#include <string_view>
#include <sys/sysctl.h>

#include "FakeDarwin/FakeDarwin.h"

using quellin::fake::FakeDarwin;
using quellin::fake::FakeProcesses;

namespace quellin::fake {

const FakeProcesses::Process* FakeProcesses::find(std::int32_t pid) const {
  const auto found = std::ranges::find(list, pid, &Process::pid);
  return found == list.end() ? nullptr : &*found;
}

}  // namespace quellin::fake

namespace {

/// The process, if it may be asked; else sets errno.
const FakeProcesses::Process* readable(int pid, const std::optional<int>& failure) {
  const auto* process = FakeDarwin::current().processes.find(pid);
  const int unreadable = process == nullptr ? ESRCH : process->error;
  errno = failure.value_or(unreadable);
  return errno == 0 ? process : nullptr;
}

}  // namespace

extern "C" {

int proc_listpids(uint32_t type, uint32_t typeInfo, void* buffer, int bufferSize) {
  FakeDarwin& system = FakeDarwin::current();
  const auto failure = system.calls.enter(__func__);
  if (type != PROC_ALL_PIDS || typeInfo != 0) system.ledger.violation("a list of other than all processes");
  if (failure) {
    errno = *failure;
    return 0;
  }
  const auto& list = system.processes.list;
  if (buffer == nullptr) return static_cast<int>((list.size() + 20) * sizeof(std::int32_t));
  const std::span ids{static_cast<std::int32_t*>(buffer),
                      static_cast<std::size_t>(bufferSize) / sizeof(std::int32_t)};
  const std::size_t count = std::min(list.size(), ids.size());
  for (std::size_t index = 0; index < count; ++index) ids[index] = list[index].pid;
  return static_cast<int>(count * sizeof(std::int32_t));
}

int proc_name(int pid, void* buffer, uint32_t bufferSize) {
  FakeDarwin& system = FakeDarwin::current();
  const auto failure = system.calls.enter(__func__);
  if (bufferSize != 1024) system.ledger.violation("a buffer for names that is not of 1024 bytes");
  const std::span bytes{static_cast<char*>(buffer), bufferSize};
  if (std::ranges::any_of(bytes, [](char byte) { return byte != '\0'; })) {
    system.ledger.violation("a buffer for names that is not zeroed");
  }
  const auto* process = readable(pid, failure);
  if (process == nullptr) return 0;
  // As on a Mac, the name comes without a NUL where it fills the buffer.
  const std::string_view name = std::string_view{process->name}.substr(0, bufferSize);
  std::ranges::copy(name, bytes.begin());
  return static_cast<int>(name.size());
}

int proc_pid_rusage(int pid, int flavor, rusage_info_t* buffer) {
  FakeDarwin& system = FakeDarwin::current();
  const auto failure = system.calls.enter(__func__);
  if (flavor != RUSAGE_INFO_V6) system.ledger.violation("a usage record of another flavour");
  const auto* process = readable(pid, failure);
  if (process == nullptr) return -1;
  std::memcpy(buffer, &process->usage, sizeof(process->usage));
  return 0;
}

int sysctlbyname(const char* name, void* oldValue, size_t* oldSize, void* newValue, size_t newSize) {
  FakeDarwin& system = FakeDarwin::current();
  const auto failure = system.calls.enter(__func__);
  if (newValue != nullptr || newSize != 0) system.ledger.violation("a sysctl set");
  const auto& frequency = system.processes.ticksPerSecond;
  if (failure || !frequency || std::string_view{name} != "hw.tbfrequency") {
    errno = failure.value_or(ENOENT);
    return -1;
  }
  if (*oldSize < system.processes.frequencySize)
    system.ledger.violation("a sysctl's value that does not fit");
  *oldSize = system.processes.frequencySize;
  std::memcpy(oldValue, &*frequency, *oldSize);
  return 0;
}

kern_return_t mach_timebase_info(mach_timebase_info_t info) {
  FakeDarwin& system = FakeDarwin::current();
  if (const auto failure = system.calls.enter(__func__)) return *failure;
  info->numer = system.processes.numerator;
  info->denom = system.processes.denominator;
  return KERN_SUCCESS;
}

}  // extern "C"
