#include "QuellinCore/Sessions/PowerSessionStore.h"

#include <algorithm>
#include <cmath>
#include <string_view>
#include <system_error>
#include <utility>

#include "QuellinCore/Sessions/PowerSessionCoders.h"
#include "QuellinCore/Sessions/SampleMaxima.h"
#include "QuellinCore/Sessions/Storage/CostRows.h"
#include "QuellinCore/Sessions/Storage/SessionBlobs.h"
#include "QuellinCore/Sessions/TimeOrder.h"
#include "QuellinCore/Sessions/WattStatistics.h"
#include "QuellinCore/Support/Text.h"

namespace quellin {
namespace {

constexpr std::int64_t sampleSchemaVersion = 2;

using Sessions = std::vector<std::shared_ptr<PowerSession>>;

bool isActive(const std::shared_ptr<PowerSession>& session) {
  return session->statusRaw() == rawValue(PowerSessionStatus::active);
}

// The first that fits, in a list with the newest first.
template <class Predicate>
std::shared_ptr<PowerSession> firstOf(const Sessions& sessions, Predicate predicate) {
  const auto found = std::ranges::find_if(sessions, predicate);
  return found == sessions.end() ? nullptr : *found;
}

std::shared_ptr<ModelContainer> openContainer(const std::optional<std::filesystem::path>& storeURL,
                                              bool inMemory,
                                              const PowerSessionStoreSurroundings& surroundings) {
  if (inMemory) return std::make_shared<ModelContainer>();
  const auto path = storeURL ? *storeURL : PowerSessionStore::defaultStoreURL(surroundings.homeFolder);
  return std::make_shared<ModelContainer>(path, surroundings.file);
}

// The blob of a record; throws when it has no JSON form.
template <class T>
std::string encodedOrThrow(const T& record, const std::filesystem::path& path) {
  constexpr std::size_t usualLength = 6000;
  std::string text;
  text.reserve(usualLength);
  const auto result = PowerSessionCoders::encoder.append(text, record);
  if (!result) throw StoreError(StoreError::Kind::notEncodable, path, result.error().message());
  return text;
}

}  // namespace

PowerSessionStore::PowerSessionStore(std::string appVersion,
                                     const std::optional<std::filesystem::path>& storeURL, bool inMemory,
                                     PowerSessionStoreSurroundings surroundings)
    : appVersion_(std::move(appVersion)),
      surroundings_(std::move(surroundings)),
      container_(openContainer(storeURL, inMemory, surroundings_)),
      context_(std::make_shared<ModelContext>(container_, surroundings_.executor)) {
  requireCurrent(*surroundings_.executor);
}

PowerSessionStore::~PowerSessionStore() = default;

std::filesystem::path PowerSessionStore::defaultStoreURL(const HomeFolderLookup& homeFolder) {
  std::filesystem::path path = defaultStorePath(homeFolder);
  std::error_code reportedWhenOpening;
  std::filesystem::create_directories(path.parent_path(), reportedWhenOpening);
  return path;
}

std::filesystem::path PowerSessionStore::defaultStorePath(const HomeFolderLookup& homeFolder) {
  return homeFolder() / "Library" / "Application Support" / "Quellin" / "QuellinSessions.store";
}

std::string PowerSessionStore::normalizedTitle(const std::optional<std::string>& title, Instant startedAt,
                                               const LocaleDateText& dateText) {
  if (title && !trimmed(*title).empty()) return std::string(trimmed(*title));
  return "Power Session " + dateText.mediumDateShortTime(startedAt);
}

std::shared_ptr<PowerSession> PowerSessionStore::activeSession() { return firstOf(sessions(), isActive); }

bool PowerSessionStore::isStillActive(const std::shared_ptr<PowerSession>& session) {
  return context_->refresh(session) && isActive(session);
}

std::shared_ptr<PowerSession> PowerSessionStore::start(const std::optional<std::string>& title,
                                                       PowerSessionSource source, double sampleInterval,
                                                       Instant startedAt) {
  return context_->findOrInsert([](const Sessions& sessions) { return firstOf(sessions, isActive); },
                                [&] {
                                  return PowerSession::make(
                                      {.id = UUID::random(),
                                       .title = normalizedTitle(title, startedAt, surroundings_.dateText),
                                       .startedAt = startedAt,
                                       .endedAt = std::nullopt,
                                       .status = PowerSessionStatus::active,
                                       .source = source,
                                       .appVersion = appVersion_,
                                       .schemaVersion = sampleSchemaVersion,
                                       .sampleInterval = sampleInterval},
                                      surroundings_.clock);
                                });
}

void PowerSessionStore::stop(const std::shared_ptr<PowerSession>& session, Instant endedAt) {
  end(session, PowerSessionStatus::completed, endedAt);
}

void PowerSessionStore::interrupt(const std::shared_ptr<PowerSession>& session, Instant endedAt) {
  end(session, PowerSessionStatus::interrupted, endedAt);
}

void PowerSessionStore::end(const std::shared_ptr<PowerSession>& session, PowerSessionStatus status,
                            Instant endedAt) {
  requireCurrent(*surroundings_.executor);
  // An observer of the session may drop the caller's.
  // NOLINTNEXTLINE(performance-unnecessary-copy-initialization)
  const std::shared_ptr<PowerSession> kept = session;
  kept->setStatusRaw(std::string(rawValue(status)));
  kept->setEndedAt(endedAt);
  context_->save();
  container_->checkpoint();
}

std::vector<std::shared_ptr<PowerSession>> PowerSessionStore::sessions() { return context_->sessions(); }

std::vector<std::shared_ptr<PowerSession>> PowerSessionStore::completedSessions() {
  Sessions result = sessions();
  std::erase_if(result, isActive);
  return result;
}

std::shared_ptr<PowerSession> PowerSessionStore::session(const UUID& id) {
  return firstOf(sessions(), [&](const auto& session) { return session->id() == id; });
}

std::vector<std::shared_ptr<PowerSessionSample>> PowerSessionStore::samples(
    const std::shared_ptr<PowerSession>& session) noexcept {
  requireCurrent(*surroundings_.executor);
  try {
    auto result = session->samples().value_or(std::vector<std::shared_ptr<PowerSessionSample>>());
    std::ranges::stable_sort(result, IsEarlier{}, &PowerSessionSample::timestamp);
    return result;
  } catch (const StoreError&) {
    return {};
  }
}

std::optional<SampleCursor> PowerSessionStore::scan(const PowerSession& session,
                                                    SampleCursor::OnDamage onDamage) {
  requireCurrent(*surroundings_.executor);
  const std::int64_t key = ModelContext::keyOf(session);
  if (key == 0) return std::nullopt;
  return SampleCursor(container_->database(), context_->blobsOfSession(key), onDamage,
                      SampleCursor::Order::time);
}

SessionCheck PowerSessionStore::check(const PowerSession& session) {
  SessionCheck result;
  auto cursor = scan(session, SampleCursor::OnDamage::skip);
  if (!cursor) return result;
  while (cursor->next()) {
    ++result.sampleCount;
    const SampleBlobs blobs = cursor->blobs();
    result.lostSnapshots += blobs.snapshotData.empty() ? 1 : 0;
    for (const auto& data : {blobs.processActivityData, blobs.proTelemetryData}) {
      result.lostProcessData += data && data->empty() ? 1 : 0;
    }
  }
  result.lostSamples = cursor->skipped();
  result.hasLostCost = readCost(container_->database(), ModelContext::keyOf(session)).isDamaged;
  return result;
}

void PowerSessionStore::addCost(const std::shared_ptr<PowerSession>& session, const RecorderCost& cost) {
  context_->addCost(session, cost);
}

std::optional<RecorderCost> PowerSessionStore::cost(const PowerSession& session) {
  requireCurrent(*surroundings_.executor);
  return readCost(container_->database(), ModelContext::keyOf(session)).cost;
}

void PowerSessionStore::remove(const std::shared_ptr<PowerSession>& session) {
  context_->remove(session);
  context_->save();
}

std::shared_ptr<PowerSessionSample> PowerSessionStore::appendSample(
    const std::shared_ptr<PowerSession>& session, const SystemPowerState& state,
    const std::vector<ProcessActivityInfo>& processActivities,
    const std::optional<ProTelemetrySnapshot>& proTelemetry, std::optional<Instant> timestamp) {
  requireCurrent(*surroundings_.executor);
  const std::filesystem::path& path = container_->path();
  const Instant moment = timestamp.value_or(state.timestamp);
  if (!std::isfinite(moment.time_since_epoch().count())) {
    throw StoreError(StoreError::Kind::notStorable, path, "the timestamp is not finite");
  }
  const SystemPowerStateDTO snapshot(state);
  const std::vector<ProcessActivityDTO> activities(processActivities.begin(), processActivities.end());
  PowerSessionSampleInit values;
  values.id = UUID::random();
  values.timestamp = moment;
  values.elapsedSeconds = elapsedSeconds(session->startedAt(), moment);
  values.snapshotData = encodedOrThrow(snapshot, path);
  if (!activities.empty()) values.processActivityData = encodedOrThrow(activities, path);
  if (proTelemetry) {
    if (auto encoded = PowerSessionCoders::encoder.encode(*proTelemetry))
      values.proTelemetryData = *std::move(encoded);
  }
  values.totalWatts = snapshot.totalWatts;
  if (state.battery) {
    values.batteryPercent = state.battery->chargePercent;
    values.acConnected = state.battery->acConnected;
  }
  const SampleMaxima greatest = maxima(state);
  values.thermalPressure = greatest.thermalPressure;
  values.maxFanRPM = greatest.fanRPM;
  values.maxTemperature = greatest.temperature;
  values.session = session;
  auto facts = sampleFacts(snapshot, activities, values.proTelemetryData ? &*proTelemetry : nullptr);
  auto sample = PowerSessionSample::make(std::move(values), surroundings_.clock);
  context_->insert(sample, std::move(facts));
  context_->save();
  return sample;
}

}  // namespace quellin
