#include "QuellinCore/Sessions/RecorderState.h"

#include "QuellinCore/Services/ProcessActivityService.h"
#include "QuellinCore/Sessions/StoredSample.h"

namespace quellin {
namespace {

// How many processes are kept of a measurement.
constexpr int processLimit = 5;

}  // namespace

PowerSessionRecorder::State::State(std::shared_ptr<MainExecutor> mainExecutor,
                                   std::shared_ptr<PowerSessionStore> sessionStore, Seconds interval,
                                   ProcessSampler sampler, Background& sampleOn, const CPUClock& cpuClock)
    : executor(std::move(mainExecutor)),
      store(std::move(sessionStore)),
      processSampleInterval(interval),
      processSampler_(std::make_shared<const ProcessSampler>(std::move(sampler))),
      background_(&sampleOn),
      meter_(cpuClock, store) {}

void PowerSessionRecorder::State::close() {
  signals.reset();
  if (!activeSession || !executor->isCurrent()) return;
  try {
    if (meter_.hasRecorded()) noteCost();
    store->context().save();
  } catch (const StoreError&) {
    return;  // what waits in the context is lost with it; the failure before this one told of that
  }
}

void PowerSessionRecorder::State::noteCost(std::optional<Instant> moment) {
  store->addCost(activeSession, meter_.take(moment));
}

std::shared_ptr<PowerSession> PowerSessionRecorder::State::start(const std::optional<std::string>& title,
                                                                 PowerSessionSource source,
                                                                 double sampleInterval, Instant startedAt) {
  const auto session = attempt([&] { return store->start(title, source, sampleInterval, startedAt); });
  if (session) {
    reset(*session);
    running.materialize(**session);
    setLastError(std::nullopt);
  }
  tell();
  return session.value_or(nullptr);
}

void PowerSessionRecorder::State::stop(Instant endedAt) { end(&PowerSessionStore::stop, endedAt); }

void PowerSessionRecorder::State::interrupt(Instant endedAt) { end(&PowerSessionStore::interrupt, endedAt); }

void PowerSessionRecorder::State::end(Ending ending, Instant endedAt) {
  const std::shared_ptr<PowerSession> session = activeSession;
  if (!session) return;
  noteCost();
  const auto hasEnded = attempt([&] {
    (*store.*ending)(session, endedAt);
    return true;
  });
  if (hasEnded) {
    // An observer of the session may have begun another one meanwhile.
    if (activeSession == session) reset(nullptr);
    setLastError(std::nullopt);
  }
  tell();
}

void PowerSessionRecorder::State::record(const SystemPowerState& state,
                                         const std::optional<ProTelemetrySnapshot>& proTelemetry,
                                         std::function<void()> completion) {
  auto snapshot = std::make_shared<Snapshot>(Snapshot{.session = activeSession,
                                                      .state = state,
                                                      .proTelemetry = proTelemetry,
                                                      .processActivities = {},
                                                      .completion = std::move(completion)});
  if (activeSession && needsProcessActivity(*snapshot)) return measure(std::move(snapshot));
  if (activeSession) append(*snapshot);
  finish(*snapshot);
}

bool PowerSessionRecorder::State::needsProcessActivity(const Snapshot& snapshot) const {
  if (snapshot.proTelemetry && snapshot.proTelemetry->isAvailable) return false;
  return !lastProcessSampleAt || processSampleInterval <= snapshot.state.timestamp - *lastProcessSampleAt;
}

void PowerSessionRecorder::State::measure(std::shared_ptr<Snapshot> snapshot) {
  auto take = [weak = weak_from_this(),
               snapshot = std::move(snapshot)](std::vector<ProcessActivityInfo> activities) {
    const auto alive = weak.lock();
    if (!alive || !alive->signals) return;
    snapshot->processActivities = std::move(activities);
    if (alive->activeSession == snapshot->session) {
      alive->setLastProcessSampleAt(snapshot->state.timestamp);
      alive->append(*snapshot);
    }
    alive->finish(*snapshot);
  };
  auto sample = [sampler = processSampler_] { return (*sampler)(processLimit, processMeasurementInterval); };
  runThenPost(*background_, executor, std::move(sample), std::move(take));
}

void PowerSessionRecorder::State::append(const Snapshot& snapshot) {
  const auto telemetry = accepted(snapshot.proTelemetry);
  if (meter_.isDue(snapshot.state.timestamp)) noteCost(snapshot.state.timestamp);
  wasRebuilt_ = false;
  const auto sample = attempt([&] {
    return store->appendSample(snapshot.session, snapshot.state, snapshot.processActivities, telemetry);
  });
  // An observer of the session may have stopped it just now.
  if (!sample || activeSession != snapshot.session) return;
  // Or have it summed up anew, this sample with it.
  if (!wasRebuilt_) running.ingest(snapshot.state, snapshot.processActivities, telemetry);
  running.materialize(*activeSession);
  changes_.activeSummary = true;
  if (lastError) setLastError(std::nullopt);
}

void PowerSessionRecorder::State::finish(const Snapshot& snapshot) {
  tell();
  if (signals && snapshot.completion) snapshot.completion();
}

std::optional<ProTelemetrySnapshot> PowerSessionRecorder::State::accepted(
    const std::optional<ProTelemetrySnapshot>& proTelemetry) {
  if (!proTelemetry || !proTelemetry->isAvailable) return std::nullopt;
  if (lastProTelemetrySampledAt && !(proTelemetry->sampledAt > *lastProTelemetrySampledAt)) {
    return std::nullopt;
  }
  setLastProTelemetrySampledAt(proTelemetry->sampledAt);
  return proTelemetry;
}

void PowerSessionRecorder::State::refreshActiveSession() {
  reloadActiveSession();
  tell();
}

void PowerSessionRecorder::State::refreshSummary() {
  rebuild();
  tell();
}

std::vector<std::shared_ptr<PowerSession>> PowerSessionRecorder::State::sessions() {
  auto result = attempt([&] { return store->sessions(); });
  tell();
  return std::move(result).value_or(std::vector<std::shared_ptr<PowerSession>>());
}

PowerSessionSummary PowerSessionRecorder::State::summary(const std::shared_ptr<PowerSession>& session) {
  auto result = attempt([&] { return store->summary(session); });
  tell();
  return std::move(result).value_or(PowerSessionSummary::empty());
}

void PowerSessionRecorder::State::remove(const std::shared_ptr<PowerSession>& session) {
  attempt([&] {
    store->remove(session);
    return true;
  });
  // Also when the deletion is yet to be saved: the store finds the session no more, and takes no samples for
  // it.
  reloadActiveSession();
  tell();
}

void PowerSessionRecorder::State::reloadActiveSession() {
  const auto found = attempt([&] { return store->activeSession(); });
  if (!found && !(activeSession && activeSession->isDeleted())) return;
  if (found.value_or(nullptr) != activeSession) leaveSession();
  activeSession = found.value_or(nullptr);
  changes_.activeSession = true;
  rebuild();
}

// Others have ended it, perhaps: what recording it here has cost so far belongs to it.
void PowerSessionRecorder::State::leaveSession() {
  if (activeSession && meter_.hasRecorded()) {
    noteCost();
    attempt([&] {
      store->context().save();
      return true;
    });
  }
  meter_.restart();
}

void PowerSessionRecorder::State::rebuild() {
  running = RunningSummary();
  wasRebuilt_ = true;
  if (activeSession) {
    JSONDecoder decoder;
    attempt([&] {
      visitSamples(*store, activeSession,
                   [&](const StoredSample& sample) { running.ingestStored(sample, decoder); });
      return true;
    });
    running.materialize(*activeSession);
  }
  changes_.activeSummary = true;
  setLastProTelemetrySampledAt(running.lastProTelemetrySampledAt());
}

void PowerSessionRecorder::State::reset(std::shared_ptr<PowerSession> session) {
  if (session != activeSession) meter_.restart();
  activeSession = std::move(session);
  running = RunningSummary();
  changes_.activeSession = true;
  changes_.activeSummary = true;
  setLastProcessSampleAt(std::nullopt);
  setLastProTelemetrySampledAt(std::nullopt);
}

void PowerSessionRecorder::State::setLastError(std::optional<std::string> text) {
  lastError = std::move(text);
  changes_.lastError = true;
}

void PowerSessionRecorder::State::setLastProcessSampleAt(std::optional<Instant> instant) {
  if (std::exchange(lastProcessSampleAt, instant) != instant) changes_.lastProcessSampleAt = true;
}

void PowerSessionRecorder::State::setLastProTelemetrySampledAt(std::optional<Instant> instant) {
  if (std::exchange(lastProTelemetrySampledAt, instant) != instant) changes_.lastProTelemetrySampledAt = true;
}

void PowerSessionRecorder::State::tell() {
  const Changes changes = std::exchange(changes_, {});
  // An observer may close this.
  const auto notify = [&](bool hasChanged, auto signal, const auto& value) {
    if (hasChanged && signals) ((*signals).*signal).notify(value);
  };
  notify(changes.activeSession, &Signals::activeSession, activeSession);
  notify(changes.activeSummary, &Signals::activeSummary, running.summary());
  notify(changes.lastError, &Signals::lastError, lastError);
  notify(changes.lastProcessSampleAt, &Signals::lastProcessSampleAt, lastProcessSampleAt);
  notify(changes.lastProTelemetrySampledAt, &Signals::lastProTelemetrySampledAt, lastProTelemetrySampledAt);
}

}  // namespace quellin
