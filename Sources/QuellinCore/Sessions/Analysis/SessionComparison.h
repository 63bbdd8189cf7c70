#pragma once

#include <array>
#include <cstdint>
#include <expected>
#include <optional>
#include <string>
#include <string_view>
#include <tuple>
#include <vector>

#include "QuellinCore/Sessions/Analysis/ComparedSession.h"
#include "QuellinCore/Sessions/Analysis/DifferenceInterval.h"
#include "QuellinCore/Support/JSON/Record.h"
#include "QuellinCore/Support/RawValue.h"

namespace quellin {

/// What can be said of B beside A.
enum class ComparisonOutcome {
  less,        ///< the whole interval of the difference lies below zero
  more,        ///< it lies above zero
  indistinct,  ///< it holds zero
  uncertain,   ///< there is no interval
};

template <>
inline constexpr std::array rawValues<ComparisonOutcome>{std::string_view{"less"}, std::string_view{"more"},
                                                         std::string_view{"indistinct"},
                                                         std::string_view{"uncertain"}};

/// What a figure is the mean of.
enum class ComparedQuantity {
  joules,         ///< each session's energy of one kind
  averageWatts,   ///< each session's average, weighted by time
  readingsWatts,  ///< the readings of the one session
  seconds,        ///< each session's length
};

template <>
inline constexpr std::array rawValues<ComparedQuantity>{
    std::string_view{"joules"}, std::string_view{"averageWatts"}, std::string_view{"readingsWatts"},
    std::string_view{"seconds"}};

/// One figure of both sides.
struct ComparedFigure {
  ComparedQuantity quantity{};                 ///< with its unit
  double meanA = 0;                            ///< in that unit
  double meanB = 0;                            ///< in that unit
  double difference = 0;                       ///< B minus A
  std::optional<double> percent;               ///< the same of A's mean; absent where that is 0
  std::optional<DifferenceInterval> interval;  ///< of the difference; absent where none can be told
  std::optional<std::string> noInterval;       ///< why it is absent
  std::int64_t countA = 0;                     ///< how many values A's mean is of
  std::int64_t countB = 0;                     ///< how many values B's mean is of

  static constexpr auto fields() {
    using Figure = ComparedFigure;
    return std::tuple{Field{"quantity", &Figure::quantity},     Field{"meanA", &Figure::meanA},
                      Field{"meanB", &Figure::meanB},           Field{"difference", &Figure::difference},
                      Field{"percent", &Figure::percent},       Field{"interval", &Figure::interval},
                      Field{"noInterval", &Figure::noInterval}, Field{"countA", &Figure::countA},
                      Field{"countB", &Figure::countB}};
  }

  bool operator==(const ComparedFigure&) const = default;
};

/// Readings of one kind on both sides.
struct KindComparison {
  std::string sourceKind;               ///< raw value of a `PowerReadingKind`
  std::string sourceLabel;              ///< what people are told
  std::string confidence;               ///< raw value of a `PowerReadingConfidence`
  std::vector<ComparedFigure> figures;  ///< at least one; the first decides
  ComparisonOutcome outcome{};          ///< of that one
  /// Of that one, how far B lies above A and a threshold's share more; absent without a threshold, and where
  /// it cannot be applied.
  std::optional<DifferenceInterval> overThreshold;
  std::optional<bool> exceedsThreshold;  ///< whether the whole of it lies above zero; absent with it

  static constexpr auto fields() {
    using Kind = KindComparison;
    return std::tuple{Field{"sourceKind", &Kind::sourceKind},
                      Field{"sourceLabel", &Kind::sourceLabel},
                      Field{"confidence", &Kind::confidence},
                      Field{"figures", &Kind::figures},
                      Field{"outcome", &Kind::outcome},
                      Field{"overThreshold", &Kind::overThreshold},
                      Field{"exceedsThreshold", &Kind::exceedsThreshold}};
  }

  bool operator==(const KindComparison&) const = default;
};

/// Something that is not compared, and why.
struct NotCompared {
  std::string name;                       ///< a kind's label, or an identifier of a session
  std::optional<std::string> sourceKind;  ///< of a kind: raw value of a `PowerReadingKind`
  std::string reason;                     ///< in words

  static constexpr auto fields() {
    return std::tuple{Field{"name", &NotCompared::name}, Field{"sourceKind", &NotCompared::sourceKind},
                      Field{"reason", &NotCompared::reason}};
  }

  bool operator==(const NotCompared&) const = default;
};

/// Two sessions, or two sets of repeats, beside each other, like with like.
struct SessionComparison {
  std::vector<PowerSessionMetadataDTO> a;  ///< the sessions of A that are compared
  std::vector<PowerSessionMetadataDTO> b;  ///< those of B
  std::optional<ComparedFigure> time;      ///< absent when a session of them is not over
  std::vector<KindComparison> kinds;       ///< those of both, in the order of A
  std::vector<NotCompared> notCompared;    ///< sessions and kinds that are left out
  std::vector<std::string> notes;          ///< what to know before believing the figures
  std::optional<double> thresholdPercent;  ///< absent when none is applied
  std::optional<bool>
      exceedsThreshold;  ///< whether any kind does; absent when none does and not all could be judged

  static constexpr auto fields() {
    using Comparison = SessionComparison;
    return std::tuple{Field{"a", &Comparison::a},
                      Field{"b", &Comparison::b},
                      Field{"time", &Comparison::time},
                      Field{"kinds", &Comparison::kinds},
                      Field{"notCompared", &Comparison::notCompared},
                      Field{"notes", &Comparison::notes},
                      Field{"thresholdPercent", &Comparison::thresholdPercent},
                      Field{"exceedsThreshold", &Comparison::exceedsThreshold}};
  }

  bool operator==(const SessionComparison&) const = default;
};

/// Compares two sets of sessions, or says why they have nothing in common. A session on its own is taken as
/// it is; of several only those that are completed. Repeats on both sides have their intervals by Welch's t,
/// one session on each side by the bootstrap over its readings; one beside several has none. A kind is
/// compared only where all its readings on both sides were taken on one and the same supply, or nothing is
/// known of any. Energy is compared only where every stretch of every session has readings of this one kind:
/// otherwise it would be that of a part of the time. A threshold is exceeded where an interval of B less A
/// and so many per cent of A lies above zero, found by the method of the first figure. It is not applied
/// while a session is not over: what a failing command used is no answer.
[[nodiscard]] std::expected<SessionComparison, std::string> compareSessions(
    std::vector<ComparedSession> a, std::vector<ComparedSession> b,
    std::optional<double> thresholdPercent = std::nullopt);

}  // namespace quellin
