#include "QuellinCore/Platform/Recorded/TracePlayer.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace quellin {

std::optional<PlaybackSpeed> PlaybackSpeed::times(double factor) {
  if (!std::isfinite(factor) || factor <= 0) return std::nullopt;
  return PlaybackSpeed{factor};
}

Seconds PlaybackSpeed::shortened(Seconds duration) const {
  return factor_ ? duration / *factor_ : Seconds{0};
}

Seconds nominalInterval(Seconds measured) {
  constexpr double stepsPerSecond = 20;
  const Seconds rounded{std::round(measured.count() * stepsPerSecond) / stepsPerSecond};
  return rounded > Seconds{0} ? rounded : measured;
}

std::expected<std::shared_ptr<TracePlayer>, TraceError> TracePlayer::open(const std::string& path,
                                                                          PlaybackSpeed speed,
                                                                          MonotonicClock& host) {
  auto reader = TraceReader::open(path);
  if (!reader) return std::unexpected(std::move(reader.error()));
  return over(*std::move(reader), speed, host);
}

std::expected<std::shared_ptr<TracePlayer>, TraceError> TracePlayer::over(TraceReader reader,
                                                                          PlaybackSpeed speed,
                                                                          MonotonicClock& host) {
  // The constructor is private, so that a player is never seen before it stands on its first tick.
  struct Player : TracePlayer {
    Player(TraceReader source, PlaybackSpeed pace, MonotonicClock& clock)
        : TracePlayer(std::move(source), pace, clock) {}
  };
  std::shared_ptr<TracePlayer> player = std::make_shared<Player>(std::move(reader), speed, host);
  if (!player->next_) return std::unexpected(player->next_.error());
  if (auto moved = player->advance(); !moved) return std::unexpected(std::move(moved.error()));
  player->monotonicStart_ = player->monotonic_;
  return player;
}

TracePlayer::TracePlayer(TraceReader reader, PlaybackSpeed speed, MonotonicClock& host)
    : path_(reader.path()),
      header_(reader.header()),
      speed_(speed),
      host_(&host),
      reader_(std::move(reader)),
      next_(reader_.next()),
      wall_(instantAt(header_.createdAt)),
      hostStart_(host.now()) {}

bool TracePlayer::atEnd() const {
  const std::lock_guard lock{mutex_};
  return present_ == nullptr;
}

Seconds TracePlayer::untilNext() const {
  const std::lock_guard lock{mutex_};
  if (!next_ || !*next_) return Seconds{0};
  const Seconds due = hostStart_ + speed_.shortened((*next_)->monotonic - monotonicStart_);
  return std::max(due - host_->now(), Seconds{0});
}

std::optional<Seconds> TracePlayer::interval() const {
  const std::lock_guard lock{mutex_};
  if (!present_ || !next_ || !*next_) return std::nullopt;
  return (*next_)->monotonic - present_->monotonic;
}

std::expected<void, TraceError> TracePlayer::advance() {
  const std::lock_guard lock{mutex_};
  if (next_ && *next_) {
    standOn(**std::move(next_));
    next_ = reader_.next();
    return {};
  }
  const bool wasAtEnd = present_ == nullptr;
  present_ = nullptr;
  processes_ = nullptr;
  if (!next_ && !wasAtEnd) return std::unexpected(next_.error());
  return {};
}

void TracePlayer::standOn(HostAnswers tick) {
  ++ticksPlayed_;
  wall_ = tick.wall;
  monotonic_ = std::max(monotonic_, tick.monotonic);
  if (tick.processes) processes_ = tick.processes;
  present_ = std::make_shared<const HostAnswers>(std::move(tick));
}

std::size_t TracePlayer::ticksPlayed() const {
  const std::lock_guard lock{mutex_};
  return ticksPlayed_;
}

std::size_t TracePlayer::tornLines() const {
  const std::lock_guard lock{mutex_};
  return reader_.tornLines();
}

std::shared_ptr<const HostAnswers> TracePlayer::answers() const {
  const std::lock_guard lock{mutex_};
  return present_;
}

std::shared_ptr<const ProcessAnswers> TracePlayer::processes() const {
  const std::lock_guard lock{mutex_};
  return processes_;
}

Instant TracePlayer::PlayerWallClock::now() const {
  const std::lock_guard lock{player_->mutex_};
  return player_->wall_;
}

Seconds TracePlayer::PlayerMonotonicClock::now() const {
  const std::lock_guard lock{player_->mutex_};
  return player_->monotonic_;
}

void TracePlayer::PlayerMonotonicClock::sleep(Seconds duration) {
  if (!(duration.count() > 0)) return;
  player_->host_->sleep(player_->speed_.shortened(duration));
  const std::lock_guard lock{player_->mutex_};
  player_->monotonic_ += duration;
}

}  // namespace quellin
