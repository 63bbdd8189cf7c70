#include <limits>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "QuellinCore/Services/PowerBudgetMonitor.h"
#include "Support/CaseNames.h"

namespace quellin {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using testing_support::namedBy;
using Alert = PowerBudgetMonitor::Alert;

PowerMetrics metrics(double cpu, double gpu, double ane, double system) {
  PowerMetrics result;
  result.cpuPower = cpu;
  result.gpuPower = gpu;
  result.anePower = ane;
  result.systemPower = system;
  return result;
}

TEST(PowerBudgetMonitorTest, RaisesNothingWithoutLimits) {
  EXPECT_THAT(PowerBudgetMonitor{}.check(metrics(1e9, 1e9, 1e9, 1e9)), IsEmpty());
}

TEST(PowerBudgetMonitorTest, RaisesNothingAtTheLimitItself) {
  const PowerBudgetMonitor monitor{.cpuThreshold = 10};
  EXPECT_THAT(monitor.check(metrics(10, 99, 99, 99)), IsEmpty());
  EXPECT_EQ(monitor.check(metrics(10.0001, 0, 0, 0)).size(), 1U);
}

TEST(PowerBudgetMonitorTest, ChecksEachComponentAgainstItsOwnLimitInAFixedOrder) {
  const PowerBudgetMonitor monitor{
      .cpuThreshold = 1, .gpuThreshold = 1, .aneThreshold = 1, .systemThreshold = 1};
  EXPECT_THAT(monitor.check(metrics(2, 3, 4, 5)),
              ElementsAre(Alert{"CPU", 2, 1, "CPU power (2.0W) exceeds threshold (1.0W)"},
                          Alert{"GPU", 3, 1, "GPU power (3.0W) exceeds threshold (1.0W)"},
                          Alert{"ANE", 4, 1, "ANE power (4.0W) exceeds threshold (1.0W)"},
                          Alert{"System", 5, 1, "System power (5.0W) exceeds threshold (1.0W)"}));
  EXPECT_THAT(monitor.check(metrics(0, 3, 0, 1)),
              ElementsAre(Alert{"GPU", 3, 1, "GPU power (3.0W) exceeds threshold (1.0W)"}));
}

TEST(PowerBudgetMonitorTest, MixesUpNoLimits) {
  const PowerBudgetMonitor monitor{
      .cpuThreshold = 10, .gpuThreshold = 20, .aneThreshold = 30, .systemThreshold = 40};
  EXPECT_THAT(monitor.check(metrics(10, 20, 30, 40)), IsEmpty());
  EXPECT_THAT(monitor.check(metrics(11, 21, 31, 41)),
              ElementsAre(Alert{"CPU", 11, 10, "CPU power (11.0W) exceeds threshold (10.0W)"},
                          Alert{"GPU", 21, 20, "GPU power (21.0W) exceeds threshold (20.0W)"},
                          Alert{"ANE", 31, 30, "ANE power (31.0W) exceeds threshold (30.0W)"},
                          Alert{"System", 41, 40, "System power (41.0W) exceeds threshold (40.0W)"}));
}

struct MessageCase {
  const char* name;
  double watts;
  double threshold;
  std::string message;
};

class PowerBudgetMessageTest : public ::testing::TestWithParam<MessageCase> {};

TEST_P(PowerBudgetMessageTest, RoundsToOneDecimal) {
  PowerBudgetMonitor monitor;
  monitor.systemThreshold = GetParam().threshold;
  EXPECT_EQ(monitor.check(metrics(0, 0, 0, GetParam().watts)).at(0).message, GetParam().message);
}

INSTANTIATE_TEST_SUITE_P(
    Cases, PowerBudgetMessageTest,
    ::testing::Values(MessageCase{"Up", 45.06, 30, "System power (45.1W) exceeds threshold (30.0W)"},
                      MessageCase{"Down", 12.34, 10, "System power (12.3W) exceeds threshold (10.0W)"},
                      MessageCase{"HalvesToEven", 0.25, 0.125,
                                  "System power (0.2W) exceeds threshold (0.1W)"},
                      MessageCase{"ToNothing", 0.04, -0.04, "System power (0.0W) exceeds threshold (-0.0W)"},
                      MessageCase{"OfLargeNumbers", 1e15, 123456.75,
                                  "System power (1000000000000000.0W) exceeds threshold (123456.8W)"},
                      MessageCase{"OfInfinity", std::numeric_limits<double>::infinity(), 1,
                                  "System power (infW) exceeds threshold (1.0W)"}),
    namedBy(&MessageCase::name));

TEST(PowerBudgetMonitorTest, RaisesNothingForNaN) {
  PowerBudgetMonitor monitor;
  monitor.cpuThreshold = 1;
  EXPECT_THAT(monitor.check(metrics(std::numeric_limits<double>::quiet_NaN(), 0, 0, 0)), IsEmpty());
}

}  // namespace
}  // namespace quellin
