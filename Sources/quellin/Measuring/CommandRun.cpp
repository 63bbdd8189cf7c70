#include "quellin/Measuring/CommandRun.h"

#include <cerrno>
#include <csignal>
#include <exception>
#include <functional>
#include <utility>

#include "QuellinCore/Services/EnergySpan.h"
#include "quellin/CommandLine/Hint.h"
#include "quellin/Measuring/SessionRecording.h"
#include "quellin/Measuring/StoreClaim.h"
#include "quellin/Measuring/Ticker.h"
#include "quellin/Outcome/Failure.h"
#include "quellin/Storage/SessionLookup.h"
#include "quellin/Terminal/PlainText.h"

namespace quellin::cli {
namespace {

constexpr Seconds counterInterval{60};  // see EnergySpan

// Why nothing is run beside a session that is active.
std::string objectionTo(const PowerSession& active, const Options& options) {
  const std::string name = nameOf(active) + " is ";
  if (recorderOf(options).isAtWork) {
    return name + "being recorded; the command was not run. " + hintAt("stop", options) + " ends it.";
  }
  return name + "active, and no quellin records it any more; the command was not run. " +
         hintAt("interrupt", options) + " ends it.";
}

// One session around something that takes its time.
class Span {
 public:
  Span(const Invocation& invocation, const MeasuredHost& host, std::optional<Seconds> length)
      : invocation_(invocation),
        host_(host),
        recording_(invocation, host, loop_,
                   invocation.options.processInterval.value_or(usualRunProcessInterval)),
        ticker_(loop_, host, invocation.options.interval, length) {
    recording_.interruptWhenLeft();
  }

  [[nodiscard]] Loop& loop() { return loop_; }
  [[nodiscard]] Ticker& ticker() { return ticker_; }

  void begin(const std::string& title) {
    if (const auto active = recording_.recorder().activeSession()) {
      throw Failure{ExitStatus::notMeasured, objectionTo(*active, invocation_.options)};
    }
    session_ = recording_.begin(title, invocation_.options.interval);
    if (!host_.player) energy_.emplace(host_.sources.energy);
    startedAt_ = host_.monotonicClock->now();
  }

  /// The moment that counts as the last. Called on any thread, once.
  void finish() {
    finishedAt_ = host_.monotonicClock->now();
    if (energy_) counters_ = energy_->finish();
  }

  void run() {
    if (energy_) keepCounting();
    ticker_.run([this](const std::function<void()>& done) { sample(done); });
  }

  /// Reads once more what the session ends with. Called on the loop's thread, at the end of what is measured.
  void readLast() { recording_.readLast(finishedAt_); }

  /// Ends the session, as interrupted unless `isWhole`. Returns what became of it when others ended it
  /// before.
  [[nodiscard]] std::optional<std::string> end(bool isWhole) {
    recording_.storeLast();
    tellOfFailure();
    const bool isLost = !recording_.isStillOurs();
    if (isWhole) {
      recording_.end();
    } else {
      recording_.interrupt();
    }
    tellOfFailure();
    return isLost ? std::optional{afterLoss()} : std::nullopt;
  }

  /// Nothing is left of it.
  void drop() { recording_.recorder().remove(session_); }

  [[nodiscard]] MeasuredSpan result() {
    SessionReport report = recording_.store().report(session_);
    const double seconds = host_.player ? report.summary.durationSeconds : (finishedAt_ - startedAt_).count();
    MeasuredSpan span{
        .report = std::move(report), .seconds = seconds, .counters = counters_, .countersPath = std::nullopt};
    if (counters_) span.countersPath = host_.sources.energy->diagnose().path;
    return span;
  }

 private:
  // What others completed is half of what was to be measured, and no repeat.
  std::string afterLoss() {
    const auto session = recording_.store().session(session_->id());
    if (!session) return sessionDeletedText;
    recording_.store().interrupt(session, session->endedAt().value_or(session->startedAt()));
    return "the session was ended from elsewhere; only a part was measured.";
  }

  void sample(const std::function<void()>& done) {
    if (!recording_.isStillOurs()) {
      tellOnce(sessionLostText);
      return done();
    }
    recording_.sample([this, done] {
      tellOfFailure();
      done();
    });
  }

  void tellOfFailure() {
    if (const auto failure = recording_.newFailure()) invocation_.talk.say(*failure);
  }

  void tellOnce(const std::string& text) {
    if (!std::exchange(hasToldOfLoss_, true)) invocation_.talk.say(text);
  }

  void keepCounting() {
    loop_.after(counterInterval, [this] {
      energy_->renew();
      keepCounting();
    });
  }

  const Invocation& invocation_;
  const MeasuredHost& host_;
  Loop loop_{ExitStatus::notMeasured};
  SessionRecording recording_;
  Ticker ticker_;
  std::shared_ptr<PowerSession> session_;
  std::optional<EnergySpan> energy_;
  std::optional<SiliconEnergy> counters_;
  Seconds startedAt_{};
  Seconds finishedAt_{};
  bool hasToldOfLoss_ = false;
};

// What is sent to this program is meant for the command. What is typed reaches it without us; nothing tells
// it here from the same signal sent to a job in the foreground. Tells whether this program was asked to end
// before: from then on no signal is lost.
bool passSignals(Loop& loop, const std::unique_ptr<CommandProcess>& command) {
  for (const int signal : {SIGTERM, SIGHUP, SIGINT, SIGQUIT, SIGUSR1, SIGUSR2}) {
    const bool canBeTyped = signal == SIGINT || signal == SIGQUIT;
    loop.onSignal(signal, [signal, canBeTyped, &command] {
      if (!canBeTyped || !ownsTerminal()) command->send(signal);
    });
  }
  return loop.beImperturbable();
}

Failure cannotStart(const std::string& word, const SystemError& error) {
  const bool isMissing = error.code == ENOENT;
  return {isMissing ? ExitStatus::notFound : ExitStatus::notExecutable,
          (word.empty() ? "''" : printable(word)) + " cannot be run: " + error.description() +
              (isMissing ? ". Check how it is spelled, or name it by its whole path."
                         : ". Name a program that you may execute and that is made for this machine.")};
}

// Whether a trace goes by without any wait.
bool playsAtOnce(const MeasuredHost& host, const Options& options) {
  return host.player && options.speed.shortened(Seconds{1}) == Seconds{0};
}

// What `action` failed with.
std::optional<std::string> failureOf(const std::function<void()>& action) {
  try {
    action();
    return std::nullopt;
  } catch (const std::exception& error) {
    return error.what();
  }
}

}  // namespace

MeasuredSpan measureIdle(const Invocation& invocation, const MeasuredHost& host, const std::string& title,
                         Seconds length) {
  Span span{invocation, host, length};
  span.begin(title);
  invocation.talk.say("measuring the idle machine first; Ctrl-C ends it all.");
  span.run();
  span.finish();
  span.readLast();
  const bool isWhole = !span.ticker().wasInterrupted();
  const auto loss = span.end(isWhole);
  if (!isWhole) throw Failure{ExitStatus::notMeasured, askedToEndText};
  if (loss) throw Failure{ExitStatus::notMeasured, *loss + " The command was not run."};
  return span.result();
}

MeasuredCommand measureCommand(const Invocation& invocation, const MeasuredHost& host,
                               const std::string& title) {
  Span span{invocation, host, std::nullopt};
  span.begin(title);
  const bool endsWithCommand = !playsAtOnce(host, invocation.options);
  CommandEnd end;
  bool hasEnded = false;
  bool isAwaited = false;
  std::unique_ptr<CommandProcess> command;
  if (passSignals(span.loop(), command)) {
    span.drop();
    throw Failure{ExitStatus::notMeasured, askedToEndText};
  }
  auto started = CommandProcess::start(programWords(invocation.options), [&](const CommandEnd& how) {
    span.finish();
    span.loop().executor()->post([&, how] {
      end = how;
      hasEnded = true;
      span.readLast();
      if (isAwaited) return span.loop().stop();
      if (endsWithCommand) span.ticker().end();
    });
  });
  if (!started) {
    span.drop();
    throw cannotStart(invocation.options.word, started.error());
  }
  command = *std::move(started);
  std::optional<std::string> failure = failureOf([&] { span.run(); });
  if (failure) invocation.talk.say(*failure);
  // The trace is over, or measuring failed, and the command is not over.
  isAwaited = true;
  if (!hasEnded) span.loop().runAgain();
  // A command that serves until it is told to end has done its work then; one that is repeated has not.
  const bool isWhole =
      !failure && end.isWholeRun() && !(invocation.options.repeat > 1 && span.loop().wasAskedToEnd());
  MeasuredCommand measured{.span = std::nullopt, .end = end, .isWhole = isWhole};
  if (failure) {
    static_cast<void>(failureOf([&] { static_cast<void>(span.end(isWhole)); }));
    return measured;
  }
  failure = failureOf([&] {
    if (const auto loss = span.end(isWhole)) throw Failure{ExitStatus::notMeasured, *loss};
    measured.span = span.result();
  });
  if (failure) invocation.talk.say(*failure);
  return measured;
}

}  // namespace quellin::cli
