#include <gmock/gmock.h>

#include "quellin/Presentation/Table.h"

namespace quellin::cli {
namespace {

TEST(TableTest, ColumnsAreAsWideAsTheirWidestText) {
  Table table{{{"Name"}, {"W", Alignment::right}, {"Note"}}};
  table.add({"CPU", "12.50", "model"});
  table.add({"Neural engine", "0.03", ""});
  EXPECT_EQ(table.text(std::nullopt),
            "Name               W  Note\n"
            "CPU            12.50  model\n"
            "Neural engine   0.03\n");
}

TEST(TableTest, ShortRowsAreFilled) {
  Table table{{{"A"}, {"B"}, {"C"}}};
  table.add({"1"});
  EXPECT_EQ(table.text(std::nullopt), "A  B  C\n1\n");
}

TEST(TableTest, CharactersCountNotBytes) {
  Table table{{{"Sensor"}, {"°C", Alignment::right}}};
  table.add({"Prüfstück", "41.0"});
  table.add({"CPU", "9.5"});
  EXPECT_EQ(table.text(std::nullopt),
            "Sensor       °C\n"
            "Prüfstück  41.0\n"
            "CPU         9.5\n");
}

TEST(TableTest, ColumnsOfTheTerminalCountNotCharacters) {
  Table table{{{"Process"}, {"W", Alignment::right}}};
  table.add({"日本語エディタ", "1.00"});
  table.add({"Cafe\u0301", "12.00"});
  EXPECT_EQ(table.text(std::nullopt),
            "Process             W\n"
            "日本語エディタ   1.00\n"
            "Cafe\u0301            12.00\n");
}

TEST(TableTest, AColumnThatGivesWayIsCutSoThatTheNumbersFit) {
  Table table{{{"Process", Alignment::left, true}, {"CPU %", Alignment::right}, {"W", Alignment::right}}};
  table.add({"com.example.Renderer", "12.5", "1.00"});
  table.add({"init", "0.0", "0.00"});
  EXPECT_EQ(table.text(27),
            "Process         CPU %     W\n"
            "com.example.Re   12.5  1.00\n"
            "init              0.0  0.00\n");
  EXPECT_EQ(table.text(24),
            "Process       CPU %\n"
            "com.example.   12.5\n"
            "init            0.0\n")
      << "not below twelve";
  EXPECT_EQ(table.text(100), table.text(std::nullopt));
}

TEST(TableTest, HeadingsGoAcrossTheColumns) {
  Table table{{{"A"}, {"B", Alignment::right}}};
  table.addHeading("A heading\x1b of its own");
  table.add({"one", "2"});
  EXPECT_EQ(table.text(std::nullopt), "A    B\nA heading? of its own\none  2\n");
  EXPECT_EQ(table.text(9), "A    B\nA heading\none  2\n");
  EXPECT_EQ(table.width(), 6U);
}

TEST(TableTest, LinesAreCutToTheWidthBetweenCharacters) {
  Table table{{{"Ä"}, {"Second"}}};
  table.add({"ÖÖÖÖ", "x"});
  EXPECT_EQ(table.text(3), "Ä  \nÖÖÖ\n");
}

TEST(TableTest, NumbersAreLeftOutBeforeTheyAreCut) {
  Table table{{{"Name"}, {"W", Alignment::right}, {"Note"}, {"Wh", Alignment::right}}};
  table.add({"CPU", "12.50", "model", "0.4"});
  EXPECT_EQ(table.text(23), "Name      W  Note    Wh\nCPU   12.50  model  0.4\n");
  EXPECT_EQ(table.text(22), "Name      W  Note\nCPU   12.50  model\n");
  EXPECT_EQ(table.text(15), "Name      W  No\nCPU   12.50  mo\n");
  EXPECT_EQ(table.text(11), "Name      W\nCPU   12.50\n");
  EXPECT_EQ(table.text(10), "Name\nCPU\n");
}

TEST(TableTest, NothingInACellReachesTheTerminalAsACommand) {
  Table table{{{"Process"}, {"W"}}};
  table.add({"evil\x1b[2J\r\n", "1"});
  EXPECT_EQ(table.text(std::nullopt), "Process     W\nevil?[2J??  1\n");
}

}  // namespace
}  // namespace quellin::cli
