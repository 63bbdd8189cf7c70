#include "QuellinCore/Sessions/Analysis/KindHolders.h"

#include <algorithm>
#include <utility>

namespace quellin {
namespace {

// On what the machine was during a session's readings of one kind.
std::string supplyOf(const ComparedSource& source) {
  if (!source.onBattery && !source.onCharger) return "on an unknown supply";
  std::string text = source.onBattery ? "on battery" : "with a charger";
  if (source.onBattery && source.onCharger) text += " and with a charger";
  return text + (source.onUnknown ? " and on an unknown supply" : "");
}

}  // namespace

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

KindHolders::KindHolders(std::span<const ComparedSession> sessions, std::string_view kind)
    : areWhole_(std::ranges::all_of(sessions, [&](const ComparedSession& session) {
        return session.isCompleted() && !session.lacksEnergy && session.sources.size() == 1 &&
               session.sources.front().energy.sourceKind == kind;
      })) {
  for (const ComparedSession& session : sessions) {
    for (const ComparedSource& source : session.sources) {
      if (source.energy.sourceKind == kind) sources_.push_back(&source);
    }
  }
}

std::string KindHolders::supplyText() const {
  std::vector<std::pair<std::string, std::size_t>> supplies;
  for (const ComparedSource* source : sources_) {
    const std::string supply = supplyOf(*source);
    const auto known = std::ranges::find(supplies, supply, &std::pair<std::string, std::size_t>::first);
    if (known == supplies.end()) {
      supplies.emplace_back(supply, 1);
    } else {
      ++known->second;
    }
  }
  if (supplies.empty() || isOnUnknownSupply()) return "";
  if (supplies.size() == 1) return " " + supplies.front().first;
  std::string text;
  for (const auto& [supply, count] : supplies) {
    text += (text.empty() ? " (" : ", ") + std::to_string(count) + (count == 1 ? " session " : " sessions ") +
            supply;
  }
  return text + ")";
}

bool KindHolders::sharesSupplyWith(const KindHolders& other) const {
  if (sources_.empty() || other.sources_.empty()) return false;
  const ComparedSource& first = *sources_.front();
  const auto isLikeFirst = [&](const ComparedSource* source) { return supplyOf(*source) == supplyOf(first); };
  return static_cast<int>(first.onBattery) + static_cast<int>(first.onCharger) +
                 static_cast<int>(first.onUnknown) <=
             1 &&
         std::ranges::all_of(sources_, isLikeFirst) && std::ranges::all_of(other.sources_, isLikeFirst);
}

bool KindHolders::isOnUnknownSupply() const {
  return std::ranges::none_of(
      sources_, [](const ComparedSource* source) { return source->onBattery || source->onCharger; });
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
