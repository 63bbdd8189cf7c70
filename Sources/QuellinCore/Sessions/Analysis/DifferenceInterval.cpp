#include "QuellinCore/Sessions/Analysis/DifferenceInterval.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <random>
#include <utility>
#include <vector>

#include <boost/math/distributions/students_t.hpp>

#include "QuellinCore/Sessions/Analysis/Mean.h"

namespace quellin {
namespace {

constexpr double level = 0.95;

// The variance of the mean of independent values.
double varianceOfMean(std::span<const double> values) {
  const double mean = meanOf(values);
  double squares = 0;
  for (const double value : values) squares += (value - mean) * (value - mean);
  const auto count = static_cast<double>(values.size());
  return squares / (count - 1) / count;
}

// Twice the cube root, rounded up, in whole numbers: a root may be rounded differently elsewhere.
std::size_t blockLength(std::size_t count) {
  std::size_t length = 1;
  while (length * length * length < 8 * count) ++length;
  return length;
}

// The sums of the first values, from none to all, each value less the mean.
std::vector<double> runningSums(std::span<const double> values, double mean) {
  std::vector<double> sums{0};
  sums.reserve(values.size() + 1);
  for (const double value : values) sums.push_back(sums.back() + (value - mean));
  return sums;
}

// Draws the mean of a series made of random blocks of the original. The library's distributions differ from
// one library to the next; the engine does not.
class BlockResampler {
 public:
  explicit BlockResampler(std::span<const double> values)
      : mean_(meanOf(values)),
        count_(values.size()),
        length_(blockLength(count_)),
        sums_(runningSums(values, mean_)),
        expected_(expectedSum()),
        widening_(std::sqrt(static_cast<double>(count_) / static_cast<double>(count_ - length_))) {}

  [[nodiscard]] std::size_t length() const { return length_; }

  double operator()(std::mt19937_64& random) const {
    double sum = -expected_;
    for (std::size_t drawn = 0; drawn < count_; drawn += length_)
      sum += block(random() % starts(), std::min(length_, count_ - drawn));
    return mean_ + widening_ * sum / static_cast<double>(count_);
  }

 private:
  [[nodiscard]] std::size_t starts() const { return count_ - length_ + 1; }

  [[nodiscard]] double block(std::size_t start, std::size_t taken) const {
    return sums_[start + taken] - sums_[start];
  }

  [[nodiscard]] double expectedSum() const {
    const std::size_t wholeBlocks = count_ / length_;
    return static_cast<double>(wholeBlocks) * expectedBlock(length_) + expectedBlock(count_ % length_);
  }

  [[nodiscard]] double expectedBlock(std::size_t taken) const {
    double sum = 0;
    for (std::size_t start = 0; start < starts(); ++start) sum += block(start, taken);
    return sum / static_cast<double>(starts());
  }

  double mean_;
  std::size_t count_;
  std::size_t length_;
  std::vector<double> sums_;  // a block is one subtraction
  double expected_;           // the sum to expect: not 0, for fewer blocks hold a value at either end
  double widening_;           // for the variance that blocks lose by being parts of one series
};

}  // namespace

std::optional<DifferenceInterval> welchInterval(std::span<const double> a, std::span<const double> b) {
  if (a.size() < 2 || b.size() < 2) return std::nullopt;
  const double varianceA = varianceOfMean(a);
  const double varianceB = varianceOfMean(b);
  const double variance = varianceA + varianceB;
  double reach = 0;
  if (variance > 0) {
    const double shareA = varianceA / variance;
    const double shareB = varianceB / variance;
    const double freedom = 1 / (shareA * shareA / static_cast<double>(a.size() - 1) +
                                shareB * shareB / static_cast<double>(b.size() - 1));
    const boost::math::students_t distribution(freedom);
    reach = boost::math::quantile(distribution, (1 + level) / 2) * std::sqrt(variance);
  }
  const double difference = meanOf(b) - meanOf(a);
  return DifferenceInterval{.lower = difference - reach,
                            .upper = difference + reach,
                            .level = level,
                            .method = "Welch's t",
                            .blockLengthA = std::nullopt,
                            .blockLengthB = std::nullopt};
}

std::optional<DifferenceInterval> bootstrapInterval(std::span<const double> a, std::span<const double> b) {
  constexpr std::size_t resamplings = 4000;
  if (a.size() < fewestToResample || b.size() < fewestToResample) return std::nullopt;
  // In an order that does not depend on the side, so that the other way round gives the mirrored interval.
  if (std::ranges::lexicographical_compare(b, a)) {
    auto mirrored = bootstrapInterval(b, a);
    mirrored->lower = 0 - std::exchange(mirrored->upper, 0 - mirrored->lower);
    std::swap(mirrored->blockLengthA, mirrored->blockLengthB);
    return mirrored;
  }
  // Two generators: blocks drawn from the same places of both would make what they share pass for certainty.
  std::mt19937_64 randomA(1);
  std::mt19937_64 randomB(2);
  const BlockResampler resampleA(a);
  const BlockResampler resampleB(b);
  std::vector<double> differences(resamplings);
  std::ranges::generate(differences, [&] { return resampleB(randomB) - resampleA(randomA); });
  std::ranges::sort(differences);
  const auto outside = static_cast<std::size_t>(resamplings * (1 - level) / 2);
  return DifferenceInterval{.lower = differences[outside],
                            .upper = differences[resamplings - 1 - outside],
                            .level = level,
                            .method = "moving-block bootstrap",
                            .blockLengthA = static_cast<std::int64_t>(resampleA.length()),
                            .blockLengthB = static_cast<std::int64_t>(resampleB.length())};
}

}  // namespace quellin
