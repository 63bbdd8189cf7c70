#include <algorithm>
#include <string>

#include <gtest/gtest.h>

#include "quellin/Watch/Keys.h"

namespace quellin::cli {
namespace {

TEST(KeysTest, GivesEachKeyItsMeaning) {
  EXPECT_EQ(actionOf('s'), WatchAction::toggleSession);
  EXPECT_EQ(actionOf('S'), WatchAction::toggleSession);
  EXPECT_EQ(actionOf('+'), WatchAction::longerInterval);
  EXPECT_EQ(actionOf('='), WatchAction::longerInterval);
  EXPECT_EQ(actionOf('-'), WatchAction::shorterInterval);
  EXPECT_EQ(actionOf('_'), WatchAction::shorterInterval);
  EXPECT_EQ(actionOf('p'), WatchAction::toggleProcesses);
  EXPECT_EQ(actionOf('?'), WatchAction::toggleHelp);
  EXPECT_EQ(actionOf('q'), WatchAction::quit);
  EXPECT_EQ(actionOf(0x1B), WatchAction::quit);
}

TEST(KeysTest, IgnoresOtherKeys) {
  EXPECT_EQ(actionOf('x'), std::nullopt);
  EXPECT_EQ(actionOf(0), std::nullopt);
  EXPECT_EQ(actionOf(0x19A), std::nullopt);  // what the screen's library says of a new size
}

TEST(KeysTest, EachCharacterIsOfOneKeyOnly) {
  std::string all;
  for (const KeyGroup& keys : watchKeys()) {
    all += keys.first.characters;
    if (keys.second) all += keys.second->characters;
  }
  std::ranges::sort(all);
  EXPECT_EQ(std::ranges::adjacent_find(all), all.end()) << all;
}

TEST(KeysTest, GoesThroughTheIntervals) {
  EXPECT_EQ(longerInterval(Seconds{1}), Seconds{2});
  EXPECT_EQ(shorterInterval(Seconds{1}), Seconds{0.5});
  EXPECT_EQ(longerInterval(Seconds{3}), Seconds{5});
  EXPECT_EQ(shorterInterval(Seconds{3}), Seconds{2});
}

TEST(KeysTest, StaysAtTheEnds) {
  EXPECT_EQ(longerInterval(Seconds{60}), Seconds{60});
  EXPECT_EQ(longerInterval(Seconds{90}), Seconds{90});
  EXPECT_EQ(shorterInterval(Seconds{0.25}), Seconds{0.25});
  EXPECT_EQ(shorterInterval(Seconds{0.1}), Seconds{0.1});
}

}  // namespace
}  // namespace quellin::cli
