#include "QuellinCore/Platform/Recorded/RecordedProcessSource.h"

#include <algorithm>
#include <cstddef>
#include <functional>
#include <map>
#include <span>
#include <utility>

#include "QuellinCore/Platform/Recorded/IntervalScale.h"
#include "QuellinCore/Platform/Recorded/RecordedDiagnosis.h"

namespace quellin {
namespace {

using ByPID = std::map<std::int32_t, std::reference_wrapper<const ProcessAnswer>>;

ByPID byPID(std::span<const ProcessAnswer> snapshot) {
  ByPID answers;
  for (const ProcessAnswer& answer : snapshot) answers.emplace(answer.pid, std::cref(answer));
  return answers;
}

class RecordedScan final : public ProcessScan {
 public:
  RecordedScan(std::shared_ptr<const TracePlayer> player, std::shared_ptr<const ProcessAnswers> answers)
      : player_(std::move(player)),
        answers_(std::move(answers)),
        first_(byPID(answers_->first)),
        second_(byPID(answers_->second)),
        begun_(now()) {}

  std::int64_t listProcessIDs(std::span<std::int32_t> ids) override {
    if (hasAsked_ || now() != begun_) beginSecond();
    const auto& snapshot = isSecond_ ? answers_->second : answers_->first;
    const std::size_t count = std::min(ids.size(), snapshot.size());
    std::ranges::transform(std::span{snapshot}.first(count), ids.begin(), &ProcessAnswer::pid);
    return static_cast<std::int64_t>(count * sizeof(std::int32_t));
  }

  std::optional<ProcessUsage> usage(std::int32_t pid) override {
    hasAsked_ = true;
    const auto& snapshot = isSecond_ ? second_ : first_;
    const auto found = snapshot.find(pid);
    if (found == snapshot.end() || !found->second.get().usage) return std::nullopt;
    const ProcessUsage& usage = *found->second.get().usage;
    return isSecond_ ? stretched(pid, usage) : usage;
  }

  std::optional<std::string> name(std::int32_t pid) override {
    hasAsked_ = true;
    const auto found = second_.find(pid);
    return found == second_.end() ? std::nullopt : found->second.get().name;
  }

 private:
  [[nodiscard]] Seconds now() const { return player_->monotonicClock().now(); }

  void beginSecond() {
    if (isSecond_) return;
    isSecond_ = true;
    scale_ = IntervalScale{answers_->interval, now() - begun_};
  }

  [[nodiscard]] ProcessUsage stretched(std::int32_t pid, const ProcessUsage& usage) const {
    const auto before = first_.find(pid);
    if (before == first_.end() || !before->second.get().usage) return usage;
    return scale_.later(*before->second.get().usage, usage);
  }

  std::shared_ptr<const TracePlayer> player_;
  std::shared_ptr<const ProcessAnswers> answers_;
  ByPID first_;
  ByPID second_;
  Seconds begun_;
  IntervalScale scale_{Seconds{0}, Seconds{0}};
  bool hasAsked_ = false;
  bool isSecond_ = false;
};

}  // namespace

RecordedProcessSource::RecordedProcessSource(std::shared_ptr<const TracePlayer> player)
    : player_(std::move(player)) {}

std::unique_ptr<ProcessScan> RecordedProcessSource::beginScan() {
  auto answers = player_->processes();
  if (!answers) answers = std::make_shared<const ProcessAnswers>();
  return std::make_unique<RecordedScan>(player_, std::move(answers));
}

SourceDiagnosis RecordedProcessSource::diagnose() {
  const auto processes = player_->processes();
  return recordedDiagnosis(*player_, SourceNames::processes, &TraceDiagnoses::processes,
                           processes && !processes->first.empty());
}

}  // namespace quellin
