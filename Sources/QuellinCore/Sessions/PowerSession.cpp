#include "QuellinCore/Sessions/PowerSession.h"

#include <utility>

namespace quellin {

std::shared_ptr<PowerSession> PowerSession::make(PowerSessionInit values, const WallClock& clock) {
  return std::make_shared<PowerSession>(PowerSessionColumns{.id = values.id,
                                                            .title = std::move(values.title),
                                                            .startedAt = values.startedAt,
                                                            .endedAt = values.endedAt,
                                                            .statusRaw = std::string(rawValue(values.status)),
                                                            .sourceRaw = std::string(rawValue(values.source)),
                                                            .appVersion = std::move(values.appVersion),
                                                            .schemaVersion = values.schemaVersion,
                                                            .sampleInterval = values.sampleInterval,
                                                            .createdAt = clock.now()});
}

PowerSession::PowerSession(PowerSessionColumns columns) : columns_(std::move(columns)) {}

PowerSessionStatus PowerSession::status() const {
  return fromRawValue<PowerSessionStatus>(statusRaw().value_or("")).value_or(PowerSessionStatus::active);
}

PowerSessionSource PowerSession::source() const {
  return fromRawValue<PowerSessionSource>(sourceRaw().value_or("")).value_or(PowerSessionSource::app);
}

template <class T>
void PowerSession::set(T PowerSessionColumns::* member, T value) {
  columns_.*member = std::move(value);
  if (const auto owner = owner_.lock()) owner->modelChanged(shared_from_this());
  changed_.notify();
}

void PowerSession::setTitle(std::string title) { set(&PowerSessionColumns::title, std::move(title)); }

void PowerSession::setStartedAt(Instant instant) { set(&PowerSessionColumns::startedAt, instant); }

void PowerSession::setEndedAt(std::optional<Instant> instant) { set(&PowerSessionColumns::endedAt, instant); }

void PowerSession::setStatusRaw(std::optional<std::string> raw) {
  set(&PowerSessionColumns::statusRaw, std::move(raw));
}

void PowerSession::setSourceRaw(std::optional<std::string> raw) {
  set(&PowerSessionColumns::sourceRaw, std::move(raw));
}

void PowerSession::setSampleInterval(double seconds) { set(&PowerSessionColumns::sampleInterval, seconds); }

std::optional<std::vector<std::shared_ptr<PowerSessionSample>>> PowerSession::samples() const {
  if (isDeleted_) return std::nullopt;
  const auto owner = owner_.lock();
  return owner ? owner->samplesOf(*this) : std::vector<std::shared_ptr<PowerSessionSample>>();
}

Subscription PowerSession::onChange(std::function<void()> observer) {
  return changed_.subscribe(std::move(observer));
}

}  // namespace quellin
