// Records a session of the given length as fast as it can, through the recorder, into a store file: thirty
// days at one sample a second are 2592000. Fails when a figure is not the one that follows from the length,
// or when memory grows with it. Prints what it cost, which nothing depends on. usage: LongSession SAMPLES

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <exception>
#include <filesystem>
#include <iterator>
#include <limits>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "Support/KnownStore.h"
#include "Support/ProcessResources.h"
#include "Support/TemporaryFolder.h"

namespace {

using namespace quellin;
using namespace quellin::testing_support;

#if defined(__SANITIZE_ADDRESS__)
constexpr bool keepsWhatIsFreed = true;  // the sanitizer, to find uses of it
#else
constexpr bool keepsWhatIsFreed = false;
#endif

void require(bool isSo, const std::string& what) {
  if (!isSo) throw std::runtime_error(what);
}

// Time that the processor spent on this process, so that others on the machine matter less.
double processorSeconds() { return static_cast<double>(std::clock()) / CLOCKS_PER_SEC; }

/// How much memory a session takes once it has some length.
struct MemoryMark {
  std::int64_t samples = 0;
  std::int64_t heap = heapBytesInUse();
  std::int64_t peak = peakResidentBytes();
};

/// What reading the session took at one length.
struct ReadingCost {
  std::int64_t samples = 0;
  double summarySeconds = 0;
  double exportSeconds = 0;
  std::int64_t exportBytes = 0;
};

/// A session that grows sample by sample.
class GrowingSession {
 public:
  void record() {
    recording_.recordNext();
    require(!recorder().lastError(), recorder().lastError().value_or(""));
  }

  void requireLiveSummaryKnown() { requireKnown(recorder().activeSummary(), "the live"); }

  /// Reads it as another process would.
  [[nodiscard]] ReadingCost read() const {
    ReadOnly reader(path_);
    ReadingCost cost{.samples = recording_.samples()};
    double begin = processorSeconds();
    requireKnown(reader.store.summary(reader.session), "the stored");
    cost.summarySeconds = processorSeconds() - begin;
    std::int64_t lines = 0;
    begin = processorSeconds();
    reader.store.exportJSONL(reader.session, recording_.known().instantOf(0), [&](std::string_view piece) {
      cost.exportBytes += std::ssize(piece);
      lines += std::ranges::count(piece, '\n');
    });
    cost.exportSeconds = processorSeconds() - begin;
    require(lines == recording_.samples() + 1, "the export does not have a line for each sample");
    return cost;
  }

  void stop() {
    recording_.stop();
    require(!recorder().lastError() && !recorder().activeSession(), "the session did not end");
    ReadOnly reader(path_);
    require(reader.store.check(*reader.session) == SessionCheck{.sampleCount = recording_.samples()},
            "samples are lost or damaged");
  }

  [[nodiscard]] std::uintmax_t storeBytes() const { return std::filesystem::file_size(path_); }
  [[nodiscard]] std::uintmax_t logBytes() const {
    return std::filesystem::file_size(path_.string() + "-wal");
  }

 private:
  struct ReadOnly {
    explicit ReadOnly(const std::filesystem::path& path) : store("0.9.4", path) {}
    PowerSessionStore store;
    std::shared_ptr<PowerSession> session = store.sessions().at(0);
  };

  [[nodiscard]] PowerSessionRecorder& recorder() { return recording_.recorder(); }

  void requireKnown(const PowerSessionSummary& summary, const std::string& whose) const {
    require(summary.sampleCount == recording_.samples(), whose + " summary does not count the samples");
    const std::string difference = recording_.known().difference(summary);
    require(difference.empty(), whose + " summary: " + difference);
  }

  TemporaryFolder folder_;
  std::filesystem::path path_ = folder_.path() / "long.store";
  KnownRecording recording_{path_, KnownSession()};
};

// From half the length on, when all caches are full, only the segments are added to what a session keeps.
void requireFlat(const MemoryMark& tenth, const MemoryMark& middle, const MemoryMark& end) {
  constexpr std::int64_t slack = 64 * 1024;
  constexpr std::int64_t bytesPerSegment = 1024;
  constexpr std::int64_t mostResidentGrowth = 24 * 1024 * 1024;
  const std::int64_t segments = (end.samples - middle.samples) / KnownSession::segmentLength + 1;
  require(end.heap - middle.heap <= slack + bytesPerSegment * segments, "the heap grows with the samples");
  require(keepsWhatIsFreed || end.peak - tenth.peak <= mostResidentGrowth,
          "the resident memory grows with the samples");
}

// The worst of the costs per sample over the best: 1 when cost is linear.
double unevenness(const std::vector<ReadingCost>& costs, double ReadingCost::* seconds) {
  double least = std::numeric_limits<double>::infinity();
  double most = 0;
  for (const ReadingCost& cost : costs) {
    const double perSample = cost.*seconds / static_cast<double>(cost.samples);
    least = std::min(least, perSample);
    most = std::max(most, perSample);
  }
  return most / least;
}

void run(std::int64_t samples) {
  constexpr std::int64_t tenths = 10;
  const std::array lengthsRead{samples / 8, samples / 4, samples / 2, samples};
  GrowingSession session;
  std::vector<MemoryMark> memory;
  std::vector<ReadingCost> costs;
  double recording = 0;
  std::printf("%10s %10s %12s %12s %14s %12s\n", "samples", "seconds", "heap", "peak", "store", "log");
  for (std::int64_t sample = 0; sample < samples;) {
    const double begin = processorSeconds();
    do {
      session.record();
      ++sample;
    } while (sample % (samples / tenths) != 0 && sample < samples &&
             std::ranges::find(lengthsRead, sample) == lengthsRead.end());
    recording += processorSeconds() - begin;
    session.requireLiveSummaryKnown();
    if (sample % (samples / tenths) == 0) {
      const MemoryMark& mark = memory.emplace_back(MemoryMark{.samples = sample});
      std::printf("%10lld %10.1f %12lld %12lld %14llu %12llu\n", static_cast<long long>(sample), recording,
                  static_cast<long long>(mark.heap), static_cast<long long>(mark.peak),
                  static_cast<unsigned long long>(session.storeBytes()),
                  static_cast<unsigned long long>(session.logBytes()));
      std::fflush(stdout);
    }
    if (std::ranges::find(lengthsRead, sample) != lengthsRead.end()) costs.push_back(session.read());
  }
  session.stop();
  requireFlat(memory.at(0), memory.at(tenths / 2 - 1), memory.back());
  std::printf("\n%10s %10s %10s %14s\n", "samples", "summary s", "export s", "export bytes");
  for (const ReadingCost& cost : costs) {
    std::printf("%10lld %10.3f %10.2f %14lld\n", static_cast<long long>(cost.samples), cost.summarySeconds,
                cost.exportSeconds, static_cast<long long>(cost.exportBytes));
  }
  std::printf(
      "\nrecording: %.1f us a sample; the dearest sample of a reading costs %.2f (summary) and %.2f "
      "(export) times the cheapest\n",
      recording / static_cast<double>(samples) * 1e6, unevenness(costs, &ReadingCost::summarySeconds),
      unevenness(costs, &ReadingCost::exportSeconds));
}

}  // namespace

int main(int argc, char** argv) try {
  constexpr std::int64_t fewest = 1000;
  const std::int64_t samples = argc == 2 ? std::strtoll(argv[1], nullptr, 10) : 0;
  if (samples < fewest || samples % fewest != 0) return 64;
  run(samples);
  return 0;
} catch (const std::exception& error) {
  std::fprintf(stderr, "%s\n", error.what());
  return 1;
}
