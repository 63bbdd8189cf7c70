#include "Support/KnownStore.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include "QuellinCore/Sessions/PowerSessionCoders.h"
#include "QuellinCore/Sessions/PowerSessionExport.h"

namespace quellin::testing_support {
namespace {

std::string faultOfSamples(PowerSessionStore& store, const std::shared_ptr<PowerSession>& session,
                           const KnownSession& known, std::int64_t fewest) {
  std::int64_t next = 0;
  for (const auto& sample : store.samples(session)) {
    const SystemPowerState state = known.state(next);
    if (sample->timestamp() != state.timestamp || sample->totalWatts() != state.power->systemPower)
      return "sample " + std::to_string(next) + " is not as it was recorded";
    ++next;
  }
  return next >= fewest ? "" : "samples have gone";
}

// The document is of one moment: as many lines as the summary in its first one counts, the last one whole.
std::string faultOfExport(std::string_view document, const KnownSession& known, std::int64_t fewest) {
  JSONDecoder decoder;
  if (!document.ends_with('\n')) return "the export is torn";
  document.remove_suffix(1);
  const auto envelope =
      decoder.decode<PowerSessionExportEnvelope>(std::string(document.substr(0, document.find('\n'))));
  const auto line =
      decoder.decode<PowerSessionSampleLine>(std::string(document.substr(document.rfind('\n') + 1)));
  if (!envelope || !line) return "a line of the export cannot be read";
  const PowerSessionSummary& summary = envelope->summary;
  if (summary.sampleCount < fewest) return "the export lacks samples";
  if (std::ranges::count(document, '\n') != summary.sampleCount)
    return "the export has more or fewer lines than its summary counts";
  if (line->sample.timestamp != known.instantOf(summary.sampleCount - 1))
    return "the export ends with another sample";
  return known.difference(summary);
}

std::string faultOf(PowerSessionStore& store, const std::shared_ptr<PowerSession>& session,
                    const KnownSession& known, std::int64_t& samples) {
  const PowerSessionSummary summary = store.summary(session);
  samples = summary.sampleCount;
  if (const auto fault = known.difference(summary); !fault.empty()) return "the summary: " + fault;
  const SessionCheck check = store.check(*session);
  if (!check.isWhole() || check.sampleCount < samples) return "the check finds damage";
  if (store.coverage(session).gapCount != 0) return "the coverage finds a gap";
  if (auto fault = faultOfSamples(store, session, known, samples); !fault.empty()) return fault;
  return faultOfExport(store.exportJSONL(session, known.instantOf(0)), known, samples);
}

}  // namespace

KnownRecording::KnownRecording(const std::filesystem::path& path, KnownSession known, StoreFileOptions file)
    : known_(std::move(known)),
      clock_(known_.instantOf(0)),
      recorder_(
          executor_,
          std::make_shared<PowerSessionStore>(
              "0.9.4", path, false,
              PowerSessionStoreSurroundings{
                  .executor = executor_, .clock = clock_, .dateText = dateText_, .file = std::move(file)}),
          known_.processInterval(), [](int, Seconds) { return KnownSession::activities(); },
          std::make_unique<ManualBackground>(background_), clock_) {
  recorder_.start("Known", PowerSessionSource::cli, known_.interval().count(), known_.instantOf(0));
}

void KnownRecording::recordNext() {
  clock_.set(known_.instantOf(samples_));
  recorder_.record(known_.state(samples_), known_.telemetry(samples_));
  while (background_->runOne()) executor_->runPosted();
  ++samples_;
}

KnownReading readKnownStore(const std::filesystem::path& path, const KnownSession& known) {
  KnownReading reading;
  try {
    PowerSessionStore store("reader", path);
    const auto sessions = store.sessions();
    if (sessions.size() != 1) {
      reading.fault = "there are " + std::to_string(sessions.size()) + " sessions";
      return reading;
    }
    reading.isOver = sessions.front()->status() == PowerSessionStatus::completed;
    reading.fault = faultOf(store, sessions.front(), known, reading.samples);
  } catch (const StoreError& error) {
    reading.fault = error.what();
  }
  return reading;
}

}  // namespace quellin::testing_support
