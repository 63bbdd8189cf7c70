#include "quellin/Watch/Watch.h"

#include <csignal>
#include <filesystem>
#include <unistd.h>
#include <utility>

#include "quellin/CommandLine/Hint.h"
#include "quellin/Outcome/Failure.h"
#include "quellin/Watch/Layout.h"

namespace quellin::cli {
namespace {

constexpr std::int64_t historyLimit = 300;  // more than a terminal has columns for
constexpr int processLimit = 10;
constexpr Seconds processPause{5};

std::string shownSource(const Options& options) {
  const std::filesystem::path path{measuredName(options)};
  return (path.has_filename() ? path : path.parent_path()).filename().string();
}

bool isThermalKnown(const MeasuredHost& host) {
  return host.sources.thermal->diagnose().availability == SourceAvailability::available;
}

}  // namespace

Watch::Watch(const Invocation& invocation, const MeasuredHost& host)
    : invocation_(invocation),
      host_(host),
      characters_(adoptCharacterSet(processEnvironment())),
      engine_(
          loop_.executor(), invocation.options.interval, historyLimit,
          [reader = host.reader()] { return reader.readAll(); }, makeBackground(2), *host.wallClock),
      session_(invocation.options, host, loop_),
      isPaced_(host.player && invocation.options.speed.shortened(Seconds{1}) > Seconds{0}) {
  model_.source = shownSource(invocation.options);
  model_.isThermalKnown = isThermalKnown(host);
}

void Watch::run() {
  listen();
  screen_.emplace(invocation_.outTerminal.hasColours);
  loop_.onSuddenEnd(screen_->rescue());
  input_.emplace(STDIN_FILENO, loop_.executor(),
                 [this](InputState state) { state == InputState::gone ? quit() : readKeys(); });
  states_ = engine_.observeCurrentState([this](const SystemPowerState& state) { onState(state); });
  draw();
  engine_.start();
  loop_.run();
  input_.reset();
  screen_.reset();
  loop_.onSuddenEnd({});
  session_.end();
  if (damage_) throw Failure{ExitStatus::failed, *damage_};
  const auto failure = session_.failure();
  if (failure && session_.wasAsked()) throw Failure{ExitStatus::failed, *failure};
  if (const auto& completed = session_.completed()) {
    invocation_.talk.say("recorded session " + *completed + "; " +
                         hintAt("show " + *completed, invocation_.options) + " sums it up.");
  }
}

// The signals first: the library of the screen takes those that nobody has taken.
void Watch::listen() {
  loop_.onInterrupt([this] { quit(); });
  loop_.onSignal(SIGQUIT, [this] { quit(); });
  loop_.onSignal(SIGWINCH, [this] { adaptToSize(); });
}

void Watch::readKeys() {
  while (const auto key = screen_->key()) {
    if (const auto action = actionOf(*key)) perform(*action);
  }
  draw();
}

void Watch::perform(WatchAction action) {
  switch (action) {
    case WatchAction::toggleSession:
      return session_.toggle(engine_.interval());
    case WatchAction::longerInterval:
      return changeInterval(longerInterval(engine_.interval()));
    case WatchAction::shorterInterval:
      return changeInterval(shorterInterval(engine_.interval()));
    case WatchAction::toggleProcesses:
      model_.showsProcesses = !model_.showsProcesses;
      return;
    case WatchAction::toggleHelp:
      model_.showsHelp = !model_.showsHelp;
      return;
    case WatchAction::quit:
      return quit();
  }
}

void Watch::changeInterval(Seconds interval) { engine_.setInterval(interval); }

void Watch::adaptToSize() {
  const Terminal terminal = Terminal::at(STDOUT_FILENO, processEnvironment());
  const ViewSize usual;
  screen_->resize(
      {.rows = static_cast<int>(terminal.height.value_or(static_cast<std::size_t>(usual.rows))),
       .columns = static_cast<int>(terminal.width.value_or(static_cast<std::size_t>(usual.columns)))});
  draw();
}

void Watch::draw() {
  model_.history = engine_.history();
  model_.interval = engine_.interval();
  model_.isRecording = session_.isRecording();
  model_.session = session_.text();
  model_.failure = session_.failure();
  screen_->show(drawWatch(model_, screen_->size(), characters_));
}

void Watch::onState(const SystemPowerState& state) {
  if (model_.isOver) return;
  const bool isNew = shownAt_ != state.timestamp;
  shownAt_ = state.timestamp;
  model_.state = state;
  if (isNew) {
    session_.record(state, [this] { measureProcesses([this] { moveOn(); }); });
  } else if (!isMeasuringProcesses_ && isPaced_) {
    moveOn();
  }
  draw();
}

void Watch::measureProcesses(const std::function<void()>& done) {
  const bool isDue = !processesMeasuredAt_ || *shownAt_ - *processesMeasuredAt_ >= processPause;
  if (!model_.showsProcesses || !isDue || isMeasuringProcesses_) return done();
  isMeasuringProcesses_ = true;
  processesMeasuredAt_ = shownAt_;
  processBackground_->run([this, done] {
    loop_.executor()->post(
        [this, done, processes = host_.topProcesses(processLimit, processMeasurementInterval)] {
          isMeasuringProcesses_ = false;
          model_.processes = processes;
          draw();
          done();
        });
  });
}

void Watch::moveOn() {
  if (!host_.player) return;
  TracePlayer& player = *host_.player;
  bool isDue = !isPaced_ || player.untilNext() <= Seconds{0};
  while (isDue && !player.atEnd()) {
    if (const auto moved = player.advance(); !moved) {
      damage_ = moved.error().message();
      return quit();
    }
    isDue = isPaced_ && player.untilNext() <= Seconds{0};
  }
  if (!player.atEnd()) return;
  engine_.stop();
  model_.isOver = true;
  draw();
}

}  // namespace quellin::cli
