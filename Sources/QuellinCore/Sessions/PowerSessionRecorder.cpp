#include "QuellinCore/Sessions/PowerSessionRecorder.h"

#include <utility>

#include "QuellinCore/Services/ProcessActivityService.h"
#include "QuellinCore/Sessions/RecorderState.h"

namespace quellin {

PowerSessionRecorder::PowerSessionRecorder(std::shared_ptr<MainExecutor> executor,
                                           std::shared_ptr<PowerSessionStore> store,
                                           Seconds processSampleInterval, ProcessSampler processSampler,
                                           std::unique_ptr<Background> background, const WallClock& wallClock,
                                           const CPUClock& cpuClock)
    : state_(std::make_shared<State>(std::move(executor), std::move(store), processSampleInterval,
                                     std::move(processSampler), *background, cpuClock)),
      background_(std::move(background)),
      wallClock_(&wallClock) {
  state()->refreshActiveSession();
}

PowerSessionRecorder::~PowerSessionRecorder() { state_->close(); }

std::shared_ptr<PowerSessionRecorder::State> PowerSessionRecorder::state() const {
  requireCurrent(*state_->executor);
  return state_;
}

const std::shared_ptr<PowerSession>& PowerSessionRecorder::activeSession() const {
  return state()->activeSession;
}

const PowerSessionSummary& PowerSessionRecorder::activeSummary() const { return state()->running.summary(); }

const std::optional<std::string>& PowerSessionRecorder::lastError() const { return state()->lastError; }

const std::shared_ptr<PowerSessionStore>& PowerSessionRecorder::store() const { return state()->store; }

Seconds PowerSessionRecorder::processSampleInterval() const { return state()->processSampleInterval; }

const std::optional<Instant>& PowerSessionRecorder::lastProcessSampleAt() const {
  return state()->lastProcessSampleAt;
}

const std::optional<Instant>& PowerSessionRecorder::lastProTelemetrySampledAt() const {
  return state()->lastProTelemetrySampledAt;
}

std::shared_ptr<PowerSession> PowerSessionRecorder::start(const std::optional<std::string>& title,
                                                          PowerSessionSource source, double sampleInterval,
                                                          Instant startedAt) {
  return state()->start(title, source, sampleInterval, startedAt);
}

void PowerSessionRecorder::stop(Instant endedAt) { state()->stop(endedAt); }

void PowerSessionRecorder::interrupt(Instant endedAt) { state()->interrupt(endedAt); }

void PowerSessionRecorder::record(const SystemPowerState& snapshot,
                                  const std::optional<ProTelemetrySnapshot>& proTelemetry,
                                  std::function<void()> completion) {
  state()->record(snapshot, proTelemetry, std::move(completion));
}

void PowerSessionRecorder::refreshActiveSession() { state()->refreshActiveSession(); }

void PowerSessionRecorder::refreshSummary() { state()->refreshSummary(); }

std::vector<std::shared_ptr<PowerSession>> PowerSessionRecorder::sessions() { return state()->sessions(); }

PowerSessionSummary PowerSessionRecorder::summary(const std::shared_ptr<PowerSession>& session) {
  return state()->summary(session);
}

void PowerSessionRecorder::remove(const std::shared_ptr<PowerSession>& session) { state()->remove(session); }

std::string PowerSessionRecorder::exportJSONL(const std::shared_ptr<PowerSession>& session) {
  return state()->store->exportJSONL(session, wallClock_->now());
}

Subscription PowerSessionRecorder::observeActiveSession(
    std::function<void(const std::shared_ptr<PowerSession>&)> observer) {
  return state()->signals->activeSession.subscribe(std::move(observer));
}

Subscription PowerSessionRecorder::observeActiveSummary(
    std::function<void(const PowerSessionSummary&)> observer) {
  return state()->signals->activeSummary.subscribe(std::move(observer));
}

Subscription PowerSessionRecorder::observeLastError(
    std::function<void(const std::optional<std::string>&)> observer) {
  return state()->signals->lastError.subscribe(std::move(observer));
}

Subscription PowerSessionRecorder::observeLastProcessSampleAt(
    std::function<void(const std::optional<Instant>&)> observer) {
  return state()->signals->lastProcessSampleAt.subscribe(std::move(observer));
}

Subscription PowerSessionRecorder::observeLastProTelemetrySampledAt(
    std::function<void(const std::optional<Instant>&)> observer) {
  return state()->signals->lastProTelemetrySampledAt.subscribe(std::move(observer));
}

PowerSessionRecorder::ProcessSampler PowerSessionRecorder::nativeProcessSampler() {
  return [service = ProcessActivityService{}](int limit, Seconds interval) {
    return service.sampleTopProcesses(limit, interval);
  };
}

}  // namespace quellin
