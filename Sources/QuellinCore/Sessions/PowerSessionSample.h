#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "QuellinCore/Sessions/ModelOwner.h"
#include "QuellinCore/Sessions/SampleColumns.h"
#include "QuellinCore/Support/Clock.h"
#include "QuellinCore/Support/Observation.h"
#include "QuellinCore/Support/UUID.h"

namespace quellin {

class PowerSession;

/// What a new sample is made of; its fields mean what those of the sample mean.
struct PowerSessionSampleInit {
  UUID id;                                         ///< all zeros unless given
  Instant timestamp;                               ///< by default that of the snapshot
  double elapsedSeconds = 0;                       ///< seconds since the start of the session
  std::string snapshotData;                        ///< JSON of a `SystemPowerStateDTO`
  std::optional<std::string> processActivityData;  ///< JSON of an array of `ProcessActivityDTO`
  std::optional<std::string> proTelemetryData;     ///< JSON of a `ProTelemetrySnapshot`
  std::optional<double> totalWatts;                ///< absent without a reading
  std::optional<std::int64_t> batteryPercent;      ///< absent without a battery
  std::optional<bool> acConnected;                 ///< absent without a battery
  std::int64_t thermalPressure = 0;                ///< 0 (none) to 4
  std::optional<std::int64_t> maxFanRPM;           ///< absent without fans
  std::optional<double> maxTemperature;            ///< degrees Celsius; absent without sensors
  std::shared_ptr<PowerSession> session;           ///< the one that it belongs to
};

/// One stored moment of a session: an object that its store knows once. Setters tell the observers; the store
/// writes the changes at its next save. Blobs stay in the store and are read from it when asked for. Used on
/// the store's main executor only.
class PowerSessionSample : public std::enable_shared_from_this<PowerSessionSample> {
 public:
  /// A sample that no store knows yet, made at the present time of `clock`.
  [[nodiscard]] static std::shared_ptr<PowerSessionSample> make(PowerSessionSampleInit values,
                                                                const WallClock& clock = systemWallClock());
  /// A sample with given values; for the store that reads it. Without blobs it asks its owner for them.
  PowerSessionSample(SampleColumns columns, std::optional<SampleBlobs> blobs,
                     std::shared_ptr<PowerSession> session);
  /// @{ The stored values, or one of them; see `SampleColumns` for units and what absence means.
  [[nodiscard]] const SampleColumns& columns() const { return columns_; }
  [[nodiscard]] const UUID& id() const { return columns_.id; }
  [[nodiscard]] Instant timestamp() const { return columns_.timestamp; }
  /// Seconds since the start of the session, never negative.
  [[nodiscard]] double elapsedSeconds() const { return columns_.elapsedSeconds; }
  /// Watts of the primary power reading; absent when there was none.
  [[nodiscard]] const std::optional<double>& totalWatts() const { return columns_.totalWatts; }
  [[nodiscard]] const std::optional<std::int64_t>& batteryPercent() const { return columns_.batteryPercent; }
  [[nodiscard]] const std::optional<bool>& acConnected() const { return columns_.acConnected; }
  [[nodiscard]] std::int64_t thermalPressure() const { return columns_.thermalPressure; }
  [[nodiscard]] const std::optional<std::int64_t>& maxFanRPM() const { return columns_.maxFanRPM; }
  /// Degrees Celsius.
  [[nodiscard]] const std::optional<double>& maxTemperature() const { return columns_.maxTemperature; }
  [[nodiscard]] Instant createdAt() const { return columns_.createdAt; }
  /// @}

  /// The JSON of a `SystemPowerStateDTO`; empty, which no JSON is, when the stored bytes are damaged. These
  /// three throw `StoreError` when the store cannot be read.
  [[nodiscard]] std::string snapshotData() const;
  /// The JSON of an array of `ProcessActivityDTO`; absent when none was taken, empty when the stored bytes
  /// are damaged.
  [[nodiscard]] std::optional<std::string> processActivityData() const;
  /// The JSON of a `ProTelemetrySnapshot`; absent when none was taken, empty when the stored bytes are
  /// damaged.
  [[nodiscard]] std::optional<std::string> proTelemetryData() const;
  /// All three with one access to the store.
  [[nodiscard]] SampleBlobs blobs() const;

  /// The session that the sample belongs to; null once that is deleted.
  [[nodiscard]] std::shared_ptr<PowerSession> session() const;
  /// @{ Changes the value, marks the sample for the next save, and then tells the observers.
  void setColumns(SampleColumns columns);
  void setSnapshotData(std::string data);
  void setProcessActivityData(std::optional<std::string> data);
  void setProTelemetryData(std::optional<std::string> data);
  /// @}

  /// Calls `observer` after every change of a value.
  [[nodiscard]] Subscription onChange(std::function<void()> observer);

 private:
  friend class ModelContext;

  template <class T>
  void setBlob(T SampleBlobs::* member, T data);
  void tellChange();

  SampleColumns columns_;
  std::optional<SampleBlobs> unsavedBlobs_;
  std::shared_ptr<PowerSession> session_;
  Signal<> changed_;
  std::weak_ptr<ModelOwner> owner_;
  std::int64_t key_ = 0;    // 0 until saved
  bool isChanged_ = false;  // among the changes that the owner will save
};

}  // namespace quellin
