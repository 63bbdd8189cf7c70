#include "QuellinCore/Sessions/ContributorScores.h"

#include <algorithm>
#include <iterator>

#include "QuellinCore/Models/ProTelemetrySnapshot.h"

namespace quellin {

void ContributorScores::add(const Contribution& contribution) {
  Index& index = indices_.at(contribution.isMeasured ? 1 : 0);
  const auto known = index.find(std::string_view(contribution.name));
  if (known != index.end()) {
    accumulators_[known->second].score += contribution.score;
    return;
  }
  index.emplace(contribution.name, accumulators_.size());
  accumulators_.push_back({contribution.name, contribution.isMeasured, contribution.score});
}

void ContributorScores::add(std::span<const Contribution> contributions) {
  for (const Contribution& contribution : contributions) add(contribution);
}

std::vector<PowerSessionContributor> ContributorScores::top() const {
  std::vector<const Accumulator*> order;
  order.reserve(accumulators_.size());
  for (const Accumulator& entry : accumulators_) order.push_back(&entry);
  const auto topEnd = order.begin() + std::min(std::ssize(order), std::ptrdiff_t{topCount});
  // Entries lie in the order entered, so their addresses tell which of two came first.
  std::partial_sort(order.begin(), topEnd, order.end(),
                    [](const Accumulator* left, const Accumulator* right) {
                      return left->score != right->score ? left->score > right->score : left < right;
                    });
  order.erase(topEnd, order.end());
  std::vector<PowerSessionContributor> result;
  result.reserve(order.size());
  for (const Accumulator* entry : order) {
    result.push_back({.name = entry->name,
                      .source = entry->isMeasured ? std::string{powermetricsSource} : "proc_pid_rusage",
                      .score = entry->score,
                      .confidence = entry->isMeasured ? "derived" : "estimated"});
  }
  return result;
}

}  // namespace quellin
