#include "quellin/Measuring/TelemetryFeed.h"

#include <utility>

namespace quellin::cli {

TelemetryFeed::TelemetryFeed(bool isWanted, Loop& loop, ProTelemetryService tool)
    : loop_(loop), tool_(std::move(tool)) {
  if (!isWanted) return;
  background_ = makeBackground();
  ask();
}

void TelemetryFeed::ask() {
  background_->run([this] {
    loop_.executor()->post([this, snapshot = tool_.readSnapshot()] {
      latest_ = snapshot;
      loop_.after(pause, [this] { ask(); });
    });
  });
}

}  // namespace quellin::cli
