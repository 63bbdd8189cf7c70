#include <algorithm>
#include <limits>
#include <map>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "QuellinCore/Services/ProcessActivityService.h"
#include "Support/ManualClock.h"

namespace quellin {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using testing_support::ManualMonotonicClock;

constexpr std::uint64_t second = 1'000'000'000;

/// A process table that the tests change while the service sleeps.
class FakeProcessSource final : public ProcessSource {
 public:
  struct Process {
    std::optional<ProcessUsage> usage;  ///< absent: may not be read
    std::optional<std::string> name;
  };

  std::map<std::int32_t, Process> processes;
  int scansBegun = 0;
  int scansOpen = 0;
  std::vector<std::int32_t> asked;
  std::vector<std::int32_t> named;

  void add(std::int32_t pid, std::uint64_t cpuNanoseconds) {
    ProcessUsage usage;
    usage.userTimeNanoseconds = cpuNanoseconds;
    processes[pid] = {usage, "process " + std::to_string(pid)};
  }

  std::unique_ptr<ProcessScan> beginScan() override { return std::make_unique<Scan>(*this); }
  SourceDiagnosis diagnose() override { return {}; }

 private:
  class Scan final : public ProcessScan {
   public:
    explicit Scan(FakeProcessSource& source) : source_(source) {
      ++source_.scansBegun;
      ++source_.scansOpen;
    }
    ~Scan() override { --source_.scansOpen; }

    std::int64_t listProcessIDs(std::span<std::int32_t> ids) override {
      std::size_t count = 0;
      for (const auto& [pid, process] : source_.processes) {
        if (count < ids.size()) ids[count++] = pid;
      }
      return static_cast<std::int64_t>(count * sizeof(std::int32_t));
    }
    std::optional<ProcessUsage> usage(std::int32_t pid) override {
      source_.asked.push_back(pid);
      return source_.processes.at(pid).usage;
    }
    std::optional<std::string> name(std::int32_t pid) override {
      source_.named.push_back(pid);
      return source_.processes.at(pid).name;
    }

   private:
    FakeProcessSource& source_;
  };
};

class ProcessActivityServiceTest : public ::testing::Test {
 protected:
  /// What happens to the process table between the snapshots.
  void whileAsleep(std::function<void()> change) {
    clock.onSleep = [change = std::move(change)](Seconds) { change(); };
  }

  std::shared_ptr<FakeProcessSource> source = std::make_shared<FakeProcessSource>();
  ManualMonotonicClock clock;
  ProcessActivityService service{source, clock};
};

TEST_F(ProcessActivityServiceTest, RanksProcessesByTheirImpact) {
  for (const std::int32_t pid : {1, 2, 3, 4}) source->add(pid, second);
  whileAsleep([this] {
    source->add(1, second + second / 10);
    source->add(2, second + second / 2);
    source->add(4, second + second / 4);
  });
  const auto top = service.sampleTopProcesses(2, Seconds{0.5});
  ASSERT_EQ(top.size(), 2U);
  EXPECT_EQ(top[0].pid, 2);
  EXPECT_EQ(top[0].id, 2);
  EXPECT_DOUBLE_EQ(top[0].cpuPercent, 100);
  EXPECT_EQ(top[0].name, "process 2");
  EXPECT_EQ(top[1].pid, 4);
  EXPECT_THAT(clock.sleeps, ElementsAre(Seconds{0.5}));
}

TEST_F(ProcessActivityServiceTest, GivesAllWhenFewerThanTheLimitAreActive) {
  source->add(1, 0);
  whileAsleep([this] { source->add(1, second); });
  EXPECT_EQ(service.sampleTopProcesses(5, Seconds{1}).size(), 1U);
}

TEST_F(ProcessActivityServiceTest, WaitsAtLeastATenthOfASecondAndReckonsWithIt) {
  for (const double interval : {0.0, -1.0, 0.05, std::numeric_limits<double>::quiet_NaN()}) {
    source->add(1, 0);
    clock.sleeps.clear();
    whileAsleep([this] { source->add(1, second / 20); });
    const auto top = service.sampleTopProcesses(1, Seconds{interval});
    EXPECT_THAT(clock.sleeps, ElementsAre(Seconds{0.1}));
    ASSERT_EQ(top.size(), 1U);
    EXPECT_DOUBLE_EQ(top[0].cpuPercent, 50);
  }
}

TEST_F(ProcessActivityServiceTest, GivesNoneForALimitBelowOneWithoutWaiting) {
  source->add(1, 0);
  whileAsleep([this] { source->add(1, second); });
  EXPECT_THAT(service.sampleTopProcesses(0, Seconds{1}), IsEmpty());
  EXPECT_THAT(service.sampleTopProcesses(-1, Seconds{1}), IsEmpty());
  EXPECT_THAT(service.sampleTopProcesses(std::numeric_limits<int>::min(), Seconds{1}), IsEmpty());
  EXPECT_THAT(clock.sleeps, IsEmpty());
}

TEST_F(ProcessActivityServiceTest, DoesNotWaitWhenTheFirstSnapshotIsEmpty) {
  EXPECT_THAT(service.sampleTopProcesses(5, Seconds{1}), IsEmpty());
  EXPECT_THAT(clock.sleeps, IsEmpty());
}

TEST_F(ProcessActivityServiceTest, GivesNoneWhenTheSecondSnapshotIsEmpty) {
  source->add(1, 0);
  whileAsleep([this] { source->processes.clear(); });
  EXPECT_THAT(service.sampleTopProcesses(5, Seconds{1}), IsEmpty());
}

TEST_F(ProcessActivityServiceTest, LeavesOutProcessesThatMayNotBeRead) {
  source->add(1, 0);
  source->add(2, 0);
  source->add(3, 0);
  source->processes[1].usage = std::nullopt;
  whileAsleep([this] {
    for (const std::int32_t pid : {1, 2, 3}) source->add(pid, second);
    source->processes[2].usage = std::nullopt;
  });
  const auto top = service.sampleTopProcesses(5, Seconds{1});
  ASSERT_EQ(top.size(), 1U);
  EXPECT_EQ(top[0].pid, 3);
}

TEST_F(ProcessActivityServiceTest, NeverAsksForTheKernelNorForNegativeIDs) {
  for (const std::int32_t pid : {-1, 0, 1}) source->add(pid, 0);
  whileAsleep([] {});
  EXPECT_THAT(service.sampleTopProcesses(5, Seconds{1}), IsEmpty());
  EXPECT_THAT(source->asked, ElementsAre(1, 1));
}

TEST_F(ProcessActivityServiceTest, NamesAProcessByItsNumberWhenItsNameCannotBeRead) {
  source->add(123, 0);
  whileAsleep([this] {
    source->add(123, second);
    source->processes[123].name = std::nullopt;
  });
  EXPECT_EQ(service.sampleTopProcesses(5, Seconds{1}).at(0).name, "PID 123");
}

TEST_F(ProcessActivityServiceTest, TakesNamesFromTheLaterSnapshotAndReadsThemOnce) {
  source->add(1, 0);
  source->processes[1].name = "before";
  whileAsleep([this] {
    source->add(1, second);
    source->processes[1].name = "after";
  });
  EXPECT_EQ(service.sampleTopProcesses(5, Seconds{1}).at(0).name, "after");
  EXPECT_THAT(source->named, ElementsAre(1));
}

TEST_F(ProcessActivityServiceTest, TakesBothSnapshotsInOneScan) {
  source->add(1, 0);
  whileAsleep([this] { EXPECT_EQ(source->scansOpen, 1); });
  static_cast<void>(service.sampleTopProcesses(5, Seconds{1}));
  EXPECT_EQ(source->scansBegun, 1);
  EXPECT_EQ(source->scansOpen, 0);
}

}  // namespace
}  // namespace quellin
