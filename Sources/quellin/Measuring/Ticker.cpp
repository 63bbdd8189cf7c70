#include "quellin/Measuring/Ticker.h"

#include <algorithm>
#include <utility>

#include "quellin/Outcome/Failure.h"

namespace quellin::cli {

Ticker::Ticker(Loop& loop, const MeasuredHost& host, Seconds interval, std::optional<Seconds> duration)
    : loop_(loop), host_(host), interval_(interval), duration_(duration) {}

void Ticker::run(Round round) {
  round_ = std::move(round);
  startedAt_ = nextAt_ = host_.monotonicClock->now();
  loop_.onInterrupt([this] {
    wasInterrupted_ = true;
    end();
  });
  loop_.after(Seconds{0}, [this] { begin(); });
  if (duration_ && !host_.player) loop_.after(*duration_, [this] { end(); });
  loop_.run();
  if (damage_) throw Failure{ExitStatus::failed, *damage_};
}

void Ticker::end() {
  isEnding_ = true;
  if (!isInRound_) stopNow();
}

void Ticker::begin() {
  if (isOver()) return stopNow();
  isInRound_ = true;
  round_([this] { loop_.executor()->post([this] { finished(); }); });
}

void Ticker::finished() {
  isInRound_ = false;
  if (isEnding_) return stopNow();
  if (!host_.player) {
    nextAt_ += interval_;
    const Seconds now = host_.monotonicClock->now();
    nextAt_ = std::max(nextAt_, now);
    return loop_.after(nextAt_ - now, [this] { begin(); });
  }
  if (isLastTick()) return stopNow();
  loop_.after(host_.player->untilNext(), [this] {
    if (const auto moved = host_.player->advance(); !moved) damage_ = moved.error().message();
    begin();
  });
}

void Ticker::stopNow() { loop_.stop(); }

bool Ticker::isOver() const { return isEnding_ || (host_.player && host_.player->atEnd()); }

// The next tick of the trace would be behind the end: somebody else may want it.
bool Ticker::isLastTick() const {
  const auto answers = host_.player->answers();
  const auto untilNext = host_.player->interval();
  return duration_ && answers && untilNext && answers->monotonic + *untilNext - startedAt_ > *duration_;
}

}  // namespace quellin::cli
