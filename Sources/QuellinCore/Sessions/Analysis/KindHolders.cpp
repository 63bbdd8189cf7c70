#include "QuellinCore/Sessions/Analysis/KindHolders.h"

#include <algorithm>

namespace quellin {

std::vector<SourceEnergy> kindsOf(std::span<const ComparedSession> sessions) {
  std::vector<SourceEnergy> kinds;
  for (const ComparedSession& session : sessions) {
    for (const ComparedSource& source : session.sources) {
      if (std::ranges::find(kinds, source.energy.sourceKind, &SourceEnergy::sourceKind) == kinds.end())
        kinds.push_back(source.energy);
    }
  }
  return kinds;
}

std::string kindsText(std::span<const ComparedSession> sessions) {
  std::string text;
  for (const SourceEnergy& kind : kindsOf(sessions)) {
    text +=
        (text.empty() ? "" : ", ") + kind.sourceLabel + KindHolders(sessions, kind.sourceKind).supplyText();
  }
  return text.empty() ? "no readings of power" : "readings of " + text;
}

KindHolders::KindHolders(std::span<const ComparedSession> sessions, std::string_view kind) {
  for (const ComparedSession& session : sessions) {
    for (const ComparedSource& source : session.sources) {
      if (source.energy.sourceKind != kind) continue;
      sources_.push_back(&source);
      areWhole_ = areWhole_ && session.isCompleted() && session.sources.size() == 1;
    }
  }
}

bool KindHolders::onBattery() const { return std::ranges::any_of(sources_, &ComparedSource::onBattery); }

bool KindHolders::onCharger() const { return std::ranges::any_of(sources_, &ComparedSource::onCharger); }

std::string KindHolders::supplyText() const {
  if (onBattery()) return onCharger() ? " on battery and with a charger" : " on battery";
  return onCharger() ? " with a charger" : "";
}

bool KindHolders::hasOtherSupplyThan(const KindHolders& other) const {
  return onBattery() != onCharger() && other.onBattery() != other.onCharger() &&
         onBattery() != other.onBattery();
}

std::optional<std::vector<double>> KindHolders::joules() const {
  std::vector<double> joules;
  for (const ComparedSource* source : sources_) {
    if (source->energy.joules) joules.push_back(*source->energy.joules);
  }
  if (!areWhole_ || joules.size() < sources_.size()) return std::nullopt;
  return joules;
}

std::vector<double> KindHolders::averageWatts() const {
  std::vector<double> watts;
  watts.reserve(sources_.size());
  for (const ComparedSource* source : sources_) {
    if (source->energy.averageWatts) watts.push_back(*source->energy.averageWatts);
  }
  return watts;
}

}  // namespace quellin
