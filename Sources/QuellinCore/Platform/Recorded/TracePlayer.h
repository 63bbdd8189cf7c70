#pragma once

#include <cstddef>
#include <expected>
#include <memory>
#include <mutex>
#include <optional>
#include <string>

#include "QuellinCore/Platform/Recorded/HostAnswers.h"
#include "QuellinCore/Platform/Recorded/TraceError.h"
#include "QuellinCore/Platform/Recorded/TraceHeader.h"
#include "QuellinCore/Platform/Recorded/TraceReader.h"
#include "QuellinCore/Support/Clock.h"

namespace quellin {

/// How fast a trace goes by. A plain value: several threads may read one, as long as none changes it.
class PlaybackSpeed {
 public:
  /// Without any wait.
  [[nodiscard]] static PlaybackSpeed maximum() { return PlaybackSpeed{std::nullopt}; }
  /// `factor` times as fast as it was captured; no value unless that is finite and above 0.
  [[nodiscard]] static std::optional<PlaybackSpeed> times(double factor);

  /// How long something takes that took `duration` when it was captured.
  [[nodiscard]] Seconds shortened(Seconds duration) const;

 private:
  explicit PlaybackSpeed(std::optional<double> factor) : factor_(factor) {}

  std::optional<double> factor_;
};

/// The interval that was asked for when ticks were captured `measured` apart: they wander around it by some
/// hundredths of a second, so that it is told to a twentieth of one. `measured` itself where that leaves
/// nothing.
[[nodiscard]] Seconds nominalInterval(Seconds measured);

/// Plays a trace in the place of a machine: `recordedSources` answers from the tick at which the player
/// stands, and its two clocks show the time of that tick.
///
/// The player stands on the first tick at once and moves on only when `advance` is called; a sleep on its
/// monotonic clock, which readers need to measure something, moves that clock but not the player. So every
/// tick can be read exactly once, whole, at any speed:
///
///     while (!player->atEnd()) { use(reader.readAll()); wait(player->untilNext()); player->advance(); }
///
/// After the last tick the player is at its end: the sources have nothing and say why, the clocks stand
/// still. Every operation may be called from any thread.
class TracePlayer {
 public:
  /// Plays the trace at `path`. Sleeps wait on `host`, which must outlive the player.
  [[nodiscard]] static std::expected<std::shared_ptr<TracePlayer>, TraceError> open(
      const std::string& path, PlaybackSpeed speed = PlaybackSpeed::maximum(),
      MonotonicClock& host = systemMonotonicClock());

  /// Plays what `reader` has not read yet.
  [[nodiscard]] static std::expected<std::shared_ptr<TracePlayer>, TraceError> over(
      TraceReader reader, PlaybackSpeed speed = PlaybackSpeed::maximum(),
      MonotonicClock& host = systemMonotonicClock());

  TracePlayer(const TracePlayer&) = delete;
  TracePlayer& operator=(const TracePlayer&) = delete;
  TracePlayer(TracePlayer&&) = delete;
  TracePlayer& operator=(TracePlayer&&) = delete;
  ~TracePlayer() = default;

  [[nodiscard]] const std::string& path() const { return path_; }      ///< of the trace, as it was named
  [[nodiscard]] const TraceHeader& header() const { return header_; }  ///< the first line

  /// Whether all ticks have been played, or the trace turned out to be damaged.
  [[nodiscard]] bool atEnd() const;

  /// How long the host should still wait before the next tick is due; 0 at maximum speed, and when there is
  /// no next tick.
  [[nodiscard]] Seconds untilNext() const;

  /// How far the next tick was from the present one when they were captured; no value when there is no next
  /// tick.
  [[nodiscard]] std::optional<Seconds> interval() const;

  /// Moves to the next tick without waiting, or to the end. No effect at the end. An error tells that the
  /// trace is damaged after the present tick; the player is then at its end.
  [[nodiscard]] std::expected<void, TraceError> advance();

  /// How many ticks have been stood on so far.
  [[nodiscard]] std::size_t ticksPlayed() const;

  /// How many lines were dropped because they were cut short; see `TraceReader`.
  [[nodiscard]] std::size_t tornLines() const;

  /// What the sources answered at the present tick; null at the end.
  [[nodiscard]] std::shared_ptr<const HostAnswers> answers() const;

  /// The latest process snapshots up to the present tick; null before the first and at the end.
  [[nodiscard]] std::shared_ptr<const ProcessAnswers> processes() const;

  /// The wall time of the present tick; at the end that of the last one, without any the trace's beginning.
  [[nodiscard]] const WallClock& wallClock() const { return wallClock_; }

  /// The monotonic time of the present tick, plus what was slept; never runs backwards. A sleep blocks for
  /// the time that the speed makes of it.
  [[nodiscard]] MonotonicClock& monotonicClock() { return monotonicClock_; }
  [[nodiscard]] const MonotonicClock& monotonicClock() const { return monotonicClock_; }  ///< the same clock

 private:
  class PlayerWallClock final : public WallClock {
   public:
    explicit PlayerWallClock(const TracePlayer& player) : player_(&player) {}
    [[nodiscard]] Instant now() const override;

   private:
    const TracePlayer* player_;
  };

  class PlayerMonotonicClock final : public MonotonicClock {
   public:
    explicit PlayerMonotonicClock(TracePlayer& player) : player_(&player) {}
    [[nodiscard]] Seconds now() const override;
    void sleep(Seconds duration) override;

   private:
    TracePlayer* player_;
  };

  using NextTick = std::expected<std::optional<HostAnswers>, TraceError>;

  TracePlayer(TraceReader reader, PlaybackSpeed speed, MonotonicClock& host);

  void standOn(HostAnswers tick);

  const std::string path_;
  const TraceHeader header_;
  const PlaybackSpeed speed_;
  MonotonicClock* const host_;
  PlayerWallClock wallClock_{*this};
  PlayerMonotonicClock monotonicClock_{*this};

  mutable std::mutex mutex_;  // guards all below
  TraceReader reader_;
  std::shared_ptr<const HostAnswers> present_;
  std::shared_ptr<const ProcessAnswers> processes_;
  NextTick next_;
  std::size_t ticksPlayed_ = 0;
  Instant wall_;
  Seconds monotonic_{};
  Seconds hostStart_{};       // when the player stood on the first tick
  Seconds monotonicStart_{};  // of that tick
};

}  // namespace quellin
