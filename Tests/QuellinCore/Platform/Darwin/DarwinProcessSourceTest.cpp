#include <array>
#include <cerrno>
#include <string>
#include <vector>

#include "FakeDarwin/DarwinTest.h"
#include "QuellinCore/Platform/ProcessSource.h"
#include "QuellinCore/Services/ProcessActivityService.h"
#include "Support/ManualClock.h"

namespace quellin {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class DarwinProcessSourceTest : public fake::DarwinTest {
 protected:
  fake::FakeProcesses::Process& add(std::int32_t pid, const std::string& name) {
    return system.processes.list.emplace_back(
        fake::FakeProcesses::Process{.pid = pid, .name = name, .usage = {}, .error = 0});
  }

  std::shared_ptr<ProcessSource> source = nativeProcessSource();
};

TEST_F(DarwinProcessSourceTest, ListsProcessesInTheKernelsOrder) {
  for (const std::int32_t pid : {0, 1, 412, 7}) add(pid, "p");
  std::array<std::int32_t, 8> ids{};
  EXPECT_EQ(source->beginScan()->listProcessIDs(ids), 16);
  EXPECT_THAT(ids, ElementsAre(0, 1, 412, 7, 0, 0, 0, 0));
}

TEST_F(DarwinProcessSourceTest, FillsABufferThatIsTooSmall) {
  for (const std::int32_t pid : {1, 2, 3}) add(pid, "p");
  std::array<std::int32_t, 2> ids{};
  EXPECT_EQ(source->beginScan()->listProcessIDs(ids), 8);
}

TEST_F(DarwinProcessSourceTest, HasNoListWhenTheCallFails) {
  add(1, "launchd");
  system.calls.fail("proc_listpids");
  std::array<std::int32_t, 2> ids{};
  EXPECT_LT(source->beginScan()->listProcessIDs(ids), 1);
}

TEST_F(DarwinProcessSourceTest, HandsOnCountersWithTimesInNanoseconds) {
  auto& usage = add(42, "worker").usage;
  usage.ri_user_time = 24'000'000;
  usage.ri_system_time = 3;
  usage.ri_pkg_idle_wkups = 5;
  usage.ri_interrupt_wkups = 6;
  usage.ri_diskio_bytesread = 7;
  usage.ri_diskio_byteswritten = 8;
  usage.ri_energy_nj = 9;
  usage.ri_proc_start_abstime = 10;
  EXPECT_EQ(source->beginScan()->usage(42), (ProcessUsage{.userTimeNanoseconds = 1'000'000'000,
                                                          .systemTimeNanoseconds = 125,
                                                          .packageIdleWakeups = 5,
                                                          .interruptWakeups = 6,
                                                          .diskBytesRead = 7,
                                                          .diskBytesWritten = 8,
                                                          .energyNanojoules = 9,
                                                          .startToken = 10}));
}

TEST_F(DarwinProcessSourceTest, HasNoCountersOfAProcessThatHasGoneOrMayNotBeRead) {
  add(1, "launchd").error = EPERM;
  const auto scan = source->beginScan();
  EXPECT_EQ(scan->usage(1), std::nullopt);
  EXPECT_EQ(scan->name(1), std::nullopt);
  EXPECT_EQ(scan->usage(99), std::nullopt);
  EXPECT_EQ(scan->name(99), std::nullopt);
}

TEST_F(DarwinProcessSourceTest, HasNoCountersWhenTicksHaveNoKnownLength) {
  add(42, "worker");
  system.processes.ticksPerSecond = std::nullopt;
  system.calls.fail("mach_timebase_info");
  EXPECT_EQ(source->beginScan()->usage(42), std::nullopt);
  EXPECT_EQ(source->diagnose().availability, SourceAvailability::failed);
  EXPECT_EQ(source->diagnose().reason,
            "mach_timebase_info failed: the length of a tick of the CPU times is unknown");
}

TEST_F(DarwinProcessSourceTest, ReadsNamesUpToTheFirstNUL) {
  add(1, "WindowServer");
  add(2, std::string{"ab\0cd", 5});
  add(3, "W\xC3\xA4rme\xC3");  // cut in the middle of a character
  add(4, std::string(2000, 'x'));
  add(5, "");
  const auto scan = source->beginScan();
  EXPECT_EQ(scan->name(1), "WindowServer");
  EXPECT_EQ(scan->name(2), "ab");
  EXPECT_EQ(scan->name(3), "W\xC3\xA4rme\xC3");
  EXPECT_EQ(scan->name(4), std::string(1024, 'x'));
  EXPECT_EQ(scan->name(5), std::nullopt);
}

TEST_F(DarwinProcessSourceTest, MeasuresActivityOfWhatMayBeRead) {
  add(1, "launchd").error = EPERM;
  add(42, "worker");
  testing_support::ManualMonotonicClock clock;
  clock.onSleep = [&](Seconds) { system.processes.list[1].usage.ri_user_time = 6'000'000; };
  const auto activity = ProcessActivityService{source, clock}.sampleTopProcesses(5, Seconds{0.5});
  ASSERT_EQ(activity.size(), 1U);
  EXPECT_EQ(activity[0].name, "worker");
  EXPECT_DOUBLE_EQ(activity[0].cpuPercent, 50.0);
}

TEST_F(DarwinProcessSourceTest, SaysWhetherAllProcessesCanBeRead) {
  add(1, "launchd");
  EXPECT_EQ(source->diagnose(), (SourceDiagnosis{.source = "Processes",
                                                 .availability = SourceAvailability::available,
                                                 .reason = "All processes can be read.",
                                                 .path = "libproc",
                                                 .remedy = std::nullopt}));
  system.processes.list[0].error = EPERM;
  EXPECT_EQ(source->diagnose(),
            (SourceDiagnosis{.source = "Processes",
                             .availability = SourceAvailability::available,
                             .reason = "Only this user's processes can be read. proc_pid_rusage of process 1 "
                                       "failed: Operation not permitted",
                             .path = "libproc",
                             .remedy = "Run as root to see every process."}));
  system.calls.fail("proc_listpids", ENOMEM);
  EXPECT_EQ(source->diagnose(), (SourceDiagnosis{.source = "Processes",
                                                 .availability = SourceAvailability::failed,
                                                 .reason = "proc_listpids failed: Cannot allocate memory",
                                                 .path = "libproc",
                                                 .remedy = std::nullopt}));
}

}  // namespace
}  // namespace quellin
