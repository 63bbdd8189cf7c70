#pragma once

#include <array>
#include <cstddef>
#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "QuellinCore/Sessions/PowerSessionSummary.h"
#include "QuellinCore/Sessions/SampleFacts.h"

namespace quellin {

/// Adds up what processes cost. Measured and sampled contributions count apart, each by the name of the
/// process, not by its identifier: restarts and several processes of one name are one entry. A plain value:
/// several threads may read one, as long as none changes it.
class ContributorScores {
 public:
  /// How many contributors a summary names.
  static constexpr std::size_t topCount = 5;

  void add(const Contribution& contribution);             ///< to the entry of its kind and name
  void add(std::span<const Contribution> contributions);  ///< each in turn

  /// The entries with the highest scores, highest first; of equal ones the earlier entered.
  [[nodiscard]] std::vector<PowerSessionContributor> top() const;

 private:
  struct Hash {
    using is_transparent = void;
    std::size_t operator()(std::string_view name) const { return std::hash<std::string_view>{}(name); }
  };
  using Index = std::unordered_map<std::string, std::size_t, Hash, std::equal_to<>>;

  struct Accumulator {
    std::string name;
    bool isMeasured = false;
    double score = 0;
  };

  std::array<Index, 2> indices_;  // of sampled and of measured entries
  std::vector<Accumulator> accumulators_;
};

}  // namespace quellin
