#pragma once

#include "QuellinCore/Sessions/Analysis/SessionComparison.h"

namespace quellin {

/// What can be said of a figure. A difference below a billionth of the figures is none: that is rounding.
[[nodiscard]] ComparisonOutcome outcomeOf(const ComparedFigure& figure);

/// Whether a figure's interval is of no width, as between values that do not vary at all.
[[nodiscard]] bool hasNoWidth(const ComparedFigure& figure);

/// Whether the whole interval of the first figure lies above so many per cent of A's mean. No value without
/// an interval, and for what flows into a battery: more of that is no more use. Nor has the power of repeats
/// one: repeats are judged by their energy, as a run that takes longer uses more of it.
[[nodiscard]] std::optional<bool> exceeds(const KindComparison& kind, double percent);

/// The kinds of use to which the threshold could not be applied, each with the reason in brackets.
[[nodiscard]] std::vector<std::string> unjudgedUses(const SessionComparison& comparison);

/// Applies a threshold to every kind and to the whole, which is only kept where every kind of use was judged.
void applyThreshold(SessionComparison& comparison, double percent);

}  // namespace quellin
