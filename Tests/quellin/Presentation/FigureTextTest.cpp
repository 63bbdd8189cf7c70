#include <map>

#include <gmock/gmock.h>

#include "QuellinCore/Support/JSON/JSONDecoder.h"
#include "Support/TemporaryFolder.h"
#include "quellin/Presentation/FigureText.h"

namespace quellin::cli {
namespace {

// One line of the table that the page of reports is tested with, too: figures look the same in both.
struct FigureCase {
  std::string kind;
  std::optional<double> value;
  std::optional<std::int64_t> places;
  std::string text;

  static constexpr auto fields() {
    return std::tuple{Field{"kind", &FigureCase::kind}, Field{"value", &FigureCase::value},
                      Field{"places", &FigureCase::places}, Field{"text", &FigureCase::text}};
  }
};

std::optional<std::int64_t> wholeOf(const std::optional<double>& value) {
  return value ? std::optional(static_cast<std::int64_t>(*value)) : std::nullopt;
}

std::string textOf(const FigureCase& figure) {
  if (figure.kind == "decimal") return decimal(figure.value, static_cast<int>(figure.places.value()));
  if (figure.kind == "whole") return whole(wholeOf(figure.value));
  if (figure.kind == "duration") return durationText(Seconds{figure.value.value()});
  if (figure.kind == "bytes") return byteText(figure.value.value());
  if (figure.kind == "samples") return counted(wholeOf(figure.value).value(), "sample");
  return "a kind that nobody spells: " + figure.kind;
}

TEST(FigureTextTest, FiguresAreSpelledAsInTheTable) {
  const auto table = decodeJSON<std::vector<FigureCase>>(
      testing_support::contentOf(QUELLIN_PROJECT "/Tests/Fixtures/figure-texts.json"));
  ASSERT_TRUE(table) << table.error().path() << ": " << table.error().debugDescription();
  ASSERT_FALSE(table->empty());
  for (const FigureCase& figure : *table) {
    EXPECT_EQ(textOf(figure), figure.text) << figure.kind << " of " << figure.value.value_or(0);
  }
}

TEST(FigureTextTest, NothingBelowNothingHasNoMinus) { EXPECT_EQ(decimal(-0.0, 2), "0.00"); }

TEST(FigureTextTest, ADifferenceHasItsSignUnlessItIsNothing) {
  EXPECT_EQ(signedDecimal(0.416, 2), "+0.42");
  EXPECT_EQ(signedDecimal(-8.14, 1), "-8.1");
  EXPECT_EQ(signedDecimal(0.004, 2), "0.00");
  EXPECT_EQ(signedDecimal(-0.004, 2), "0.00");
}

TEST(FigureTextTest, TheUnitTellsTheDecimals) {
  EXPECT_EQ(figureText(7.126, "W"), "7.13");
  EXPECT_EQ(figureText(-1.254, "A"), "-1.25");
  EXPECT_EQ(figureText(11.8504, "V"), "11.85");
  EXPECT_EQ(figureText(45.25, "°C"), "45.2");
  EXPECT_EQ(figureText(2410, "rpm"), "2410");
  EXPECT_EQ(figureText(62, "%"), "62");
  EXPECT_EQ(figureText(std::nullopt, "W"), "unknown");
}

}  // namespace
}  // namespace quellin::cli
