#include "QuellinCore/Platform/Linux/LinuxProcessSource.h"

#include <algorithm>
#include <string>
#include <utility>

#include "QuellinCore/Platform/Linux/LinuxProcessScan.h"
#include "QuellinCore/Platform/Linux/SourceReport.h"

namespace quellin {
namespace {

constexpr const char* sourceName = SourceNames::processes;
constexpr const char* firstProcess = "1";
constexpr const char* permission =
    "Run as root, with the capability CAP_SYS_PTRACE, to see all processes and their disk traffic.";

}  // namespace

LinuxProcessSource::LinuxProcessSource(std::shared_ptr<const FileTree> proc, ProcessClock clock,
                                       std::uint64_t ticksPerSecond)
    : proc_(std::move(proc)), clock_(std::move(clock)), ticksPerSecond_(ticksPerSecond) {}

std::unique_ptr<ProcessScan> LinuxProcessSource::beginScan() {
  return std::make_unique<LinuxProcessScan>(proc_, clock_, ticksPerSecond_);
}

SourceDiagnosis LinuxProcessSource::diagnose() {
  const std::string root = proc_->displayPath("");
  const auto names = proc_->list("");
  if (!names) return unreadableSource(sourceName, {root, names.error()}, permission);
  const auto ownStat = readText(*proc_, "self/stat");
  if (!ownStat)
    return unreadableSource(sourceName, {proc_->displayPath("self/stat"), ownStat.error()}, permission);

  std::string reason =
      "CPU time and voluntary context switches are read; the kernel counts no energy per process.";
  std::optional<std::string> remedy;
  // The first process belongs to root: what is kept from this process of that one is kept from it of all
  // others.
  if (std::ranges::find(*names, firstProcess) == names->end()) {
    reason += " Processes of other users are hidden.";
    remedy = permission;
  } else if (const auto io = readText(*proc_, "1/io"); !io && saysNotPermitted(io.error())) {
    reason += " Disk traffic of other users' processes may not be read.";
    remedy = permission;
  } else if (!io) {
    reason += " The kernel counts no disk traffic.";
  }
  SourceDiagnosis diagnosis = availableSource(sourceName, std::move(reason), root);
  diagnosis.remedy = std::move(remedy);
  return diagnosis;
}

[[gnu::visibility("default")]] std::shared_ptr<ProcessSource> nativeProcessSource() {
  return std::make_shared<LinuxProcessSource>();
}

}  // namespace quellin
