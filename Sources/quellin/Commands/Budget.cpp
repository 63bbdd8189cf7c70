#include <cstdint>
#include <tuple>

#include "QuellinCore/Support/ISO8601.h"
#include "quellin/CommandLine/Command.h"
#include "quellin/CommandLine/Hint.h"
#include "quellin/Measuring/Ticker.h"
#include "quellin/Outcome/Failure.h"
#include "quellin/Presentation/FigureText.h"
#include "quellin/Presentation/JSONOutput.h"
#include "quellin/Progress/LiveLine.h"

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
    invocation.out.line(jsonText(line, JSONLayout::compact));
  } else {
    invocation.out.line(formatISO8601(timestamp) + "  " + alert.message);
  }
}

struct Watched {
  std::int64_t readings = 0;
  std::int64_t alerts = 0;

  [[nodiscard]] std::string text() const {
    return counted(readings, "reading") + ", " + counted(alerts, "alert");
  }
};

}  // namespace

ExitStatus budget(const Invocation& invocation) {
  const Options& options = invocation.options;
  if (options.budget == PowerBudgetMonitor{}) {
    throw Failure{ExitStatus::usage,
                  "budget: no limit is given. Give at least one, for example --system 20."};
  }
  const MeasuredHost host = MeasuredHost::open(options);
  const SystemReader reader = host.reader();
  LiveLine live{invocation};
  Loop loop;
  Ticker ticker{loop, host, options.interval, options.duration};
  Watched watched;
  ticker.run([&](const std::function<void()>& done) {
    const SystemPowerState state = reader.readAll();
    if (state.power) {
      ++watched.readings;
      const auto alerts = options.budget.check(*state.power);
      watched.alerts += static_cast<std::int64_t>(alerts.size());
      if (!alerts.empty()) live.end();
      for (const auto& alert : alerts) print(alert, state.timestamp, invocation);
      invocation.out.flush();
      live.show(decimal(state.power->systemPower, 2) + " W, " + watched.text());
    } else if (watched.readings == 0) {
      ticker.end();
    }
    done();
  });
  live.end();
  if (watched.readings == 0) {
    throw Failure{
        ExitStatus::nothingMeasurable,
        "there are no energy counters to watch. " + hintAtDoctor(options) + " says why and what would help."};
  }
  invocation.talk.say(watched.text() + ".");
  return watched.alerts > 0 ? ExitStatus::negative : ExitStatus::ok;
}

}  // namespace quellin::cli
