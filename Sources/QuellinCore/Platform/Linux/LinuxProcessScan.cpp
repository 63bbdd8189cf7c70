#include "QuellinCore/Platform/Linux/LinuxProcessScan.h"

#include <algorithm>
#include <array>
#include <utility>

#include "QuellinCore/Platform/Linux/KernelText.h"
#include "QuellinCore/Platform/Linux/ProcessFiles.h"
#include "QuellinCore/Support/CheckedArithmetic.h"
#include "QuellinCore/Support/Number.h"

namespace quellin {
namespace {

constexpr std::uint64_t nanosecondsPerSecond = 1'000'000'000;

// The largest of the files read here is "status", of about one and a half kilobytes.
using Buffer = std::array<char, 4096>;

}  // namespace

LinuxProcessScan::LinuxProcessScan(std::shared_ptr<const FileTree> proc, ProcessClock clock,
                                   std::uint64_t ticksPerSecond)
    : proc_(std::move(proc)),
      clock_(std::move(clock)),
      nanosecondsPerTick_(nanosecondsPerSecond / ticksPerSecond) {}

std::int64_t LinuxProcessScan::listProcessIDs(std::span<std::int32_t> ids) {
  const auto names = proc_->list("");
  if (!names) return 0;
  std::size_t count = 0;
  for (const std::string& name : *names) {
    const auto pid = parseNumber<std::int32_t>(name);
    if (!pid) continue;
    if (count == ids.size()) break;
    ids[count++] = *pid;
  }
  return static_cast<std::int64_t>(ids.first(count).size_bytes());
}

std::optional<ProcessUsage> LinuxProcessScan::usage(std::int32_t pid) {
  const auto last = lastSeen_.find(pid);
  const bool isNew = last == lastSeen_.end();
  const bool hadClock = !isNew && last->second.clock.has_value();
  // Read before the files: what happens in between is then seen as a change by the next snapshot, not lost.
  const auto clock = isNew || hadClock ? readClock(pid) : std::nullopt;
  if (hadClock && !clock) return std::nullopt;
  if (hadClock && clock == last->second.clock) return last->second.usage;
  auto sighting = readFiles(pid, clock);
  if (!sighting) return std::nullopt;
  return lastSeen_.insert_or_assign(pid, *std::move(sighting)).first->second.usage;
}

std::optional<std::string> LinuxProcessScan::name(std::int32_t pid) {
  const auto last = lastSeen_.find(pid);
  if (last != lastSeen_.end()) return last->second.name;
  const auto sighting = readFiles(pid, std::nullopt);
  return sighting ? std::optional{sighting->name} : std::nullopt;
}

std::optional<std::uint64_t> LinuxProcessScan::readClock(std::int32_t pid) const {
  return clock_ ? clock_(pid) : std::nullopt;
}

std::optional<LinuxProcessScan::Sighting> LinuxProcessScan::readFiles(
    std::int32_t pid, std::optional<std::uint64_t> clock) const {
  Buffer buffer{};
  const std::string directory = std::to_string(pid);
  const auto line = proc_->readInto((directory + "/stat").c_str(), buffer);
  auto stat = line ? parseProcessStat(*line) : std::nullopt;
  if (!stat) return std::nullopt;

  Sighting sighting{.usage = {}, .name = std::move(stat->name), .clock = clock};
  sighting.usage.startToken = stat->startTicks;
  setTimes(sighting.usage, stat->userTicks, stat->systemTicks, clock);
  if (const auto io = proc_->readInto((directory + "/io").c_str(), buffer)) {
    sighting.usage.diskBytesRead = parseNamedNumber(*io, "read_bytes");
    sighting.usage.diskBytesWritten = parseNamedNumber(*io, "write_bytes");
  }
  if (const auto status = proc_->readInto((directory + "/status").c_str(), buffer)) {
    sighting.usage.interruptWakeups = parseNamedNumber(*status, "voluntary_ctxt_switches");
  }
  return sighting;
}

void LinuxProcessScan::setTimes(ProcessUsage& usage, std::uint64_t userTicks, std::uint64_t systemTicks,
                                std::optional<std::uint64_t> clock) const {
  const std::uint64_t system = checkedMul(systemTicks, nanosecondsPerTick_);
  usage.systemTimeNanoseconds = clock ? std::min(system, *clock) : system;
  usage.userTimeNanoseconds =
      clock ? *clock - usage.systemTimeNanoseconds : checkedMul(userTicks, nanosecondsPerTick_);
}

}  // namespace quellin
