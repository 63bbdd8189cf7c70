#include "quellin/Support/OldSessions.h"

#include <optional>
#include <string>

#include "QuellinCore/Sessions/PowerSessionStore.h"
#include "Support/SampleStates.h"

namespace quellin::testing_support {

void recordOldSessions(const std::filesystem::path& path, int count) {
  PowerSessionStore store{"0.9.4", path};
  for (int number = 0; number < count; ++number) {
    const Instant start = instantAt(1000.0 * number);
    const auto session = store.start("Old " + std::to_string(number), PowerSessionSource::cli, 1, start);
    store.appendSample(session, stateOnBattery(start), {}, std::nullopt);
    store.stop(session, start + Seconds{1});
  }
}

}  // namespace quellin::testing_support
