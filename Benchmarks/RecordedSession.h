#pragma once

#include <cstdint>
#include <filesystem>
#include <map>
#include <memory>

#include "QuellinCore/Sessions/PowerSessionStore.h"
#include "Support/GeneratedDay.h"
#include "Support/TemporaryFolder.h"

namespace quellin::benchmarks {

/// A store on disk that holds one session of a made-up day, a sample a second.
class RecordedSession {
 public:
  explicit RecordedSession(std::int64_t samples) : path_(folder_.path() / "session.store") {
    PowerSessionStore store("0.9.4", path_);
    testing_support::GeneratedDay day;
    auto moment = day.next();
    const auto session = store.start("Day", PowerSessionSource::cli, 1, moment.state.timestamp);
    for (std::int64_t second = 0; second < samples; ++second) {
      store.appendSample(session, moment.state, moment.activities, moment.telemetry);
      moment = day.next();
    }
  }

  [[nodiscard]] const std::filesystem::path& path() const { return path_; }

  /// The one of this length that all benchmarks share: making it takes longer than what is measured.
  static const RecordedSession& ofLength(std::int64_t samples) {
    static std::map<std::int64_t, std::unique_ptr<const RecordedSession>> made;
    auto& session = made[samples];
    if (!session) session = std::make_unique<const RecordedSession>(samples);
    return *session;
  }

 private:
  testing_support::TemporaryFolder folder_;
  std::filesystem::path path_;
};

}  // namespace quellin::benchmarks
