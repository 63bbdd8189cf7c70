#include "quellin/Watch/Keys.h"

#include <algorithm>
#include <array>
#include <ranges>

namespace quellin::cli {
namespace {

constexpr int escapeKey = 0x1B;
constexpr std::array<Seconds, 9> intervals{Seconds{0.25}, Seconds{0.5}, Seconds{1},  Seconds{2}, Seconds{5},
                                           Seconds{10},   Seconds{20},  Seconds{30}, Seconds{60}};

}  // namespace

std::optional<WatchAction> actionOf(int key) {
  switch (key) {
    case 's':
    case 'S':
      return WatchAction::toggleSession;
    case '+':
    case '=':  // the same key without shift on many keyboards
      return WatchAction::longerInterval;
    case '-':
    case '_':
      return WatchAction::shorterInterval;
    case 'p':
    case 'P':
      return WatchAction::toggleProcesses;
    case '?':
    case 'h':
    case 'H':
      return WatchAction::toggleHelp;
    case 'q':
    case 'Q':
    case escapeKey:
      return WatchAction::quit;
    default:
      return std::nullopt;
  }
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
