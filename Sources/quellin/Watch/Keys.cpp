#include "quellin/Watch/Keys.h"

#include <algorithm>
#include <array>
#include <ranges>

namespace quellin::cli {
namespace {

// "=" and "_" are on the keys of plus and minus on many keyboards; \x1B is Esc.
constexpr std::array<KeyGroup, 5> groups{
    {{.first = {"qQ\x1B", WatchAction::quit},
      .second = std::nullopt,
      .purpose = "end, as Esc and Ctrl-C do; a session recorded here is completed",
      .label = "quit"},
     {.first = {"sS", WatchAction::toggleSession},
      .second = std::nullopt,
      .purpose = "begin a session or go on with the active one; end it",
      .label = "start session",
      .labelWhenOn = "stop session",
      .isOn = &WatchModel::isRecording},
     {.first = {"+=", WatchAction::longerInterval},
      .second = WatchKey{"-_", WatchAction::shorterInterval},
      .purpose = "take readings less often, more often",
      .label = "interval"},
     {.first = {"pP", WatchAction::toggleProcesses},
      .second = std::nullopt,
      .purpose = "show or hide the processes",
      .label = "show processes",
      .labelWhenOn = "hide processes",
      .isOn = &WatchModel::showsProcesses},
     {.first = {"?hH", WatchAction::toggleHelp},
      .second = std::nullopt,
      .purpose = "show or leave this page",
      .label = "help",
      .labelWhenOn = "back",
      .isOn = &WatchModel::showsHelp}}};

constexpr std::array<Seconds, 9> intervals{Seconds{0.25}, Seconds{0.5}, Seconds{1},  Seconds{2}, Seconds{5},
                                           Seconds{10},   Seconds{20},  Seconds{30}, Seconds{60}};

bool means(const WatchKey& candidate, int key) {
  return std::ranges::find(candidate.characters, key) != candidate.characters.end();
}

}  // namespace

std::string KeyGroup::names(std::string_view separator) const {
  std::string names{first.characters.front()};
  if (second) names.append(separator) += second->characters.front();
  return names;
}

std::string_view KeyGroup::labelFor(const WatchModel& model) const {
  return isOn != nullptr && model.*isOn ? labelWhenOn : label;
}

std::span<const KeyGroup> watchKeys() { return groups; }

std::optional<WatchAction> actionOf(int key) {
  for (const KeyGroup& group : groups) {
    if (means(group.first, key)) return group.first.action;
    if (group.second && means(*group.second, key)) return group.second->action;
  }
  return std::nullopt;
}

Seconds longerInterval(Seconds interval) {
  const auto* const next =
      std::ranges::find_if(intervals, [interval](Seconds candidate) { return candidate > interval; });
  return next == intervals.end() ? interval : *next;
}

Seconds shorterInterval(Seconds interval) {
  const auto downwards = std::views::reverse(intervals);
  const auto next =
      std::ranges::find_if(downwards, [interval](Seconds candidate) { return candidate < interval; });
  return next == downwards.end() ? interval : *next;
}

}  // namespace quellin::cli
