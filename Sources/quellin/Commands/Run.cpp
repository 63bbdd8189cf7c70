#include <optional>
#include <string>
#include <vector>

#include <fmt/format.h>
#include <fmt/ranges.h>  // join, since version 11

#include "QuellinCore/Support/Text.h"
#include "quellin/CommandLine/Command.h"
#include "quellin/CommandLine/Hint.h"
#include "quellin/Measuring/CommandRun.h"
#include "quellin/Measuring/Loop.h"
#include "quellin/Outcome/Failure.h"
#include "quellin/Presentation/JSONOutput.h"
#include "quellin/Presentation/RunReport.h"
#include "quellin/Storage/NewFile.h"
#include "quellin/Terminal/PlainText.h"

namespace quellin::cli {
namespace {

// Where the result goes: standard output belongs to the command.
class ResultSink {
 public:
  explicit ResultSink(const Invocation& invocation) : invocation_(invocation) {
    const Options& options = invocation.options;
    if (!options.output) return;
    // A file that cannot be made should be known before the command runs.
    const NewFile attempt{*options.output, options.force};
  }

  void write(std::string_view text) {
    if (isFile()) {
      text_ += text;
    } else {
      invocation_.talk.raw(text);
    }
  }

  // The file is made at the end: while the command runs, signals are the command's.
  void finish() {
    if (!isFile()) return;
    NewFile file{*invocation_.options.output, invocation_.options.force};
    file.write(text_);
    file.publish();
  }

  [[nodiscard]] std::optional<std::size_t> width() const {
    return isFile() ? std::nullopt : invocation_.talkTerminal.width;
  }

 private:
  [[nodiscard]] bool isFile() const { return invocation_.options.output.has_value(); }

  const Invocation& invocation_;
  std::string text_;  // for the file
};

// The runs of one command, one after the other.
class Runs {
 public:
  explicit Runs(const Invocation& invocation) : invocation_(invocation), sink_(invocation) {
    static_cast<void>(requests_.beImperturbable());
    report_.command = programWords(options_);
    const bool isNamed = options_.title && !trimmed(*options_.title).empty();
    title_ = isNamed ? *options_.title : fmt::format("{}", fmt::join(report_.command, " "));
  }

  // Returns the status of the first run that did not succeed, else 0. What was measured is told also when
  // something goes wrong later.
  int run() {
    int status = 0;
    try {
      status = runAll();
    } catch (...) {
      finish();
      throw;
    }
    finish();
    return status;
  }

 private:
  int runAll() {
    if (options_.baseline) measureBaseline();
    int status = 0;
    for (int turn = 1; turn <= options_.repeat && status == 0; ++turn) {
      if (requests_.wasAskedToEnd()) throw askedToEnd(turn - 1);
      status = runOnce(turn);
    }
    return status;
  }

  void finish() {
    if (!report_.idle && report_.runs.empty()) return;
    if (repeats_.size() > 1) showTogether();
    if (options_.json) sink_.write(jsonText(report_) + "\n");
    sink_.finish();
  }

  // A trace begins where the baseline left it.
  [[nodiscard]] MeasuredHost openHost() const {
    MeasuredHost host = MeasuredHost::open(options_, idleTicks_);
    if (!host.player || !host.player->atEnd()) return host;
    throw Failure{ExitStatus::notMeasured,
                  idleTicks_ > 0 ? "the trace ended within the baseline; the command was not run. Give a "
                                   "shorter --baseline, or a longer trace."
                                 : "the trace is empty; the command was not run."};
  }

  void measureBaseline() {
    const MeasuredHost host = openHost();
    const MeasuredSpan idle = measureIdle(invocation_, host, title_ + ", idle", *options_.baseline);
    if (host.player) idleTicks_ = host.player->ticksPlayed();
    report_.idle = spanReport(idle);
    show("idle", spanText(*report_.idle, hintAtDoctor(options_), sink_.width()));
  }

  int runOnce(int turn) {
    const MeasuredHost host = openHost();
    const MeasuredCommand measured = measureCommand(invocation_, host, title_);
    report_.runs.push_back(commandReport(measured, report_.idle));
    const std::string turnText =
        options_.repeat > 1 ? ", " + std::to_string(turn) + " of " + std::to_string(options_.repeat) : "";
    show(title_ + turnText,
         commandText(report_.runs.back(), report_.idle.has_value(), hintAtDoctor(options_), sink_.width()));
    if (report_.runs.back().isWhole) repeats_.push_back(*report_.runs.back().measured);
    if (measured.span && measured.end.isWholeRun() && !measured.isWhole) throw askedToEnd(turn);
    const int status = measured.end.shellStatus();
    return status == 0 && !measured.span ? static_cast<int>(ExitStatus::notMeasured) : status;
  }

  // With so many runs begun.
  [[nodiscard]] Failure askedToEnd(int runs) const {
    const std::string where = fmt::format("asked to end with run {} of {}.", runs, options_.repeat);
    return {ExitStatus::notMeasured, runs == 0 ? askedToEndText : where};
  }

  void showTogether() {
    const std::string text = repeatsText(repeats_, sink_.width());
    const std::size_t count = repeats_.size();
    const std::size_t all = report_.runs.size();
    const std::string which =
        count == all ? fmt::format("all {}", all) : fmt::format("the {} whole runs of {}", count, all);
    if (!text.empty()) show(title_ + ", " + which, text);
  }

  void show(const std::string& heading, const std::string& text) {
    if (!options_.json) sink_.write(printable(heading) + "\n" + text + "\n");
  }

  const Invocation& invocation_;
  const Options& options_ = invocation_.options;
  Loop requests_;  // that come at any time: each run has a loop of its own
  ResultSink sink_;
  RunReport report_;
  std::vector<SpanReport> repeats_;  // of the runs, those that can be averaged
  std::size_t idleTicks_ = 0;        // of a trace, at its beginning
  std::string title_;
};

}  // namespace

ExitStatus runCommand(const Invocation& invocation) {
  try {
    return static_cast<ExitStatus>(Runs{invocation}.run());
  } catch (const Failure& failure) {
    // Statuses of our own that a command might have, too, would pass for the command's.
    const bool isOurs = failure.status() >= ExitStatus::notMeasured;
    throw Failure{isOurs ? failure.status() : ExitStatus::notMeasured, failure.what()};
  } catch (const std::exception& error) {
    throw Failure{ExitStatus::notMeasured, error.what()};
  }
}

}  // namespace quellin::cli
