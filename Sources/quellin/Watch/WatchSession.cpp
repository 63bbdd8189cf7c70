#include "quellin/Watch/WatchSession.h"

#include <utility>

#include "quellin/Measuring/StoreClaim.h"
#include "quellin/Outcome/Failure.h"
#include "quellin/Presentation/SessionProgress.h"
#include "quellin/Storage/ChildDateText.h"
#include "quellin/Storage/SessionLookup.h"
#include "quellin/Storage/SessionStore.h"
#include "quellin/Terminal/PlainText.h"

namespace quellin::cli {

WatchSession::WatchSession(const Options& options, const MeasuredHost& host, Loop& loop,
                           StoreFileOptions storeFile)
    : options_(options), host_(host), loop_(loop), storeFile_(std::move(storeFile)) {
  static_cast<void>(attempt([this] {
    if (isStoreToBeMade(storePath(options_))) return;
    open();
    look();
  }));
}

void WatchSession::toggle(Seconds interval) {
  if (isRecording()) return end();
  wasAsked_ = true;
  if (!recorder_ && !attempt([this] { open(); })) return;
  refusal_.reset();
  if (!attempt([this] { claim(); }) || refusal_) return;
  const bool resumes = recorder_->activeSession() != nullptr;
  session_ = recorder_->start(options_.title, PowerSessionSource::cli, host_.interval(interval).count(),
                              host_.wallClock->now());
  if (!isRecording()) return giveUp();
  elsewhere_ = nullptr;
  if (resumes) recorder_->refreshSummary();
}

void WatchSession::end() {
  if (!isRecording()) return;
  static_cast<void>(attempt([this] { look(); }));
  if (!isRecording()) return;
  recorder_->stop(host_.wallClock->now());
  forget(recorder_->activeSession() != session_);
}

void WatchSession::record(const SystemPowerState& state, const std::function<void()>& done) {
  if (!recorder_) return done();
  const bool looked = attempt([this] { look(); });
  if (!looked || !isRecording()) return done();
  recorder_->record(state, std::nullopt, done);
}

std::string WatchSession::text() const {
  if (session_) return "Recording " + shortID(*session_) + ": " + sessionProgress(recorder_->activeSummary());
  if (elsewhere_) {
    return "Session " + shortID(*elsewhere_) + ", " + printable(elsewhere_->title()) +
           ", is active but not recorded here";
  }
  if (completed_) return "Session " + *completed_ + " is over";
  return "No session is being recorded";
}

std::optional<std::string> WatchSession::failure() const {
  if (problem_ || !recorder_) return problem_;
  if (refusal_) return refusal_;
  return recorder_->lastError();
}

void WatchSession::open() {
  auto store =
      openStore(options_, {.executor = loop_.executor(), .dateText = frugalDateText(), .file = storeFile_});
  recorder_ = std::make_unique<PowerSessionRecorder>(
      loop_.executor(), std::move(store), options_.processInterval.value_or(usualProcessInterval),
      [this](int limit, Seconds interval) { return host_.topProcesses(limit, interval); }, makeBackground(),
      *host_.wallClock);
}

void WatchSession::claim() {
  try {
    lock_.emplace(claimStore(*recorder_->store(), options_, host_));
  } catch (const Failure& failure) {
    refusal_ = failure.what();
  }
}

// Other programs begin and end sessions, too.
void WatchSession::look() {
  PowerSessionStore& store = *recorder_->store();
  const auto& known = isRecording() ? session_ : elsewhere_;
  if (known && store.isStillActive(known)) return;
  if (isRecording()) {
    recorder_->refreshActiveSession();  // which stores what recording it cost
    forget(true);
  }
  elsewhere_ = store.activeSession();
  if (!elsewhere_) refusal_.reset();
}

void WatchSession::giveUp() {
  static_cast<void>(attempt([this] { forgetClaim(*lock_, *recorder_); }));
  lock_.reset();
}

// `isOver` is false when the ending could not be stored.
void WatchSession::forget(bool isOver) {
  if (lock_ && isOver) lock_->forgetWord();
  completed_ = shortID(*session_);
  session_ = nullptr;
  lock_.reset();
}

bool WatchSession::attempt(const std::function<void()>& action) {
  try {
    action();
    problem_.reset();
  } catch (const StoreError& error) {
    problem_ = error.what();
  }
  return !problem_;
}

}  // namespace quellin::cli
