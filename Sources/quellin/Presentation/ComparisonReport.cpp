#include "quellin/Presentation/ComparisonReport.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <iterator>

#include <fmt/format.h>

#include "QuellinCore/Sessions/Analysis/ComparisonVerdict.h"
#include "quellin/Presentation/FigureText.h"
#include "quellin/Presentation/Table.h"
#include "quellin/Storage/SessionLookup.h"
#include "quellin/Terminal/PlainText.h"

namespace quellin::cli {
namespace {

struct QuantityText {
  const char* name;
  const char* unit;
  const char* counted;  // what its mean is of
};

// In the order of the quantities.
constexpr std::array<QuantityText, rawValues<ComparedQuantity>.size()> quantityTexts{
    {{"Energy", "J", "session"},
     {"Power", "W", "session"},
     {"Power", "W", "reading"},
     {"Time", "s", "session"}}};

const QuantityText& textOf(const ComparedFigure& figure) {
  return quantityTexts.at(static_cast<std::size_t>(figure.quantity));
}

std::string sideText(const std::vector<PowerSessionMetadataDTO>& sessions) {
  const PowerSessionMetadataDTO& first = sessions.front();
  if (sessions.size() == 1) return "session " + shortID(first.id) + ", " + first.title;
  const bool isShared = std::ranges::all_of(
      sessions, [&](const PowerSessionMetadataDTO& session) { return session.title == first.title; });
  return whole(std::ssize(sessions)) + " sessions, " + first.title + (isShared ? "" : " and others");
}

// Two, and more where a difference that is more than rounding would pass for none.
int decimalsOf(const ComparedFigure& figure) {
  double largest = std::abs(figure.difference);
  if (figure.interval)
    largest = std::max({largest, std::abs(figure.interval->lower), std::abs(figure.interval->upper)});
  if (largest >= 0.005 || largest <= roundingOf(figure)) return 2;
  return std::min(2 - static_cast<int>(std::floor(std::log10(largest))), 12);
}

std::string boundsText(const DifferenceInterval& interval, int decimals) {
  return signedDecimal(interval.lower, decimals) + " to " + signedDecimal(interval.upper, decimals);
}

void addFigure(Table& table, const ComparedFigure& figure) {
  const QuantityText& text = textOf(figure);
  const auto& interval = figure.interval;
  const int decimals = decimalsOf(figure);
  table.add({std::string{text.name} + ", " + text.unit, decimal(figure.meanA, decimals),
             decimal(figure.meanB, decimals), signedDecimal(figure.difference, decimals),
             figure.percent ? signedDecimal(*figure.percent, 1) : "-",
             interval ? boundsText(*interval, decimals) : "-", interval ? interval->method : "-"});
}

std::string figureTable(const SessionComparison& comparison, std::optional<std::size_t> width) {
  Table table{{{"Mean"},
               {"A", Alignment::right},
               {"B", Alignment::right},
               {"B - A", Alignment::right},
               {"%", Alignment::right},
               {"95 % interval", Alignment::right},
               {"Method"}}};
  if (comparison.time) addFigure(table, *comparison.time);
  for (const KindComparison& kind : comparison.kinds) {
    table.addHeading(kind.sourceLabel + " (" + kind.confidence + ")");
    for (const ComparedFigure& figure : kind.figures) addFigure(table, figure);
  }
  return table.text(width);
}

std::string percentText(const ComparedFigure& figure) {
  return figure.percent ? " (" + signedDecimal(*figure.percent, 1) + " %)" : "";
}

// "B uses 0.42 W less (-8.1 %)".
std::string amountText(const KindComparison& kind, const ComparedFigure& figure) {
  const std::string usage = isUse(kind.sourceKind) ? "B uses " : "B takes in ";
  if (std::abs(figure.difference) <= roundingOf(figure)) return usage + "as much as A";
  const std::string amount =
      decimal(std::abs(figure.difference), decimalsOf(figure)) + " " + textOf(figure).unit;
  return usage + amount + (figure.difference < 0 ? " less" : " more") + percentText(figure);
}

std::string blocksText(const DifferenceInterval& interval) {
  if (!interval.blockLengthA || !interval.blockLengthB) return "";
  const std::string lengthA = whole(interval.blockLengthA);
  const std::string lengthB = whole(interval.blockLengthB);
  return " in blocks of " + lengthA + (lengthA == lengthB ? "" : " and " + lengthB);
}

std::string certaintyText(const ComparedFigure& figure) {
  const QuantityText& text = textOf(figure);
  return "95 % interval " + boundsText(*figure.interval, decimalsOf(figure)) + " " + text.unit + ", " +
         figure.interval->method + ", " + whole(figure.countA) + " against " +
         counted(figure.countB, text.counted) + blocksText(*figure.interval);
}

std::string thresholdText(const KindComparison& kind) {
  if (!kind.exceedsThreshold || !kind.overThreshold) return "";
  const ComparedFigure& figure = kind.figures.front();
  return std::string{*kind.exceedsThreshold ? "; " : "; not shown to be "} + "above the threshold, " +
         boundsText(*kind.overThreshold, decimalsOf(figure)) + " " + textOf(figure).unit + " over it";
}

std::string verdictText(const KindComparison& kind) {
  const ComparedFigure& figure = kind.figures.front();
  std::string text = kind.sourceLabel + ": ";
  switch (kind.outcome) {
    case ComparisonOutcome::uncertain:
      text +=
          amountText(kind, figure) + "; how sure that is cannot be told: " + figure.noInterval.value_or("");
      break;
    case ComparisonOutcome::indistinct:
      text += "no difference can be told apart" + percentText(figure) + ", " + certaintyText(figure);
      break;
    case ComparisonOutcome::less:
    case ComparisonOutcome::more:
      text += amountText(kind, figure) + ", " + certaintyText(figure);
      break;
  }
  return text + thresholdText(kind) + ".";
}

}  // namespace

std::string comparisonText(const SessionComparison& comparison, std::optional<std::size_t> width) {
  std::string text = namedLine("A", sideText(comparison.a)) + namedLine("B", sideText(comparison.b));
  if (comparison.thresholdPercent)
    text += namedLine("Threshold", fmt::format("{}", *comparison.thresholdPercent) +
                                       " %: exit status 3 when B is shown to exceed A by more");
  text += "\n" + figureTable(comparison, width) + "\n";
  for (const KindComparison& kind : comparison.kinds) text += wrapped(verdictText(kind), "", width);
  for (const NotCompared& left : comparison.notCompared)
    text += wrapped("Not compared: " + left.name + ", " + left.reason + ".", "", width);
  for (const std::string& note : comparison.notes) text += wrapped("Note: " + note + ".", "", width);
  return text;
}

}  // namespace quellin::cli
