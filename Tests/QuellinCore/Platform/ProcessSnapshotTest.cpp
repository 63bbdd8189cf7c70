#include <algorithm>
#include <functional>
#include <numeric>
#include <span>
#include <utility>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "QuellinCore/Platform/ProcessSnapshot.h"
#include "Support/CaseNames.h"

namespace quellin {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using testing_support::namedBy;

using Lister = std::function<std::int64_t(std::span<std::int32_t>)>;

ProcessUsage usageOf(std::int32_t pid) {
  ProcessUsage usage;
  usage.userTimeNanoseconds = static_cast<std::uint64_t>(pid);
  return usage;
}

/// Lists as it is told; every process but number 3 has counters, and is called by its number.
class ListingScan : public ProcessScan {
 public:
  explicit ListingScan(Lister lister) : lister_(std::move(lister)) {}

  std::int64_t listProcessIDs(std::span<std::int32_t> ids) override { return lister_(ids); }

  std::optional<ProcessUsage> usage(std::int32_t pid) override {
    asked.push_back(pid);
    if (pid == 3) return std::nullopt;
    return usageOf(pid);
  }

  std::optional<std::string> name(std::int32_t pid) override {
    named.push_back(pid);
    return "process " + std::to_string(pid);
  }

  std::vector<std::int32_t> asked;
  std::vector<std::int32_t> named;

 private:
  Lister lister_;
};

std::vector<std::int32_t> listed(Lister lister) {
  ListingScan scan(std::move(lister));
  return processIDs(scan);
}

/// Lists ids from 1 up to `count`, as far as there is room, and remembers how much room there was.
class CountingScan final : public ListingScan {
 public:
  explicit CountingScan(std::size_t count)
      : ListingScan([this](std::span<std::int32_t> ids) { return list(ids); }), count_(count) {}

  std::vector<std::size_t> rooms;

 private:
  std::int64_t list(std::span<std::int32_t> ids) {
    rooms.push_back(ids.size());
    const auto filled = ids.first(std::min(count_, ids.size()));
    std::iota(filled.begin(), filled.end(), 1);
    return static_cast<std::int64_t>(filled.size_bytes());
  }

  std::size_t count_;
};

struct GrowthCase {
  std::size_t processes;
  std::size_t listed;
  std::vector<std::size_t> rooms;
};

class ProcessIDsTest : public ::testing::TestWithParam<GrowthCase> {};

TEST_P(ProcessIDsTest, DoublesTheRoomWhileAResultFillsIt) {
  CountingScan scan(GetParam().processes);
  const auto ids = processIDs(scan);
  EXPECT_EQ(scan.rooms, GetParam().rooms);
  ASSERT_EQ(ids.size(), GetParam().listed);
  for (std::size_t index = 0; index < ids.size(); ++index)
    ASSERT_EQ(ids[index], static_cast<std::int32_t>(index) + 1);
}

INSTANTIATE_TEST_SUITE_P(Cases, ProcessIDsTest,
                         ::testing::Values(GrowthCase{1, 1, {4096}}, GrowthCase{4095, 4095, {4096}},
                                           GrowthCase{4096, 4096, {4096, 8192}},
                                           GrowthCase{20000, 20000, {4096, 8192, 16384, 32768}},
                                           GrowthCase{65535, 65535, {4096, 8192, 16384, 32768, 65536}},
                                           GrowthCase{65536, 0, {4096, 8192, 16384, 32768, 65536}}),
                         namedBy(&GrowthCase::processes));

TEST(ProcessIDsRulesTest, GivesNoneWhenTheListFails) {
  EXPECT_THAT(listed([](std::span<std::int32_t>) { return std::int64_t{0}; }), IsEmpty());
  EXPECT_THAT(listed([](std::span<std::int32_t>) { return std::int64_t{-1}; }), IsEmpty());
}

TEST(ProcessIDsRulesTest, GivesNoneWhenTheListFailsInALargerRoom) {
  EXPECT_THAT(listed([](std::span<std::int32_t> ids) {
                return ids.size() == 4096 ? static_cast<std::int64_t>(ids.size_bytes()) : std::int64_t{0};
              }),
              IsEmpty());
}

TEST(ProcessIDsRulesTest, CountsWholeIDsOnly) {
  const auto ids = listed([](std::span<std::int32_t> buffer) {
    buffer[0] = 41;
    buffer[1] = 42;
    return std::int64_t{7};
  });
  EXPECT_THAT(ids, ElementsAre(41));
}

TEST(ProcessIDsRulesTest, HandsOutRoomFilledWithZeros) {
  static_cast<void>(listed([](std::span<std::int32_t> ids) {
    EXPECT_TRUE(std::ranges::all_of(ids, [](std::int32_t pid) { return pid == 0; }));
    return static_cast<std::int64_t>(ids.size_bytes());
  }));
}

ListingScan scanOf(std::vector<std::int32_t> pids) {
  return ListingScan([pids = std::move(pids)](std::span<std::int32_t> ids) {
    std::ranges::copy(pids, ids.begin());
    return static_cast<std::int64_t>(std::span(pids).size_bytes());
  });
}

ProcessAnswer answer(std::int32_t pid, std::optional<std::string> name) {
  return {.pid = pid, .usage = usageOf(pid), .name = std::move(name)};
}

TEST(ProcessSnapshotTest, HoldsEveryListedProcessInTheOrderOfTheHost) {
  ListingScan scan = scanOf({7, 3, 5});
  EXPECT_THAT(processSnapshot(scan, ProcessNames::read),
              ElementsAre(answer(7, "process 7"), (ProcessAnswer{.pid = 3, .usage = {}, .name = {}}),
                          answer(5, "process 5")));
  EXPECT_THAT(scan.named, ElementsAre(7, 5)) << "a process without counters is not asked for its name";
}

TEST(ProcessSnapshotTest, AsksForNoNameUnlessItIsTold) {
  ListingScan scan = scanOf({7, 5});
  EXPECT_THAT(processSnapshot(scan, ProcessNames::leftOut),
              ElementsAre(answer(7, std::nullopt), answer(5, std::nullopt)));
  EXPECT_THAT(scan.named, IsEmpty());
}

TEST(ProcessSnapshotTest, DoesNotAskTheKernelItself) {
  ListingScan scan = scanOf({0, -1, 5});
  EXPECT_THAT(processSnapshot(scan, ProcessNames::read),
              ElementsAre((ProcessAnswer{.pid = 0, .usage = {}, .name = {}}),
                          (ProcessAnswer{.pid = -1, .usage = {}, .name = {}}), answer(5, "process 5")));
  EXPECT_THAT(scan.asked, ElementsAre(5));
}

}  // namespace
}  // namespace quellin
