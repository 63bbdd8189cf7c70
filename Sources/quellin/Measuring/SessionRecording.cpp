#include "quellin/Measuring/SessionRecording.h"

#include <utility>

#include "quellin/CommandLine/Failure.h"
#include "quellin/Storage/ChildDateText.h"
#include "quellin/Storage/SessionStore.h"

namespace quellin::cli {

SessionRecording::SessionRecording(const Invocation& invocation, const MeasuredHost& host, Loop& loop,
                                   Seconds processInterval)
    : host_(host),
      reader_(host.reader()),
      recorder_(
          loop.executor(),
          openStore(invocation.options,
                    {.executor = loop.executor(), .clock = *host.wallClock, .dateText = frugalDateText()}),
          processInterval,
          [&host](int limit, Seconds interval) { return host.topProcesses(limit, interval); },
          makeBackground(), *host.wallClock),
      telemetry_(invocation.options.telemetry && host.isNative, loop, invocation.tool) {}

const std::shared_ptr<PowerSession>& SessionRecording::begin(const std::optional<std::string>& title,
                                                             Seconds interval) {
  session_ = recorder_.start(title, PowerSessionSource::cli, host_.interval(interval).count(),
                             host_.wallClock->now());
  if (!session_) throw Failure{ExitStatus::failed, recorder_.lastError().value_or("no session can be begun")};
  return session_;
}

void SessionRecording::sample(std::function<void()> done) {
  const SystemPowerState state = reader_.readAll();
  reading_ = state.primaryPowerReading();
  recorder_.record(state, telemetry_.latest(), std::move(done));
}

std::optional<std::string> SessionRecording::newFailure() {
  const auto& failure = recorder_.lastError();
  const bool isNew = failure && failure != toldFailure_;
  toldFailure_ = failure;
  return isNew ? failure : std::nullopt;
}

void SessionRecording::end() {
  if (recorder_.activeSession() && isStillOurs()) recorder_.stop(host_.wallClock->now());
}

}  // namespace quellin::cli
