#include <array>
#include <cerrno>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "QuellinCore/Platform/Linux/LinuxProcessSource.h"
#include "Support/FaultyTree.h"
#include "Support/TreeArchive.h"

namespace quellin {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;
using testing::UnorderedElementsAre;
using testing_support::FaultyTree;
using testing_support::UnpackedTree;

class LinuxProcessSourceTest : public testing::Test {
 protected:
  std::vector<std::int32_t> listedIDs(std::size_t room) {
    std::vector<std::int32_t> ids(room);
    const std::int64_t bytes = scan_->listProcessIDs(ids);
    ids.resize(static_cast<std::size_t>(bytes) / sizeof(std::int32_t));
    return ids;
  }

  void denyFiles(std::int32_t pid, int code) {
    for (const char* file : {"/stat", "/io", "/status"}) proc_->setFault(std::to_string(pid) + file, code);
  }

  UnpackedTree tree_ = UnpackedTree::fixture("linux/processes.tree");
  std::shared_ptr<FaultyTree> proc_ =
      std::make_shared<FaultyTree>(directoryTree(tree_.path("proc")), std::map<std::string, int>{});
  std::map<std::int32_t, std::uint64_t> clocks_ = {{1, 3750000123}, {42, 9999999999}};
  ProcessClock clock_ = [this](std::int32_t pid) {
    const auto found = clocks_.find(pid);
    return found == clocks_.end() ? std::nullopt : std::optional{found->second};
  };
  LinuxProcessSource source_{proc_, clock_, 100};
  std::unique_ptr<ProcessScan> scan_ = source_.beginScan();
};

TEST_F(LinuxProcessSourceTest, OnlyNumberedEntriesAreProcesses) {
  EXPECT_THAT(listedIDs(100), UnorderedElementsAre(1, 42, 301));
  EXPECT_THAT(listedIDs(100), UnorderedElementsAre(1, 42, 301)) << "a second listing starts anew";
}

TEST_F(LinuxProcessSourceTest, AListThatDoesNotFitFillsTheBuffer) {
  EXPECT_EQ(listedIDs(3).size(), 3);
  EXPECT_EQ(listedIDs(2).size(), 2);
  proc_->setFault("", EACCES);
  EXPECT_THAT(listedIDs(3), IsEmpty());
}

TEST_F(LinuxProcessSourceTest, TheClockGivesTheTimeAndTheTicksItsParts) {
  EXPECT_EQ(scan_->usage(1), (ProcessUsage{.userTimeNanoseconds = 1300000123,
                                           .systemTimeNanoseconds = 2450000000,
                                           .packageIdleWakeups = std::nullopt,
                                           .interruptWakeups = 1500,
                                           .diskBytesRead = 41943040,
                                           .diskBytesWritten = 8192000,
                                           .energyNanojoules = std::nullopt,
                                           .startToken = 6}));
}

TEST_F(LinuxProcessSourceTest, TicksNeverMakeTheSumLargerThanTheClock) {
  clocks_[42] = 5;
  const auto usage = scan_->usage(42).value();
  EXPECT_EQ(usage.userTimeNanoseconds, 0);
  EXPECT_EQ(usage.systemTimeNanoseconds, 5);
}

TEST_F(LinuxProcessSourceTest, WithoutAClockTheTicksCount) {
  clocks_.erase(42);
  const auto usage = scan_->usage(42).value();
  EXPECT_EQ(usage.userTimeNanoseconds, 7000000000);
  EXPECT_EQ(usage.systemTimeNanoseconds, 3000000000);
  const auto clockless = LinuxProcessSource{proc_, nullptr, 1000}.beginScan()->usage(42).value();
  EXPECT_EQ(clockless.userTimeNanoseconds, 700000000);
}

TEST_F(LinuxProcessSourceTest, AClockThatAppearsLaterIsNotMixedWithTicks) {
  clocks_.erase(42);
  const auto before = scan_->usage(42);
  clocks_[42] = 1;
  EXPECT_EQ(scan_->usage(42), before);
}

TEST_F(LinuxProcessSourceTest, AProcessWhoseClockStandsStillIsNotReadAgain) {
  const auto before = scan_->usage(42);
  ASSERT_TRUE(before.has_value());
  denyFiles(42, EIO);
  EXPECT_EQ(scan_->usage(42), before);
  ++clocks_[42];
  EXPECT_EQ(scan_->usage(42), std::nullopt) << "a process that moved is";
}

TEST_F(LinuxProcessSourceTest, AProcessThatMovedIsReadAgain) {
  static_cast<void>(scan_->usage(1));
  clocks_[1] += 70;
  tree_.write({"proc/1/status", 0444, "voluntary_ctxt_switches:\t1600\n"});
  tree_.write({"proc/1/io", 0400, "read_bytes: 41943041\nwrite_bytes: 8192002\n"});
  const auto after = scan_->usage(1).value();
  EXPECT_EQ(after.userTimeNanoseconds + after.systemTimeNanoseconds, 3750000193);
  EXPECT_EQ(after.interruptWakeups, 1600);
  EXPECT_EQ(after.diskBytesRead, 41943041);
  EXPECT_EQ(after.diskBytesWritten, 8192002);
}

TEST_F(LinuxProcessSourceTest, AnIdThatWasTakenOverHasAnotherStart) {
  const auto before = scan_->usage(42).value();
  clocks_[42] += 1000;
  tree_.write({"proc/42/stat", 0444, "42 (new) R 1 42 42 0 -1 0 1 0 0 0 701 300 0 0 20 0 4 0 9000 1 1\n"});
  EXPECT_EQ(before.startToken, 8899);
  EXPECT_EQ(scan_->usage(42)->startToken, 9000);
  EXPECT_EQ(scan_->name(42), "new");
}

TEST_F(LinuxProcessSourceTest, AProcessThatHasGoneHasNoUsage) {
  EXPECT_EQ(scan_->usage(99999), std::nullopt);
  denyFiles(1, ESRCH);
  EXPECT_EQ(scan_->usage(1), std::nullopt);
  static_cast<void>(scan_->usage(42));
  clocks_.erase(42);
  EXPECT_EQ(scan_->usage(42), std::nullopt);
}

TEST_F(LinuxProcessSourceTest, WhatMayNotBeReadIsAbsentAndTheRestIsThere) {
  proc_->setFault("1/io", EACCES);
  proc_->setFault("42/status", EACCES);
  const auto first = scan_->usage(1).value();
  EXPECT_EQ(first.diskBytesRead, std::nullopt);
  EXPECT_EQ(first.diskBytesWritten, std::nullopt);
  EXPECT_EQ(first.interruptWakeups, 1500);
  const auto second = scan_->usage(42).value();
  EXPECT_EQ(second.interruptWakeups, std::nullopt);
  EXPECT_EQ(second.diskBytesRead, 1000);
}

TEST_F(LinuxProcessSourceTest, AKernelWithoutAccountingGivesTimesOnly) {
  const auto usage = scan_->usage(301).value();
  EXPECT_EQ(usage.interruptWakeups, std::nullopt);
  EXPECT_EQ(usage.diskBytesRead, std::nullopt);
  EXPECT_EQ(usage.startToken, 90118);
}

TEST_F(LinuxProcessSourceTest, NamesAreTheKernelsOwn) {
  EXPECT_EQ(scan_->name(42), "a) S 1 (b c");
  static_cast<void>(scan_->usage(1));
  EXPECT_EQ(scan_->name(1), "systemd");
  EXPECT_EQ(scan_->name(99999), std::nullopt);
}

TEST_F(LinuxProcessSourceTest, ScansShareNothing) {
  static_cast<void>(scan_->usage(42));
  denyFiles(42, EIO);
  EXPECT_EQ(source_.beginScan()->usage(42), std::nullopt);
}

TEST_F(LinuxProcessSourceTest, TheDiagnosisSaysWhatIsKeptFromThisProcess) {
  SourceDiagnosis diagnosis = source_.diagnose();
  EXPECT_EQ(diagnosis.availability, SourceAvailability::available);
  EXPECT_EQ(diagnosis.reason,
            "CPU time and voluntary context switches are read; the kernel counts no energy per process.");
  EXPECT_EQ(diagnosis.remedy, std::nullopt);

  proc_->setFault("1/io", EACCES);
  diagnosis = source_.diagnose();
  EXPECT_EQ(diagnosis.availability, SourceAvailability::available);
  EXPECT_THAT(diagnosis.reason, HasSubstr("Disk traffic of other users' processes may not be read."));
  EXPECT_THAT(diagnosis.remedy, testing::Optional(HasSubstr("root")));

  proc_->setFault("1/io", ENOENT);
  diagnosis = source_.diagnose();
  EXPECT_THAT(diagnosis.reason, HasSubstr("The kernel counts no disk traffic."));
  EXPECT_EQ(diagnosis.remedy, std::nullopt);
}

TEST_F(LinuxProcessSourceTest, TheDiagnosisNoticesHiddenProcesses) {
  const UnpackedTree hidden{
      "=== proc/self/stat 0444\n301 (reader) R\n=== proc/301/stat 0444\n301 (reader) R\n"};
  const SourceDiagnosis diagnosis =
      LinuxProcessSource{directoryTree(hidden.path("proc")), clock_, 100}.diagnose();
  EXPECT_THAT(diagnosis.reason, HasSubstr("Processes of other users are hidden."));
  EXPECT_NE(diagnosis.remedy, std::nullopt);
}

TEST_F(LinuxProcessSourceTest, TheDiagnosisTellsAbsenceFromRefusalAndFailure) {
  proc_->setFault("self/stat", EIO);
  EXPECT_EQ(source_.diagnose().availability, SourceAvailability::failed);
  proc_->setFault("", EACCES);
  EXPECT_EQ(source_.diagnose().availability, SourceAvailability::notPermitted);
  proc_->setFault("", ENOENT);
  EXPECT_EQ(source_.diagnose().availability, SourceAvailability::absent);
}

}  // namespace
}  // namespace quellin
