#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "QuellinCore/Models/ProTelemetrySnapshot.h"
#include "QuellinCore/Models/ProcessActivityInfo.h"
#include "QuellinCore/Models/SystemPowerState.h"
#include "QuellinCore/Sessions/ModelContainer.h"
#include "QuellinCore/Sessions/ModelContext.h"
#include "QuellinCore/Sessions/PowerSession.h"
#include "QuellinCore/Sessions/PowerSessionSample.h"
#include "QuellinCore/Sessions/PowerSessionSummary.h"
#include "QuellinCore/Sessions/SampleCursor.h"
#include "QuellinCore/Sessions/SessionCoverage.h"
#include "QuellinCore/Sessions/StoreError.h"
#include "QuellinCore/Sessions/TextSink.h"
#include "QuellinCore/Support/Clock.h"
#include "QuellinCore/Support/HomeFolder.h"
#include "QuellinCore/Support/LocaleDateText.h"
#include "QuellinCore/Support/MainExecutor.h"
#include "QuellinCore/Support/UUID.h"

namespace quellin {

struct SessionReport;
struct SessionVisitor;

/// What a store takes from its surroundings; the defaults are for production.
struct PowerSessionStoreSurroundings {
  std::shared_ptr<const MainExecutor> executor =
      std::make_shared<ThreadExecutor>();                   ///< the thread that asks for it
  const WallClock& clock = systemWallClock();               ///< stamps new records
  const LocaleDateText& dateText = systemLocaleDateText();  ///< for titles
  HomeFolderLookup homeFolder = quellin::homeFolder;        ///< for the default file
  StoreFileOptions file = {};                               ///< how long to wait for other processes
};

/// What a full reading of a session found; see `PowerSessionStore::check`.
struct SessionCheck {
  std::int64_t sampleCount = 0;      ///< samples that can be read
  std::int64_t lostSamples = 0;      ///< samples that are damaged or missing
  std::int64_t lostSnapshots = 0;    ///< of the readable samples, those whose snapshot is damaged
  std::int64_t lostProcessData = 0;  ///< process activities and pro telemetry that are damaged
  bool hasLostCost = false;          ///< what recording has cost is damaged

  [[nodiscard]] bool isWhole() const {
    return lostSamples == 0 && lostSnapshots == 0 && lostProcessData == 0 && !hasLostCost;
  }  ///< Whether nothing is damaged.
  bool operator==(const SessionCheck&) const = default;
};

/// Recorded sessions and their samples, in a file that several processes may use at once. Operations throw
/// `StoreError`, change nothing when they do unless they say so, and end the process when called elsewhere
/// than on the main executor. Sessions and samples are the store's own objects: the same row is the same
/// object for as long as anybody holds it.
class PowerSessionStore {
 public:
  /// Opens the store in memory, or at `storeURL`, or at the default place. The file is made when there is
  /// none.
  explicit PowerSessionStore(std::string appVersion,
                             const std::optional<std::filesystem::path>& storeURL = std::nullopt,
                             bool inMemory = false, PowerSessionStoreSurroundings surroundings = {});
  ~PowerSessionStore();
  PowerSessionStore(const PowerSessionStore&) = delete;
  PowerSessionStore& operator=(const PowerSessionStore&) = delete;
  PowerSessionStore(PowerSessionStore&&) = delete;
  PowerSessionStore& operator=(PowerSessionStore&&) = delete;

  /// "QuellinSessions.store" in the folder "Library/Application Support/Quellin" of the home folder. The
  /// folder is made; when that fails, opening the store will tell.
  [[nodiscard]] static std::filesystem::path defaultStoreURL(
      const HomeFolderLookup& homeFolder = quellin::homeFolder);

  /// The same place, only named: nothing is made.
  [[nodiscard]] static std::filesystem::path defaultStorePath(
      const HomeFolderLookup& homeFolder = quellin::homeFolder);

  /// `title` without the white space around it; without a title, or with nothing but white space, "Power
  /// Session " and the start in the user's locale.
  [[nodiscard]] static std::string normalizedTitle(const std::optional<std::string>& title, Instant startedAt,
                                                   const LocaleDateText& dateText = systemLocaleDateText());

  [[nodiscard]] ModelContainer& container() { return *container_; }  ///< the open file; main executor only
  [[nodiscard]] ModelContext& context() { return *context_; }  ///< what gathers changes until they are saved
  /// Written into new sessions.
  [[nodiscard]] const std::string& appVersion() const { return appVersion_; }

  /// The newest session whose raw status is "active"; null when there is none.
  [[nodiscard]] std::shared_ptr<PowerSession> activeSession();

  /// Whether the session is in the store and its raw status is "active", whoever changed it last. A look at
  /// this one session: it costs the same however many there are.
  [[nodiscard]] bool isStillActive(const std::shared_ptr<PowerSession>& session);

  /// The active session, unchanged, when there is one in any process; otherwise a new one, which is saved.
  /// `sampleInterval` in seconds.
  std::shared_ptr<PowerSession> start(const std::optional<std::string>& title, PowerSessionSource source,
                                      double sampleInterval, Instant startedAt);

  /// Ends the session as completed, whatever its status was. When saving throws, the session keeps the new
  /// values and the next save writes them.
  void stop(const std::shared_ptr<PowerSession>& session, Instant endedAt);
  /// As `stop`, as interrupted.
  void interrupt(const std::shared_ptr<PowerSession>& session, Instant endedAt);

  /// Stores one sample of `state` at `timestamp`, by default the state's own. Throws notEncodable, and stores
  /// nothing, when the state or the activities have no JSON form; pro telemetry that has none is left out.
  /// When saving throws, the sample stays in the context, and the next save that succeeds, that of a later
  /// sample for example, saves it too.
  std::shared_ptr<PowerSessionSample> appendSample(const std::shared_ptr<PowerSession>& session,
                                                   const SystemPowerState& state,
                                                   const std::vector<ProcessActivityInfo>& processActivities,
                                                   const std::optional<ProTelemetrySnapshot>& proTelemetry,
                                                   std::optional<Instant> timestamp = std::nullopt);

  /// All sessions, newest start first.
  [[nodiscard]] std::vector<std::shared_ptr<PowerSession>> sessions();
  /// The sessions whose raw status is anything but "active", newest start first.
  [[nodiscard]] std::vector<std::shared_ptr<PowerSession>> completedSessions();
  /// The session with this identifier; null when there is none.
  [[nodiscard]] std::shared_ptr<PowerSession> session(const UUID& id);

  /// The samples of a session by timestamp, equal ones in the order stored. Never throws: what cannot be read
  /// is left out. It makes an object of each sample; `scan` does not.
  [[nodiscard]] std::vector<std::shared_ptr<PowerSessionSample>> samples(
      const std::shared_ptr<PowerSession>& session) noexcept;

  /// A walk over the saved samples of a session by timestamp; no value for a session that is not saved.
  [[nodiscard]] std::optional<SampleCursor> scan(
      const PowerSession& session, SampleCursor::OnDamage onDamage = SampleCursor::OnDamage::fail);

  /// Reads all of a session's saved samples and blobs and counts what is damaged.
  [[nodiscard]] SessionCheck check(const PowerSession& session);

  /// All that a session comes to, from one walk over its samples, with the store as it is at one moment,
  /// whatever other processes write. Damaged samples count as missing.
  [[nodiscard]] SessionReport report(const std::shared_ptr<PowerSession>& session);
  /// The same, with `visitor` looking on.
  [[nodiscard]] SessionReport report(const std::shared_ptr<PowerSession>& session,
                                     const SessionVisitor& visitor);

  /// What a session comes to: that part of its report.
  [[nodiscard]] PowerSessionSummary summary(const std::shared_ptr<PowerSession>& session);

  /// How much of a session's time has power readings: that part of its report.
  [[nodiscard]] SessionCoverage coverage(const std::shared_ptr<PowerSession>& session);

  /// Adds to what recording a session has cost; the next save that succeeds writes it. A session with samples
  /// whose cost nobody noted gets none: a part would pass for the whole.
  void addCost(const std::shared_ptr<PowerSession>& session, const RecorderCost& cost);
  /// What recording a session has cost, as far as that is saved; absent when it was never noted, as in
  /// sessions recorded by earlier software, or is damaged.
  [[nodiscard]] std::optional<RecorderCost> cost(const PowerSession& session);
  /// Bytes that saving has written through this store: see `RecorderCost`.
  [[nodiscard]] std::int64_t bytesWritten() const { return container_->bytesWritten(); }

  /// Writes the session as a JSON Lines document to `sink`, in constant memory; the sink must not use the
  /// store. Samples whose snapshot cannot be decoded are left out. Throws notEncodable when the summary has
  /// no JSON form; nothing is written then.
  void exportJSONL(const std::shared_ptr<PowerSession>& session, Instant exportedAt, const TextSink& sink);
  /// The same document as one string.
  [[nodiscard]] std::string exportJSONL(const std::shared_ptr<PowerSession>& session, Instant exportedAt);

  /// Deletes a session and its samples. When saving throws, the session is found no more and takes no
  /// samples, and the next save that succeeds deletes it.
  void remove(const std::shared_ptr<PowerSession>& session);

 private:
  [[nodiscard]] SessionReport sumUp(const std::shared_ptr<PowerSession>& session,
                                    const SessionVisitor& visitor);
  void end(const std::shared_ptr<PowerSession>& session, PowerSessionStatus status, Instant endedAt);

  std::string appVersion_;
  PowerSessionStoreSurroundings surroundings_;
  std::shared_ptr<ModelContainer> container_;
  std::shared_ptr<ModelContext> context_;
};

}  // namespace quellin
