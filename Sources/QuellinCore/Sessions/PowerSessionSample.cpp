#include "QuellinCore/Sessions/PowerSessionSample.h"

#include <utility>

#include "QuellinCore/Sessions/PowerSession.h"

namespace quellin {

std::shared_ptr<PowerSessionSample> PowerSessionSample::make(PowerSessionSampleInit values,
                                                             const WallClock& clock) {
  const SampleColumns columns{.id = values.id,
                              .timestamp = values.timestamp,
                              .elapsedSeconds = values.elapsedSeconds,
                              .totalWatts = values.totalWatts,
                              .batteryPercent = values.batteryPercent,
                              .acConnected = values.acConnected,
                              .thermalPressure = values.thermalPressure,
                              .maxFanRPM = values.maxFanRPM,
                              .maxTemperature = values.maxTemperature,
                              .createdAt = clock.now()};
  SampleBlobs blobs{std::move(values.snapshotData), std::move(values.processActivityData),
                    std::move(values.proTelemetryData)};
  return std::make_shared<PowerSessionSample>(columns, std::move(blobs), std::move(values.session));
}

PowerSessionSample::PowerSessionSample(SampleColumns columns, std::optional<SampleBlobs> blobs,
                                       std::shared_ptr<PowerSession> session)
    : columns_(columns), unsavedBlobs_(std::move(blobs)), session_(std::move(session)) {}

std::string PowerSessionSample::snapshotData() const { return blobs().snapshotData; }

std::optional<std::string> PowerSessionSample::processActivityData() const {
  return blobs().processActivityData;
}

std::optional<std::string> PowerSessionSample::proTelemetryData() const { return blobs().proTelemetryData; }

SampleBlobs PowerSessionSample::blobs() const {
  if (unsavedBlobs_) return *unsavedBlobs_;
  const auto owner = owner_.lock();
  return owner ? owner->blobsOf(*this) : SampleBlobs();
}

std::shared_ptr<PowerSession> PowerSessionSample::session() const {
  return session_ && !session_->isDeleted() ? session_ : nullptr;
}

void PowerSessionSample::tellChange() {
  if (const auto owner = owner_.lock()) owner->modelChanged(shared_from_this());
  changed_.notify();
}

template <class T>
void PowerSessionSample::setBlob(T SampleBlobs::* member, T data) {
  if (!unsavedBlobs_) unsavedBlobs_ = blobs();
  (*unsavedBlobs_).*member = std::move(data);
  tellChange();
}

void PowerSessionSample::setColumns(SampleColumns columns) {
  columns_ = columns;
  tellChange();
}

void PowerSessionSample::setSnapshotData(std::string data) {
  setBlob(&SampleBlobs::snapshotData, std::move(data));
}

void PowerSessionSample::setProcessActivityData(std::optional<std::string> data) {
  setBlob(&SampleBlobs::processActivityData, std::move(data));
}

void PowerSessionSample::setProTelemetryData(std::optional<std::string> data) {
  setBlob(&SampleBlobs::proTelemetryData, std::move(data));
}

Subscription PowerSessionSample::onChange(std::function<void()> observer) {
  return changed_.subscribe(std::move(observer));
}

}  // namespace quellin
