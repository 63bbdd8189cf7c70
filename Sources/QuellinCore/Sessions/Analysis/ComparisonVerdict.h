#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "QuellinCore/Sessions/Analysis/SessionComparison.h"

namespace quellin {

/// Up to how much a difference of a figure's means, in its unit, is none but rounding: a billionth of them.
[[nodiscard]] double roundingOf(const ComparedFigure& figure);

/// Whether readings of this kind tell what the machine uses: all do but what flows into a battery.
[[nodiscard]] bool isUse(std::string_view sourceKind);

/// What can be said of a figure. A difference that is rounding is none.
[[nodiscard]] ComparisonOutcome outcomeOf(const ComparedFigure& figure);

/// Whether a figure's interval is of no width, as between values that do not vary at all.
[[nodiscard]] bool hasNoWidth(const ComparedFigure& figure);

/// "the session of B is interrupted": which of a side's sessions is not over; no value when all are.
[[nodiscard]] std::optional<std::string> unfinishedText(const std::string& side,
                                                        std::span<const PowerSessionMetadataDTO> sessions);

/// The same of both sides; the first that there is.
[[nodiscard]] std::optional<std::string> unfinishedText(const SessionComparison& comparison);

/// Whether a threshold is applied to a kind's first figure. Not to what flows into a battery: more of that is
/// no more use. Nor to the power of repeats: they are judged by their energy, as a run that takes longer uses
/// more of it.
[[nodiscard]] bool isJudged(std::string_view sourceKind, ComparedQuantity quantity);

/// Whether B lies above the threshold by the whole interval. No value where there is no such interval.
[[nodiscard]] std::optional<bool> exceeds(const KindComparison& kind);

/// The kinds of use to which the threshold could not be applied, each with the reason in brackets.
[[nodiscard]] std::vector<std::string> unjudgedUses(const SessionComparison& comparison);

/// Says of every kind and of the whole whether the threshold is exceeded. It is only kept where every kind of
/// use was judged.
void judgeThreshold(SessionComparison& comparison);

}  // namespace quellin
