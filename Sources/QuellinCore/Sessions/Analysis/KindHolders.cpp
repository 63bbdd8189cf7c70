#include "QuellinCore/Sessions/Analysis/KindHolders.h"

#include <algorithm>
#include <array>
#include <utility>

namespace quellin {
namespace {

bool isOne(const Supply& supply) {
  const std::array<bool, 3> kinds{supply.onBattery, supply.onCharger, supply.onUnknown};
  return std::ranges::count(kinds, true) == 1;
}

std::string textOf(const Supply& supply) {
  std::string text;
  const auto add = [&](bool isOn, const char* words) {
    if (isOn) text += (text.empty() ? "" : " and ") + std::string{words};
  };
  add(supply.onBattery, "on battery");
  add(supply.onCharger, "with a charger");
  add(supply.onUnknown, "on an unknown supply");
  return text;
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
    const KindHolders holders(sessions, kind.sourceKind);
    text += (text.empty() ? "" : ", ") + kind.sourceLabel;
    if (!holders.isOnUnknownSupply()) text += holders.supplyText();
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
  std::vector<std::pair<Supply, std::size_t>> supplies;
  for (const ComparedSource* source : sources_) {
    const auto known = std::ranges::find(supplies, source->supply, &std::pair<Supply, std::size_t>::first);
    if (known == supplies.end()) {
      supplies.emplace_back(source->supply, 1);
    } else {
      ++known->second;
    }
  }
  if (supplies.empty()) return "";
  if (supplies.size() == 1) return " " + textOf(supplies.front().first);
  std::string text;
  for (const auto& [supply, count] : supplies) {
    text += (text.empty() ? " (" : ", ") + std::to_string(count) + (count == 1 ? " session " : " sessions ") +
            textOf(supply);
  }
  return text + ")";
}

bool KindHolders::sharesSupplyWith(const KindHolders& other) const {
  if (sources_.empty() || other.sources_.empty()) return false;
  const Supply& first = sources_.front()->supply;
  const auto isLikeFirst = [&](const ComparedSource* source) { return source->supply == first; };
  return isOne(first) && std::ranges::all_of(sources_, isLikeFirst) &&
         std::ranges::all_of(other.sources_, isLikeFirst);
}

bool KindHolders::isOnUnknownSupply() const {
  return std::ranges::none_of(sources_, [](const ComparedSource* source) {
    return source->supply.onBattery || source->supply.onCharger;
  });
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
