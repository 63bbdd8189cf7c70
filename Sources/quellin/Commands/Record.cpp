#include <filesystem>
#include <optional>
#include <system_error>
#include <utility>

#include "QuellinCore/Services/ProTelemetryService.h"
#include "QuellinCore/Sessions/PowerSessionRecorder.h"
#include "quellin/CommandLine/Command.h"
#include "quellin/CommandLine/Failure.h"
#include "quellin/Measuring/TelemetryFeed.h"
#include "quellin/Measuring/Ticker.h"
#include "quellin/Presentation/HelperText.h"
#include "quellin/Presentation/JSONOutput.h"
#include "quellin/Presentation/SessionProgress.h"
#include "quellin/Presentation/SessionReport.h"
#include "quellin/Presentation/Table.h"
#include "quellin/Storage/ChildDateText.h"
#include "quellin/Storage/SessionLookup.h"
#include "quellin/Storage/SessionStore.h"
#include "quellin/Terminal/LiveLine.h"
#include "quellin/Terminal/SlowWork.h"

namespace quellin::cli {
namespace {

bool isInstalled(const ProTelemetryService& tool) {
  std::error_code unknown;
  return std::filesystem::exists(tool.helperPath(), unknown);
}

// One recording, from the first sample to the summary.
class Recording {
 public:
  Recording(const Invocation& invocation, const MeasuredHost& host)
      : invocation_(invocation),
        host_(host),
        recorder_(
            loop_.executor(),
            openStore(invocation.options,
                      {.executor = loop_.executor(), .clock = *host.wallClock, .dateText = frugalDateText()}),
            invocation.options.processInterval,
            [&host](int limit, Seconds interval) { return host.topProcesses(limit, interval); },
            makeBackground(), *host.wallClock),
        telemetry_(invocation.options.telemetry && host.isNative, loop_, invocation.tool),
        ticker_(loop_, host, invocation.options.interval, invocation.options.duration) {}

  void run() {
    start();
    try {
      ticker_.run([this](const std::function<void()>& done) { sample(done); });
    } catch (...) {
      end();  // what was recorded up to the damage is a session of its own
      throw;
    }
    end();
    if (recorder_.lastError()) throw Failure{ExitStatus::failed, *recorder_.lastError()};
  }

  void showSummary() {
    if (!recorder_.store()->session(session_->id())) {
      throw Failure{ExitStatus::noSession,
                    "the session was deleted from elsewhere; nothing is left of it. 'quellin record' begins "
                    "another."};
    }
    SlowWork work{invocation_, "summing up the session"};
    const SessionReport report = sessionReport(*recorder_.store(), session_);
    work.end();
    if (invocation_.options.json) {
      writeJSON(invocation_.out, report);
    } else {
      showReport(report, invocation_);
    }
  }

 private:
  void start() {
    const bool resumes = recorder_.activeSession() != nullptr;
    session_ = recorder_.start(invocation_.options.title, PowerSessionSource::cli,
                               host_.interval(invocation_.options.interval).count(), host_.wallClock->now());
    if (!session_)
      throw Failure{ExitStatus::failed, recorder_.lastError().value_or("no session can be begun")};
    if (resumes) goOn();
    invocation_.talk.say((resumes ? "going on with session " : "recording session ") + shortID(*session_) +
                         ", " + printable(session_->title()) + "; Ctrl-C ends it.");
  }

  // The live line goes on from where the session stood.
  void goOn() {
    SlowWork work{invocation_, "summing up what is recorded"};
    recorder_.refreshSummary();
    work.end();
    if (invocation_.options.title) {
      invocation_.talk.say("the active session keeps its title; --title is for a new one.");
    }
  }

  void end() {
    live_.end();
    if (recorder_.activeSession() && isStillOurs()) recorder_.stop(host_.wallClock->now());
  }

  void sample(const std::function<void()>& done) {
    if (!isStillOurs()) {
      live_.end();
      invocation_.talk.say("the session is no longer active: it was ended or deleted from elsewhere.");
      ticker_.end();
      return done();
    }
    const SystemPowerState state = reader_.readAll();
    reading_ = state.primaryPowerReading();
    recorder_.record(state, telemetry_.latest(), [this, done] {
      live_.show(sessionProgress(recorder_.activeSummary(), reading_));
      tellFailure();
      tellOfTelemetry();
      done();
    });
  }

  [[nodiscard]] bool isStillOurs() const { return recorder_.store()->activeSession() == session_; }

  // A failure is told once, for as long as it lasts.
  void tellFailure() {
    const auto& failure = recorder_.lastError();
    if (failure && failure != toldFailure_) {
      live_.end();
      invocation_.talk.say(*failure);
    }
    toldFailure_ = failure;
  }

  // Telemetry that was asked for and does not come is told of once.
  void tellOfTelemetry() {
    if (!invocation_.options.telemetry || hasToldOfTelemetry_) return;
    const auto remark =
        missingTelemetryText(host_.isNative, isInstalled(invocation_.tool), telemetry_.latest());
    if (!remark) return;
    live_.end();
    invocation_.talk.say(*remark);
    hasToldOfTelemetry_ = true;
  }

  const Invocation& invocation_;
  const MeasuredHost& host_;
  SystemReader reader_ = host_.reader();
  Loop loop_;
  PowerSessionRecorder recorder_;
  TelemetryFeed telemetry_;
  Ticker ticker_;
  LiveLine live_{invocation_};
  std::shared_ptr<PowerSession> session_;
  std::optional<PowerReading> reading_;  // of the last sample
  std::optional<std::string> toldFailure_;
  bool hasToldOfTelemetry_ = false;
};

}  // namespace

ExitStatus record(const Invocation& invocation) {
  const MeasuredHost host = MeasuredHost::open(invocation.options);
  if (!anySource(host.sources)) {
    throw Failure{ExitStatus::nothingMeasurable,
                  "nothing can be measured here. 'quellin doctor' says why and what would help."};
  }
  std::optional<SlowWork> opening{std::in_place, invocation, "opening the store"};
  Recording recording{invocation, host};
  opening.reset();
  recording.run();
  recording.showSummary();
  return ExitStatus::ok;
}

}  // namespace quellin::cli
