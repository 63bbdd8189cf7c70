#include <filesystem>
#include <optional>
#include <system_error>
#include <utility>

#include "QuellinCore/Services/ProTelemetryService.h"
#include "QuellinCore/Sessions/SessionReport.h"
#include "quellin/CommandLine/Command.h"
#include "quellin/CommandLine/Hint.h"
#include "quellin/Measuring/SessionRecording.h"
#include "quellin/Measuring/Ticker.h"
#include "quellin/Outcome/Failure.h"
#include "quellin/Presentation/HelperText.h"
#include "quellin/Presentation/JSONOutput.h"
#include "quellin/Presentation/SessionProgress.h"
#include "quellin/Presentation/SessionText.h"
#include "quellin/Progress/LiveLine.h"
#include "quellin/Progress/SlowWork.h"
#include "quellin/Storage/SessionLookup.h"
#include "quellin/Terminal/PlainText.h"

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
        recording_(invocation, host, loop_,
                   invocation.options.processInterval.value_or(usualProcessInterval)),
        ticker_(loop_, host, invocation.options.interval, invocation.options.duration) {}

  void run() {
    start();
    ticker_.run([this](const std::function<void()>& done) { sample(done); });
    recording_.readLast(host_.monotonicClock->now());
    recording_.storeLast();
    if (const auto failure = recording_.newFailure()) tell(*failure);
    live_.end();
    recording_.end();
    if (const auto failure = recording_.failure()) throw Failure{ExitStatus::failed, *failure};
  }

  void showSummary() {
    if (!recording_.store().session(session_->id())) {
      throw Failure{ExitStatus::noSession, std::string{sessionDeletedText} + " " +
                                               hintAt("record", invocation_.options) + " begins another."};
    }
    SlowWork work{invocation_, "summing up the session"};
    const SessionReport report = recording_.store().report(session_);
    work.end();
    if (invocation_.options.json) {
      writeJSON(invocation_.out, report);
    } else {
      invocation_.out.write(sessionText(report, invocation_.outTerminal));
    }
  }

 private:
  void start() {
    const bool resumes = recording_.recorder().activeSession() != nullptr;
    session_ = recording_.begin(invocation_.options.title, invocation_.options.interval);
    if (resumes) goOn();
    invocation_.talk.say((resumes ? "going on with session " : "recording session ") + shortID(*session_) +
                         ", " + printable(session_->title()) + "; Ctrl-C ends it.");
  }

  // The live line goes on from where the session stood.
  void goOn() {
    SlowWork work{invocation_, "summing up what is recorded"};
    recording_.recorder().refreshSummary();
    work.end();
    if (invocation_.options.title) {
      invocation_.talk.say("the active session keeps its title; --title is for a new one.");
    }
  }

  void sample(const std::function<void()>& done) {
    if (!recording_.isStillOurs()) {
      live_.end();
      invocation_.talk.say(sessionLostText);
      ticker_.end();
      return done();
    }
    recording_.sample([this, done] {
      live_.show(sessionProgress(recording_.recorder().activeSummary(), recording_.reading()));
      if (const auto failure = recording_.newFailure()) tell(*failure);
      tellOfTelemetry();
      done();
    });
  }

  void tell(const std::string& text) {
    live_.end();
    invocation_.talk.say(text);
  }

  // Telemetry that was asked for and does not come is told of once.
  void tellOfTelemetry() {
    if (!invocation_.options.telemetry || hasToldOfTelemetry_) return;
    const auto remark =
        missingTelemetryText(host_.isNative, isInstalled(invocation_.tool), recording_.telemetry().latest());
    if (!remark) return;
    tell(*remark);
    hasToldOfTelemetry_ = true;
  }

  const Invocation& invocation_;
  const MeasuredHost& host_;
  Loop loop_;
  SessionRecording recording_;
  Ticker ticker_;
  LiveLine live_{invocation_};
  std::shared_ptr<PowerSession> session_;
  bool hasToldOfTelemetry_ = false;
};

}  // namespace

ExitStatus record(const Invocation& invocation) {
  const MeasuredHost host = MeasuredHost::openMeasurable(invocation.options);
  std::optional<SlowWork> opening{std::in_place, invocation, "opening the store"};
  Recording recording{invocation, host};
  opening.reset();
  recording.run();
  recording.showSummary();
  return ExitStatus::ok;
}

}  // namespace quellin::cli
