// One measurement of process activity (two snapshots) over sleeping processes, beside the bare cost of
// opening, reading and closing the files it reads; and how far three ways of counting CPU time are off under
// a known load.
#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>
#include <csignal>
#include <cstdio>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <vector>

#include <benchmark/benchmark.h>

#include "QuellinCore/Platform/Linux/ProcessClock.h"
#include "QuellinCore/Platform/Linux/ProcessFiles.h"
#include "QuellinCore/Services/ProcessActivityService.h"
#include "QuellinCore/Support/FileDescriptor.h"
#include "QuellinCore/Support/Number.h"

namespace quellin {
namespace {

// Children that sleep until this object ends.
class SleepingProcesses {
 public:
  explicit SleepingProcesses(std::int64_t count) {
    for (std::int64_t index = 0; index < count; ++index) {
      const pid_t pid = fork();
      if (pid == 0) {
        for (;;) pause();
      }
      if (pid > 0) pids_.push_back(pid);
    }
    // A child that has not come to rest yet would be seen to move.
    std::this_thread::sleep_for(std::chrono::milliseconds{500});
  }
  SleepingProcesses(const SleepingProcesses&) = delete;
  SleepingProcesses& operator=(const SleepingProcesses&) = delete;
  ~SleepingProcesses() {
    for (const pid_t pid : pids_) kill(pid, SIGKILL);
    for (const pid_t pid : pids_) waitpid(pid, nullptr, 0);
  }

 private:
  std::vector<pid_t> pids_;
};

// The wait between the snapshots costs no CPU time; leaving it out only makes the benchmark quicker.
class NoWaiting final : public MonotonicClock {
 public:
  [[nodiscard]] Seconds now() const override { return Seconds{0}; }
  void sleep(Seconds) override {}
};

void readBare(int proc, pid_t pid, const char* file) {
  std::array<char, 64> path{};
  std::array<char, 4096> buffer;
  std::snprintf(path.data(), path.size(), "%d/%s", pid, file);
  const FileDescriptor opened{openat(proc, path.data(), O_RDONLY | O_CLOEXEC)};
  benchmark::DoNotOptimize(read(opened.get(), buffer.data(), buffer.size()));
}

// The ids of all processes, not only of the sleeping ones: the same that a measurement meets.
std::vector<std::int32_t> allProcessIDs() {
  std::vector<std::int32_t> ids(65536);
  const auto bytes = nativeProcessSource()->beginScan()->listProcessIDs(ids);
  ids.resize(static_cast<std::size_t>(bytes) / sizeof(std::int32_t));
  return ids;
}

void readAllFilesBare(benchmark::State& state) {
  const SleepingProcesses processes{state.range(0)};
  const auto proc = openDescriptor("/proc", O_RDONLY | O_DIRECTORY);
  const auto ids = allProcessIDs();
  const auto snapshots = state.range(1);
  for (auto _ : state) {
    for (std::int64_t snapshot = 0; snapshot < snapshots; ++snapshot) {
      for (const std::int32_t pid : ids) {
        for (const char* file : {"stat", "io", "status"}) readBare(proc->get(), pid, file);
      }
    }
  }
}
BENCHMARK(readAllFilesBare)
    ->Name("Processes/measure/floor")
    ->Args({2000, 1})
    ->Args({2000, 2})
    ->Unit(benchmark::kMillisecond);

void measureProcessActivity(benchmark::State& state) {
  const SleepingProcesses processes{state.range(0)};
  NoWaiting clock;
  const ProcessActivityService service{nativeProcessSource(), clock};
  for (auto _ : state) benchmark::DoNotOptimize(service.sampleTopProcesses(5, Seconds{0.35}));
}
BENCHMARK(measureProcessActivity)
    ->Name("Processes/measure")
    ->Arg(500)
    ->Arg(2000)
    ->Unit(benchmark::kMillisecond);

std::string contentOf(const std::string& path) {
  std::ifstream file{path};
  return {std::istreambuf_iterator<char>{file}, {}};
}

// CPU time of a process in seconds, by each of the ways that a reader has.
struct CPUTimes {
  double clock = 0;
  double ticks = 0;
  double mainThread = 0;

  static CPUTimes of(pid_t pid) {
    const std::string directory = "/proc/" + std::to_string(pid);
    const auto stat = parseProcessStat(contentOf(directory + "/stat")).value();
    const std::string schedule = contentOf(directory + "/schedstat");
    const auto onCPU = parseNumber<std::uint64_t>(schedule.substr(0, schedule.find(' ')));
    return {.clock = static_cast<double>(systemProcessClock(pid).value()) * 1e-9,
            .ticks = static_cast<double>(stat.userTicks + stat.systemTicks) /
                     static_cast<double>(systemTicksPerSecond()),
            .mainThread = static_cast<double>(onCPU.value_or(0)) * 1e-9};
  }
};

// The sum over the threads: the kernel brings each up to date when its own file is read, running or not. Too
// dear for a measurement of all processes.
double exactCPUTime(pid_t pid) {
  double seconds = 0;
  for (const auto& thread : std::filesystem::directory_iterator{"/proc/" + std::to_string(pid) + "/task"}) {
    const std::string schedule = contentOf(thread.path() / "schedstat");
    seconds +=
        static_cast<double>(parseNumber<std::uint64_t>(schedule.substr(0, schedule.find(' '))).value_or(0)) *
        1e-9;
  }
  return seconds;
}

void workAndRest() {
  for (;;) {
    for (int step = 0; step < 200000; ++step) benchmark::DoNotOptimize(step);
    std::this_thread::sleep_for(std::chrono::microseconds{700});
  }
}

// A child whose main thread waits while four others take turns at working and resting.
class LoadedProcess {
 public:
  LoadedProcess() : pid_(fork()) {
    if (pid_ != 0) return;
    for (int index = 0; index < 4; ++index) std::thread{workAndRest}.detach();
    for (;;) pause();
  }
  LoadedProcess(const LoadedProcess&) = delete;
  LoadedProcess& operator=(const LoadedProcess&) = delete;
  ~LoadedProcess() {
    kill(pid_, SIGKILL);
    waitpid(pid_, nullptr, 0);
  }

  [[nodiscard]] pid_t pid() const { return pid_; }

 private:
  pid_t pid_;
};

void cpuTimeErrorUnderLoad(benchmark::State& state) {
  const LoadedProcess load;
  std::this_thread::sleep_for(std::chrono::milliseconds{100});
  CPUTimes worst;
  for (auto _ : state) {
    const double exactBefore = exactCPUTime(load.pid());
    const CPUTimes before = CPUTimes::of(load.pid());
    std::this_thread::sleep_for(std::chrono::milliseconds{350});
    const double exact = exactCPUTime(load.pid()) - exactBefore;
    const CPUTimes after = CPUTimes::of(load.pid());
    const auto errorPercent = [&](double counted) { return std::abs(counted - exact) / exact * 100; };
    worst.clock = std::max(worst.clock, errorPercent(after.clock - before.clock));
    worst.ticks = std::max(worst.ticks, errorPercent(after.ticks - before.ticks));
    worst.mainThread = std::max(worst.mainThread, errorPercent(after.mainThread - before.mainThread));
  }
  state.counters["clock_worst_%"] = worst.clock;
  state.counters["stat_worst_%"] = worst.ticks;
  state.counters["schedstat_worst_%"] = worst.mainThread;
}
BENCHMARK(cpuTimeErrorUnderLoad)
    ->Name("Processes/cpuTimeErrorUnderLoad")
    ->Iterations(20)
    ->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace quellin
