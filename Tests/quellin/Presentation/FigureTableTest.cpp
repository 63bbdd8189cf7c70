#include <string>
#include <vector>

#include <gmock/gmock.h>

#include "quellin/Presentation/FigureTable.h"

namespace quellin::cli {
namespace {

Figure figure(const std::string& group, const std::string& name, double value, const std::string& source,
              const std::string& kind, std::optional<std::string> note = std::nullopt) {
  return {.group = group,
          .name = name,
          .value = value,
          .text = std::nullopt,
          .unit = "W",
          .source = source,
          .kind = kind,
          .confidence = std::nullopt,
          .note = std::move(note)};
}

const std::vector<Figure> figures{
    figure("Power", "Battery draw", 12.5, "Battery", "batteryDischarge",
           "All of the machine while unplugged"),
    figure("Power", "Display and other", 6, "Battery, Energy counters", "derived"),
    figure("Silicon", "CPU", 4, "Energy counters", "model"),
    figure("Silicon", "A component with a long name", 2, "Energy counters", "model")};

constexpr const char* wide =
    "Group    Figure                        Value  Unit  Source                    Kind              Note\n"
    "Power    Battery draw                  12.50  W     Battery                   batteryDischarge  All of "
    "the machine while unplugged\n"
    "Power    Display and other              6.00  W     Battery, Energy counters  derived\n"
    "Silicon  CPU                            4.00  W     Energy counters           model\n"
    "Silicon  A component with a long name   2.00  W     Energy counters           model\n";

TEST(FigureTableTest, StandsInOneLineEachWhereThereIsRoom) {
  EXPECT_EQ(figureTable(figures, std::nullopt), wide);
  EXPECT_EQ(figureTable(figures, 130), wide);
}

TEST(FigureTableTest, LosesNothingButTheEndOfNamesWhereThereIsLess) {
  EXPECT_EQ(figureTable(figures, 80),
            "Figure                          Value  Unit  Kind\n"
            "Power, from Battery\n"
            "  Battery draw                  12.50  W     batteryDischarge\n"
            "    All of the machine while unplugged\n"
            "Power, from Battery, Energy counters\n"
            "  Display and other              6.00  W     derived\n"
            "Silicon, from Energy counters\n"
            "  CPU                            4.00  W     model\n"
            "  A component with a long name   2.00  W     model\n");
  EXPECT_EQ(figureTable(figures, 50),
            "Figure               Value  Unit  Kind\n"
            "Power, from Battery\n"
            "  Battery draw       12.50  W     batteryDischarge\n"
            "    All of the machine while unplugged\n"
            "Power, from Battery, Energy counters\n"
            "  Display and other   6.00  W     derived\n"
            "Silicon, from Energy counters\n"
            "  CPU                 4.00  W     model\n"
            "  A component wit..   2.00  W     model\n");
}

}  // namespace
}  // namespace quellin::cli
