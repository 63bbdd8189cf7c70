#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "quellin/Watch/Canvas.h"

namespace quellin::cli {
namespace {

using testing::ElementsAre;

constexpr ViewSize small{.rows = 2, .columns = 10};

TEST(CanvasTest, IsBlankAtFirst) { EXPECT_EQ((Canvas{small, CharacterSet::unicode}.text()), "\n\n"); }

TEST(CanvasTest, CutsARowWhereItsStyleChanges) {
  Canvas canvas{small, CharacterSet::unicode};
  EXPECT_EQ(canvas.write(0, 2, "ab", Style::strong), 4);
  canvas.write(0, 4, "cd", Style::bad);
  EXPECT_THAT(canvas.runs(0),
              ElementsAre(Canvas::Run{0, "  ", Style::plain}, Canvas::Run{2, "ab", Style::strong},
                          Canvas::Run{4, "cd", Style::bad}, Canvas::Run{6, "    ", Style::plain}));
}

TEST(CanvasTest, LeavesOutWhatLiesOutside) {
  Canvas canvas{small, CharacterSet::unicode};
  canvas.write(0, 8, "abc");
  canvas.write(1, -1, "abc");
  canvas.write(2, 0, "below");
  canvas.write(-1, 0, "above");
  EXPECT_EQ(canvas.text(), "        ab\nbc\n");
}

TEST(CanvasTest, CutsTextToAWidth) {
  Canvas canvas{small, CharacterSet::unicode};
  EXPECT_EQ(canvas.write(0, 0, "abcdef", Style::plain, 3), 3);
  EXPECT_EQ(canvas.write(1, 0, "abcdef", Style::plain, -1), 0);
  EXPECT_EQ(canvas.text(), "abc\n\n");
}

TEST(CanvasTest, CountsCharactersNotBytes) {
  Canvas canvas{small, CharacterSet::unicode};
  canvas.writeEndingAt(0, 10, "45 °C");
  EXPECT_EQ(canvas.text(), "     45 °C\n\n");
  EXPECT_EQ(columnsOn(CharacterSet::unicode, "45 °C"), 5);
}

TEST(CanvasTest, ReplacesWhatTheCharacterSetLacks) {
  Canvas canvas{small, CharacterSet::ascii};
  canvas.writeEndingAt(0, 10, "45 °C");
  canvas.write(1, 0, "Téa");
  EXPECT_EQ(canvas.text(), "      45 C\nT?a\n");
  EXPECT_EQ(columnsOn(CharacterSet::ascii, "45 °C"), 4);
}

TEST(CanvasTest, ReplacesWhatATerminalWouldObey) {
  Canvas canvas{small, CharacterSet::unicode};
  canvas.write(0, 0, "a\x1b[2Jb");
  canvas.write(1, 0, "\xFF.");
  EXPECT_EQ(canvas.text(), "a?[2Jb\n\uFFFD.\n");
}

TEST(CanvasTest, WideCharactersTakeTwoColumnsAndMarksNone) {
  Canvas canvas{small, CharacterSet::unicode};
  EXPECT_EQ(canvas.write(0, 0, "日e\u0301x"), 4);
  canvas.writeEndingAt(1, 10, "日本");
  EXPECT_EQ(canvas.text(), "日e\u0301x\n      日本\n");
  EXPECT_EQ(columnsOn(CharacterSet::unicode, "日e\u0301x"), 4);
  EXPECT_EQ(columnsOn(CharacterSet::ascii, "日e\u0301x"), 3);
}

TEST(CanvasTest, AWideCharacterIsNeverCutInHalf) {
  Canvas canvas{small, CharacterSet::unicode};
  EXPECT_EQ(canvas.write(0, 0, "a日", Style::plain, 2), 1);
  canvas.write(0, 9, "日");
  canvas.write(1, 0, "日本語");
  canvas.write(1, 1, "x");
  canvas.write(1, 4, "yz");
  EXPECT_EQ(canvas.text(), "a\n x本yz\n");
}

TEST(CanvasTest, AMarkWithNothingToJoinIsLeftOut) {
  Canvas canvas{small, CharacterSet::unicode};
  canvas.write(0, 0, "\u0301a");
  EXPECT_EQ(canvas.text(), "a\n\n");
}

TEST(CanvasTest, TakesASizeBelowZeroForNone) {
  Canvas canvas{{.rows = -1, .columns = -1}, CharacterSet::unicode};
  canvas.put(0, 0, {});
  EXPECT_EQ(canvas.text(), "");
}

}  // namespace
}  // namespace quellin::cli
