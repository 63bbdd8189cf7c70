#include "quellin/Measuring/TelemetryFeed.h"

#include "QuellinCore/Services/ProTelemetryService.h"

namespace quellin::cli {

TelemetryFeed::TelemetryFeed(bool isWanted, Loop& loop) : loop_(loop) {
  if (!isWanted) return;
  background_ = makeBackground();
  ask();
}

void TelemetryFeed::ask() {
  background_->run([this] {
    loop_.executor()->post([this, snapshot = ProTelemetryService{}.readSnapshot()] {
      latest_ = snapshot;
      loop_.after(pause, [this] { ask(); });
    });
  });
}

}  // namespace quellin::cli
