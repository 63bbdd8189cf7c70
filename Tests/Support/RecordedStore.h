#pragma once

#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "QuellinCore/Sessions/PowerSession.h"
#include "QuellinCore/Sessions/SampleColumns.h"
#include "QuellinCore/Sessions/SampleFacts.h"
#include "QuellinCore/Support/UUID.h"

namespace quellin::testing_support {

struct RecordedSample {
  SampleColumns columns;
  SampleBlobs blobs;
  std::optional<SampleFacts> facts;
};

struct RecordedSession {
  PowerSessionColumns columns;
  std::vector<RecordedSample> samples;
};

/// All that can be read from a store file.
struct StoreReading {
  std::map<UUID, RecordedSession> sessions;
  bool isWhole = true;  ///< false when anything was reported as damaged or could not be opened
};

/// Reads all sessions of the store at `path` with all their samples.
[[nodiscard]] StoreReading readStore(const std::filesystem::path& path);

/// The bytes of a store file and of the log beside it.
struct StoreBytes {
  std::string file;
  std::string log;
};

/// Reads the store that these bytes make at `path`, where nothing is left of an earlier one; without a log
/// where that is empty.
[[nodiscard]] StoreReading readStoreOf(const StoreBytes& bytes, const std::filesystem::path& path);

/// Records three sessions at `path`, of which the last one is left active. The bytes are those of the store
/// while it is still open: that session is in the log only.
[[nodiscard]] StoreBytes recordStore(const std::filesystem::path& path, int samplesPerSession = 40);

/// What may be missing from a store that was read later without its saying so.
enum class Missing {
  nothing,
  rows,    ///< as when a page stands in for another one: what is there is as it was recorded
  theEnd,  ///< as after a crash: the log is damaged, and what was recorded last is lost
};

/// What `reading` says that is not as it was recorded in `whole`, or leaves out without saying so; empty when
/// it is truthful.
[[nodiscard]] std::string untruth(const StoreReading& reading, const StoreReading& whole,
                                  Missing mayBeMissing = Missing::nothing);

}  // namespace quellin::testing_support
