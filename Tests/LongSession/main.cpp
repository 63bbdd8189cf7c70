// Records a session of the given length as fast as it can, through the recorder, into a store file: thirty
// days at one sample a second are 2592000. Fails when a figure is not the one that follows from the length,
// when memory or the log grows with it, or when a sample of a long session is dearer to read than one of a
// short one. Prints what it cost. usage: LongSession SAMPLES

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <exception>
#include <filesystem>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "LongSession/AllocationSpan.h"
#include "LongSession/SessionCosts.h"
#include "QuellinCore/Support/Number.h"
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

/// What the cheapest of several runs of `work` took: as many as fill a quarter of a second.
template <class Work>
ReadingCost costOf(Work work) {
  constexpr double longEnough = 0.25;
  ReadingCost least;
  double spent = 0;
  do {
    const AllocationSpan span;
    const double begin = processorSeconds();
    work();
    const double seconds = processorSeconds() - begin;
    if (spent == 0 || seconds < least.seconds)
      least = {.seconds = seconds, .allocations = span.requests(), .mostHeld = span.mostHeld()};
    spent += seconds;
  } while (spent < longEnough);
  return least;
}

/// A session that grows sample by sample.
class GrowingSession {
 public:
  void record() {
    recording_.recordNext();
    require(!recorder().lastError(), recorder().lastError().value_or(""));
  }

  void requireLiveSummaryKnown() { requireKnown(recorder().activeSummary(), "the live"); }

  /// Reads it as another process would.
  [[nodiscard]] ReadingCosts read() const {
    ReadOnly reader(path_);
    return {.samples = recording_.samples(),
            .summary = costOf([&] { requireKnown(reader.store.summary(reader.session), "the stored"); }),
            .exporting = costOf([&] { requireWholeExport(reader); })};
  }

  void stop() {
    recording_.stop();
    require(!recorder().lastError() && !recorder().activeSession(), "the session did not end");
    ReadOnly reader(path_);
    require(reader.store.check(*reader.session) == SessionCheck{.sampleCount = recording_.samples()},
            "samples are lost or damaged");
  }

  [[nodiscard]] std::uintmax_t storeBytes() const { return std::filesystem::file_size(path_); }
  [[nodiscard]] RecordingFootprint footprint() const {
    return {.samples = recording_.samples(),
            .heap = heapBytesInUse(),
            .resident = peakResidentBytes(),
            .log = static_cast<std::int64_t>(std::filesystem::file_size(path_.string() + "-wal"))};
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

  void requireWholeExport(ReadOnly& reader) const {
    std::int64_t lines = 0;
    reader.store.exportJSONL(reader.session, recording_.known().instantOf(0),
                             [&](std::string_view piece) { lines += std::ranges::count(piece, '\n'); });
    require(lines == recording_.samples() + 1, "the export does not have a line for each sample");
  }

  TemporaryFolder folder_;
  std::filesystem::path path_ = folder_.path() / "long.store";
  KnownRecording recording_{path_, KnownSession()};
};

void printHeading() {
  std::printf("%10s %10s %12s %12s %14s %12s\n", "samples", "seconds", "heap", "resident", "store", "log");
}

void print(const RecordingFootprint& footprint, double seconds, std::uintmax_t storeBytes) {
  std::printf("%10lld %10.1f %12lld %12lld %14llu %12lld\n", static_cast<long long>(footprint.samples),
              seconds, static_cast<long long>(footprint.heap), static_cast<long long>(footprint.resident),
              static_cast<unsigned long long>(storeBytes), static_cast<long long>(footprint.log));
  std::fflush(stdout);
}

void print(const std::vector<ReadingCosts>& costs) {
  std::printf("\n%10s  %-8s %10s %12s %12s\n", "samples", "reading", "seconds", "allocations", "most held");
  for (const ReadingCosts& cost : costs) {
    for (const auto& [name, reading] : {std::pair{"summary", cost.summary}, {"export", cost.exporting}}) {
      std::printf("%10lld  %-8s %10.3f %12lld %12lld\n", static_cast<long long>(cost.samples), name,
                  reading.seconds, static_cast<long long>(reading.allocations),
                  static_cast<long long>(reading.mostHeld));
    }
  }
}

void run(std::int64_t samples) {
  constexpr std::int64_t tenths = 10;
  const std::array lengthsRead{samples / 8, samples / 4, samples / 2, samples};
  GrowingSession session;
  std::vector<RecordingFootprint> footprints;
  std::vector<ReadingCosts> costs;
  double recording = 0;
  printHeading();
  for (std::int64_t sample = 0; sample < samples;) {
    const double begin = processorSeconds();
    do {
      session.record();
      ++sample;
    } while (sample % (samples / tenths) != 0 && sample < samples &&
             std::ranges::find(lengthsRead, sample) == lengthsRead.end());
    recording += processorSeconds() - begin;
    session.requireLiveSummaryKnown();
    if (sample % (samples / tenths) == 0)
      print(footprints.emplace_back(session.footprint()), recording, session.storeBytes());
    if (std::ranges::find(lengthsRead, sample) != lengthsRead.end()) costs.push_back(session.read());
  }
  session.stop();
  print(costs);
  std::printf("\nrecording: %.1f us a sample\n", recording / static_cast<double>(samples) * 1e6);
  const std::string fault =
      faultOfRecording(footprints.at(0), footprints.at(tenths / 2 - 1), footprints.back(),
                       KnownSession::segmentLength, !keepsWhatIsFreed);
  require(fault.empty(), fault);
  const std::string readingFault = faultOfReading(costs, KnownSession::segmentLength);
  require(readingFault.empty(), readingFault);
}

}  // namespace

int main(int argc, char** argv) try {
  constexpr std::int64_t fewest = 1000;
  const std::int64_t samples = argc == 2 ? parseNumber<std::int64_t>(argv[1]).value_or(0) : 0;
  if (samples < fewest || samples % fewest != 0) {
    std::fprintf(stderr, "usage: LongSession SAMPLES (a multiple of %lld)\n", static_cast<long long>(fewest));
    return 64;
  }
  run(samples);
  return 0;
} catch (const std::exception& error) {
  std::fprintf(stderr, "%s\n", error.what());
  return 1;
}
