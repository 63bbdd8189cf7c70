#include "quellin/Measuring/SessionRecording.h"

#include <utility>

#include "quellin/Measuring/StoreClaim.h"
#include "quellin/Outcome/Failure.h"
#include "quellin/Storage/ChildDateText.h"
#include "quellin/Storage/SessionStore.h"

namespace quellin::cli {

SessionRecording::SessionRecording(const Invocation& invocation, const MeasuredHost& host, Loop& loop,
                                   Seconds processInterval, const StoreFileOptions& storeFile)
    : options_(invocation.options),
      host_(host),
      loop_(loop),
      reader_(host.reader()),
      recorder_(
          loop.executor(),
          openStore(invocation.options,
                    {.executor = loop.executor(), .dateText = frugalDateText(), .file = storeFile}),
          processInterval, [this](int limit, Seconds interval) { return topProcesses(limit, interval); },
          makeBackground(), *host.wallClock),
      telemetry_(invocation.options.telemetry && host.isNative, loop, invocation.tool) {}

SessionRecording::~SessionRecording() {
  try {
    endBy(endingWhenLeft_);
  } catch (const StoreError&) {  // NOLINT(bugprone-empty-catch)
    // What went wrong before is on its way to the user already.
  }
}

const std::shared_ptr<PowerSession>& SessionRecording::begin(const std::optional<std::string>& title,
                                                             Seconds interval) {
  lock_.emplace(claimStore(store(), options_, host_));
  session_ = recorder_.start(title, PowerSessionSource::cli, host_.interval(interval).count(),
                             host_.wallClock->now());
  if (!session_) {
    forgetClaim(*lock_, recorder_);
    throw Failure{ExitStatus::failed, recorder_.lastError().value_or("no session can be begun")};
  }
  return session_;
}

void SessionRecording::sample(std::function<void()> done) {
  last_.reset();
  recorder_.record(read(), telemetry_.latest(), std::move(done));
}

void SessionRecording::readLast(Seconds end) {
  const bool isRead =
      host_.player ? readAt_.has_value() || host_.player->atEnd() : readAt_ && *readAt_ >= end;
  if (!isRead) last_ = read();
}

void SessionRecording::storeLast() {
  if (!last_ || !isStillOurs()) return;
  isEnding_ = true;
  bool isStored = false;
  recorder_.record(*std::exchange(last_, std::nullopt), telemetry_.latest(), [&] {
    isStored = true;
    loop_.stop();
  });
  while (!isStored) loop_.runAgain();  // something older may stop it first
}

std::optional<std::string> SessionRecording::failure() const {
  return session_ && session_->isDeleted() ? std::nullopt : recorder_.lastError();
}

std::optional<std::string> SessionRecording::newFailure() {
  const auto present = failure();
  const bool isNew = present && present != toldFailure_;
  toldFailure_ = present;
  return isNew ? present : std::nullopt;
}

void SessionRecording::end() { endBy(&PowerSessionRecorder::stop); }

void SessionRecording::interrupt() { endBy(&PowerSessionRecorder::interrupt); }

void SessionRecording::endBy(Ending ending) {
  // Asked before: to the store's own objects, an ending that is not saved is one, too.
  const bool isOurs = recorder_.activeSession() == session_ && isStillOurs();
  if (isOurs) {
    (recorder_.*ending)(host_.wallClock->now());
  } else if (lock_) {
    recorder_.refreshActiveSession();  // which stores what recording it cost
  }
  const bool isOver = session_ && (!isOurs || recorder_.activeSession() != session_);
  if (lock_ && isOver) lock_->forgetWord();
  lock_.reset();
}

SystemPowerState SessionRecording::read() {
  SystemPowerState state = reader_.readAll();
  readAt_ = host_.monotonicClock->now();
  reading_ = state.primaryPowerReading();
  return state;
}

std::vector<ProcessActivityInfo> SessionRecording::topProcesses(int limit, Seconds interval) const {
  return isEnding_ ? std::vector<ProcessActivityInfo>{} : host_.topProcesses(limit, interval);
}

}  // namespace quellin::cli
