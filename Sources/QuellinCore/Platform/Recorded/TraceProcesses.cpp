#include "QuellinCore/Platform/Recorded/TraceProcesses.h"

#include <algorithm>
#include <map>
#include <span>
#include <utility>

#include "QuellinCore/Platform/Recorded/TraceText.h"
#include "QuellinCore/Support/Text.h"

namespace quellin {
namespace {

using UsageByPID = std::map<std::int32_t, ProcessUsage>;

UsageByPID usageByPID(std::span<const ProcessAnswer> snapshot) {
  UsageByPID usages;
  for (const ProcessAnswer& answer : snapshot) {
    if (answer.usage) usages.insert_or_assign(answer.pid, *answer.usage);
  }
  return usages;
}

void spellName(TraceProcess& process, const std::optional<std::string>& name) {
  if (!name) return;
  if (isValidUTF8(*name)) {
    process.name = *name;
  } else {
    process.nameBytes = hexText({reinterpret_cast<const std::uint8_t*>(name->data()), name->size()});
  }
}

void spellUsage(TraceProcess& process, const ProcessUsage& usage) {
  process.user = usage.userTimeNanoseconds;
  process.system = usage.systemTimeNanoseconds;
  process.idleWakeups = usage.packageIdleWakeups;
  process.interruptWakeups = usage.interruptWakeups;
  process.bytesRead = usage.diskBytesRead;
  process.bytesWritten = usage.diskBytesWritten;
  process.energy = usage.energyNanojoules;
  process.startToken = usage.startToken;
}

TraceProcess spelled(const ProcessAnswer& answer, const UsageByPID& earlier) {
  TraceProcess process;
  process.pid = answer.pid;
  spellName(process, answer.name);
  if (!answer.usage) return process;
  const auto before = earlier.find(answer.pid);
  if (before != earlier.end() && before->second == *answer.usage) {
    process.unchanged = true;
  } else {
    spellUsage(process, *answer.usage);
  }
  return process;
}

std::vector<TraceProcess> spelled(std::span<const ProcessAnswer> snapshot, const UsageByPID& earlier) {
  std::vector<TraceProcess> processes;
  processes.reserve(snapshot.size());
  for (const ProcessAnswer& answer : snapshot) processes.push_back(spelled(answer, earlier));
  return processes;
}

std::string placeOf(const TraceProcess& process) { return "process " + std::to_string(process.pid); }

std::expected<std::optional<std::string>, std::string> readName(TraceProcess& process) {
  if (!process.nameBytes) return std::move(process.name);
  const auto bytes = bytesOfHexText(*process.nameBytes);
  if (!bytes) return std::unexpected(placeOf(process) + R"( has a "nameBytes" that is not hexadecimal)");
  return std::string{bytes->begin(), bytes->end()};
}

std::expected<std::optional<ProcessUsage>, std::string> readUsage(const TraceProcess& process,
                                                                  const UsageByPID& earlier) {
  if (process.unchanged.value_or(false)) {
    const auto before = earlier.find(process.pid);
    if (before != earlier.end()) return before->second;
    return std::unexpected(placeOf(process) + " is unchanged, but the first snapshot does not have it");
  }
  if (process.user.has_value() != process.system.has_value()) {
    return std::unexpected(placeOf(process) + R"( has one of "user" and "system" without the other)");
  }
  if (!process.user) return std::nullopt;
  return ProcessUsage{.userTimeNanoseconds = *process.user,
                      .systemTimeNanoseconds = *process.system,
                      .packageIdleWakeups = process.idleWakeups,
                      .interruptWakeups = process.interruptWakeups,
                      .diskBytesRead = process.bytesRead,
                      .diskBytesWritten = process.bytesWritten,
                      .energyNanojoules = process.energy,
                      .startToken = process.startToken};
}

std::expected<std::vector<ProcessAnswer>, std::string> readSnapshot(std::span<TraceProcess> processes,
                                                                    const UsageByPID& earlier) {
  std::vector<ProcessAnswer> snapshot;
  snapshot.reserve(processes.size());
  for (TraceProcess& process : processes) {
    auto usage = readUsage(process, earlier);
    if (!usage) return std::unexpected(std::move(usage.error()));
    auto name = readName(process);
    if (!name) return std::unexpected(std::move(name.error()));
    snapshot.push_back({.pid = process.pid, .usage = *usage, .name = *std::move(name)});
  }
  return snapshot;
}

}  // namespace

TraceProcesses traceProcesses(const ProcessAnswers& answers) {
  return {.seconds = answers.interval.count(),
          .first = spelled(answers.first, {}),
          .second = spelled(answers.second, usageByPID(answers.first))};
}

std::expected<ProcessAnswers, std::string> processAnswers(TraceProcesses processes) {
  ProcessAnswers answers{.interval = Seconds{processes.seconds}, .first = {}, .second = {}};
  auto first = readSnapshot(processes.first, {});
  if (!first) return std::unexpected(std::move(first.error()));
  answers.first = *std::move(first);
  auto second = readSnapshot(processes.second, usageByPID(answers.first));
  if (!second) return std::unexpected(std::move(second.error()));
  answers.second = *std::move(second);
  return answers;
}

}  // namespace quellin
