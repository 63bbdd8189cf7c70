#include <tuple>

#include "QuellinCore/Support/ISO8601.h"
#include "QuellinCore/Support/JSONEncoder.h"
#include "quellin/CommandLine/Command.h"
#include "quellin/CommandLine/Failure.h"
#include "quellin/Measuring/Ticker.h"

namespace quellin::cli {
namespace {

struct AlertLine {
  Instant timestamp;
  std::string component;
  double currentWatts = 0;
  double thresholdWatts = 0;
  std::string message;

  static constexpr auto fields() {
    return std::tuple{Field{"timestamp", &AlertLine::timestamp}, Field{"component", &AlertLine::component},
                      Field{"currentWatts", &AlertLine::currentWatts},
                      Field{"thresholdWatts", &AlertLine::thresholdWatts},
                      Field{"message", &AlertLine::message}};
  }
};

void print(const PowerBudgetMonitor::Alert& alert, Instant timestamp, const Invocation& invocation) {
  if (invocation.options.json) {
    const AlertLine line{timestamp, alert.component, alert.currentWatts, alert.thresholdWatts, alert.message};
    if (const auto text = encodeJSON(line)) invocation.out.line(*text);
  } else {
    invocation.out.line(formatISO8601(timestamp) + "  " + alert.message);
  }
}

}  // namespace

ExitStatus budget(const Invocation& invocation) {
  const Options& options = invocation.options;
  if (options.budget == PowerBudgetMonitor{}) {
    throw Failure{ExitStatus::usage,
                  "budget: no limit is given. Give at least one, for example --system 20."};
  }
  const MeasuredHost host = MeasuredHost::open(options);
  const SystemReader reader = host.reader();
  Loop loop;
  Ticker ticker{loop, host, options.interval, options.duration};
  bool anyFired = false;
  bool anyMeasured = false;
  ticker.run([&](const std::function<void()>& done) {
    const SystemPowerState state = reader.readAll();
    if (state.power) {
      anyMeasured = true;
      for (const auto& alert : options.budget.check(*state.power)) {
        anyFired = true;
        print(alert, state.timestamp, invocation);
      }
      invocation.out.flush();
    } else if (!anyMeasured) {
      ticker.end();
    }
    done();
  });
  if (!anyMeasured) {
    throw Failure{ExitStatus::nothingMeasurable,
                  "there are no energy counters to watch. 'quellin doctor' says why and what would help."};
  }
  return anyFired ? ExitStatus::negative : ExitStatus::ok;
}

}  // namespace quellin::cli
