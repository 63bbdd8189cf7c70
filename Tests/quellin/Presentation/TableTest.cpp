#include <gmock/gmock.h>

#include "Support/CaseNames.h"
#include "quellin/Presentation/Table.h"
#include "quellin/Terminal/PlainText.h"

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

TEST(TableTest, AColumnThatGivesWayIsCutNoMoreThanTheOthersNeed) {
  Table table{{{"Process", Alignment::left, true}, {"CPU %", Alignment::right}, {"W", Alignment::right}}};
  table.add({"com.example.Renderer", "12.5", "1.00"});
  table.add({"init", "0.0", "0.00"});
  EXPECT_EQ(table.text(27),
            "Process         CPU %     W\n"
            "com.example...   12.5  1.00\n"
            "init              0.0  0.00\n");
  EXPECT_EQ(table.text(24),
            "Process            CPU %\n"
            "com.example.Ren..   12.5\n"
            "init                 0.0\n"
            "Not shown for want of\n"
            "width: W.\n")
      << "not below twelve, and no narrower than the columns that are left need";
  EXPECT_EQ(table.text(100), table.text(std::nullopt));
}

TEST(TableTest, AColumnThatGivesWayKeepsItsTitle) {
  Table table{{{"Over all of the runs", Alignment::left, true}, {"J", Alignment::right}}};
  table.add({"Battery charge input, and more", "1.00"});
  EXPECT_EQ(table.text(26), "Over all of the runs     J\nBattery charge inp..  1.00\n");
  EXPECT_EQ(table.text(25),
            "Over all of the runs\n"
            "Battery charge input, a..\n"
            "Not shown for want of\n"
            "width: J.\n");
}

TEST(TableTest, HeadingsGoAcrossTheColumns) {
  Table table{{{"A"}, {"B", Alignment::right}}};
  table.addHeading("A heading\x1b of its own");
  table.add({"one", "2"});
  EXPECT_EQ(table.text(std::nullopt), "A    B\nA heading? of its own\none  2\n");
  EXPECT_EQ(table.text(9), "A    B\nA headi..\none  2\n");
  EXPECT_EQ(table.width(), 6U);
}

struct NarrowCase {
  const char* name;
  std::size_t width;
  const char* text;
};

class NarrowTableTest : public testing::TestWithParam<NarrowCase> {};

TEST_P(NarrowTableTest, ShowsAColumnWholeOrLeavesItOutAndSaysSo) {
  Table table{{{"Name"}, {"W", Alignment::right}, {"Note"}, {"Wh", Alignment::right}}};
  table.add({"CPU", "12.50", "model", "0.4"});
  EXPECT_EQ(table.text(GetParam().width), GetParam().text);
}

INSTANTIATE_TEST_SUITE_P(
    Widths, NarrowTableTest,
    testing::Values(NarrowCase{"All", 23, "Name      W  Note    Wh\nCPU   12.50  model  0.4\n"},
                    NarrowCase{"NoLastNumber", 22,
                               "Name      W  Note\nCPU   12.50  model\nNot shown for want of\nwidth: Wh.\n"},
                    NarrowCase{"TextAsNarrowAsCanBe", 18,
                               "Name      W  Note\nCPU   12.50  model\nNot shown for want\nof width: Wh.\n"},
                    NarrowCase{"NoText", 17,
                               "Name      W\nCPU   12.50\nNot shown for\nwant of width:\nNote, Wh.\n"},
                    NarrowCase{"NoNumber", 10, "Name\nCPU\nNot shown\nfor want\nof width:\nW, Note,\nWh.\n"}),
    testing_support::namedBy(&NarrowCase::name));

TEST(TableTest, TheFirstColumnStandsEvenWhereItDoesNotFit) {
  Table table{{{"Name"}, {"W"}}};
  table.add({"CPU", "12.50"});
  EXPECT_EQ(table.text(3), "N..\nCPU\n" + wrapped("Not shown for want of width: W.", "", 3));
}

TEST(TableTest, NeverCutsANumber) {
  Table table{{{"PID", Alignment::right}, {"Process"}}};
  table.add({"12345", "init"});
  EXPECT_EQ(table.text(4), "  PID\n12345\n" + wrapped("Not shown for want of width: Process.", "", 4));
}

TEST(TableTest, CutsNothingThatFitsAndNamesNothing) {
  Table table{{{"Ä"}, {"Second"}}};
  table.add({"ÖÖÖÖ", "x"});
  EXPECT_EQ(table.text(12), "Ä     Second\nÖÖÖÖ  x\n");
}

TEST(TableTest, NothingInACellReachesTheTerminalAsACommand) {
  Table table{{{"Process"}, {"W"}}};
  table.add({"evil\x1b[2J\r\n", "1"});
  EXPECT_EQ(table.text(std::nullopt), "Process     W\nevil?[2J??  1\n");
}

}  // namespace
}  // namespace quellin::cli
