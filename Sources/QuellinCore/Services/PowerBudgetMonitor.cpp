#include "QuellinCore/Services/PowerBudgetMonitor.h"

#include <string_view>

#include <fmt/format.h>

namespace quellin {
namespace {

void appendIfExceeded(std::vector<PowerBudgetMonitor::Alert>& alerts, std::string_view component,
                      double watts, std::optional<double> threshold) {
  if (!threshold || !(watts > *threshold)) return;
  alerts.push_back({.component = std::string(component),
                    .currentWatts = watts,
                    .thresholdWatts = *threshold,
                    .message = fmt::format("{} power ({:.1f}W) exceeds threshold ({:.1f}W)", component, watts,
                                           *threshold)});
}

}  // namespace

std::vector<PowerBudgetMonitor::Alert> PowerBudgetMonitor::check(const PowerMetrics& metrics) const {
  std::vector<Alert> alerts;
  appendIfExceeded(alerts, "CPU", metrics.cpuPower, cpuThreshold);
  appendIfExceeded(alerts, "GPU", metrics.gpuPower, gpuThreshold);
  appendIfExceeded(alerts, "ANE", metrics.anePower, aneThreshold);
  appendIfExceeded(alerts, "System", metrics.systemPower, systemThreshold);
  return alerts;
}

}  // namespace quellin
