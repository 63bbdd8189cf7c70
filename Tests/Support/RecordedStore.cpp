#include "Support/RecordedStore.h"

#include <cstddef>
#include <fstream>
#include <stdexcept>

#include "QuellinCore/Sessions/PowerSessionStore.h"
#include "Support/GeneratedDay.h"
#include "Support/TemporaryFolder.h"

namespace quellin::testing_support {
namespace {

constexpr Instant midnight = instantAt(1741046400);
constexpr int sessionCount = 3;

bool agrees(const std::optional<std::string>& read, const std::optional<std::string>& recorded) {
  return read == recorded || read == "";
}

bool agrees(const RecordedSample& read, const RecordedSample& recorded) {
  if (read.columns != recorded.columns || (read.facts && read.facts != recorded.facts)) return false;
  // A row of blobs that is gone leaves a lost snapshot alone to tell of it.
  const SampleBlobs& blobs = read.blobs;
  if (blobs.snapshotData.empty() && !blobs.processActivityData && !blobs.proTelemetryData) return true;
  return agrees(blobs.snapshotData, recorded.blobs.snapshotData) &&
         agrees(blobs.processActivityData, recorded.blobs.processActivityData) &&
         agrees(blobs.proTelemetryData, recorded.blobs.proTelemetryData);
}

// What the samples of one session say that is not so.
std::string untruthOfSamples(const std::vector<RecordedSample>& read,
                             const std::vector<RecordedSample>& recorded) {
  std::size_t next = 0;
  for (const RecordedSample& sample : read) {
    while (next < recorded.size() && recorded[next].columns.id != sample.columns.id) ++next;
    if (next == recorded.size()) return "a sample that nobody recorded, or out of order";
    if (!agrees(sample, recorded[next])) return "a sample that is not as it was recorded";
  }
  return {};
}

}  // namespace

StoreReading readStore(const std::filesystem::path& path) {
  StoreReading reading;
  try {
    PowerSessionStore store("test", path);
    for (const auto& session : store.sessions()) {
      RecordedSession& recorded = reading.sessions[session->id()];
      recorded.columns = session->columns();
      reading.isWhole = reading.isWhole && store.check(*session).isWhole();
      auto cursor = store.scan(*session, SampleCursor::OnDamage::skip);
      while (cursor->next())
        recorded.samples.push_back({cursor->columns(), cursor->blobs(), cursor->facts()});
    }
  } catch (const StoreError&) {
    reading.isWhole = false;
  }
  return reading;
}

StoreReading readStoreOf(const StoreBytes& bytes, const std::filesystem::path& path) {
  for (const char* suffix : {"", "-wal", "-shm"}) std::filesystem::remove(path.string() + suffix);
  const auto write = [](const std::filesystem::path& place, const std::string& content) {
    std::ofstream stream(place, std::ios::binary);
    stream << content;
    if (!stream.flush()) throw std::runtime_error("cannot be written: " + place.string());
  };
  write(path, bytes.file);
  if (!bytes.log.empty()) write(path.string() + "-wal", bytes.log);
  return readStore(path);
}

StoreBytes recordStore(const std::filesystem::path& path, int samplesPerSession) {
  PowerSessionStore store("0.9.4", path);
  GeneratedDay day;
  for (int index = 0; index < sessionCount; ++index) {
    const auto session = store.start("session " + std::to_string(index), PowerSessionSource::cli, 1,
                                     midnight + Seconds(index));
    for (int second = 0; second < samplesPerSession; ++second) {
      const auto moment = day.next();
      store.appendSample(session, moment.state, moment.activities, moment.telemetry);
    }
    if (index + 1 < sessionCount) store.stop(session, midnight + Seconds(samplesPerSession));
  }
  return {.file = contentOf(path), .log = contentOf(path.string() + "-wal")};
}

std::string untruth(const StoreReading& reading, const StoreReading& whole, Missing mayBeMissing) {
  const bool mustBeWhole = reading.isWhole && mayBeMissing == Missing::nothing;
  if (mustBeWhole && reading.sessions.size() != whole.sessions.size()) return "a session is missing";
  for (const auto& [id, session] : reading.sessions) {
    const auto recorded = whole.sessions.find(id);
    if (recorded == whole.sessions.end()) return "a session that nobody recorded";
    const RecordedSession& original = recorded->second;
    if (mayBeMissing != Missing::theEnd && session.columns != original.columns)
      return "a session that is not as recorded";
    if (auto found = untruthOfSamples(session.samples, original.samples); !found.empty()) return found;
    if (mustBeWhole && session.samples.size() != original.samples.size()) return "samples are missing";
  }
  return {};
}

}  // namespace quellin::testing_support
