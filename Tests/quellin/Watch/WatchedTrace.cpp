#include "quellin/Watch/WatchedTrace.h"

#include "QuellinCore/Sessions/PowerSession.h"
#include "QuellinCore/Sessions/RunningSummary.h"
#include "Support/Replay.h"
#include "quellin/Presentation/SessionProgress.h"

namespace quellin::testing_support {

WatchedTrace::WatchedTrace(int readings) {
  const auto player = TracePlayer::open(exampleTrace()).value();
  for (int reading = 0; reading < readings; ++reading) {
    if (reading > 0) player->advance().value();
    Reading all = readEverything(player);
    states_.push_back(std::move(all.state));
    processes_ = std::move(all.activity);
  }
}

cli::WatchModel WatchedTrace::model() const {
  return {.source = "macbook.trace.jsonl",
          .state = states_.back(),
          .history = states_,
          .processes = processes_,
          .session = "No session is being recorded"};
}

std::string WatchedTrace::progress() const {
  const auto session = PowerSession::make({.id = UUID::random(),
                                           .title = "",
                                           .startedAt = states_.front().timestamp,
                                           .endedAt = std::nullopt,
                                           .appVersion = ""});
  RunningSummary running;
  for (const SystemPowerState& state : states_) running.ingest(state, {}, std::nullopt);
  return cli::sessionProgress(running.materialize(*session));
}

}  // namespace quellin::testing_support
