#include <string>
#include <vector>

#include <gmock/gmock.h>

#include "QuellinCore/Sessions/Analysis/SessionChoice.h"
#include "Support/CaseNames.h"

namespace quellin {
namespace {

using Reason = SessionChoiceError::Reason;
using testing_support::namedBy;

constexpr const char* first = "3F2A0000-0000-4000-8000-000000000000";
constexpr const char* second = "3F2B0000-0000-4000-8000-000000000000";

// By their start, the newest first; the second was made last. One title is also the beginning of an
// identifier, one an identifier, one has commas.
std::vector<SessionName> names() {
  const auto name = [](const char* id, const char* title, double madeAt = 1000) {
    return SessionName{.id = UUID::fromText(id).value(), .title = title, .madeAt = instantAt(madeAt)};
  };
  return {name(first, "Old code"),
          name(second, "New code", 2000),
          name("A1110000-0000-4000-8000-000000000000", "Old code"),
          name("B2220000-0000-4000-8000-000000000000", "A"),
          name("B3330000-0000-4000-8000-000000000000", "New code"),
          name("C4440000-0000-4000-8000-000000000000", "make, then test"),
          name("D5550000-0000-4000-8000-000000000000", "last"),
          name("E6660000-0000-4000-8000-000000000000", first)};
}

struct Chosen {
  const char* what;
  const char* words;
  ChosenSessions sessions;
};

class ChosenSessionsTest : public testing::TestWithParam<Chosen> {};

TEST_P(ChosenSessionsTest, AreThose) {
  const auto chosen = chooseSessions(names(), GetParam().words);
  ASSERT_TRUE(chosen.has_value()) << GetParam().what;
  EXPECT_EQ(*chosen, GetParam().sessions) << GetParam().what;
}

INSTANTIATE_TEST_SUITE_P(Words, ChosenSessionsTest,
                         testing::Values(Chosen{"a title of several", "Old code", {0, 2}},
                                         Chosen{"the beginning", "3f2b", {1}},
                                         Chosen{"a title before a beginning", "A", {3}},
                                         Chosen{"the one made last", "last", {1}},
                                         Chosen{"an identifier before a title", first, {0}},
                                         Chosen{"a list", "3F2A,B3,A1", {0, 4, 2}},
                                         Chosen{"titles in a list", "New code,A", {1, 4, 3}},
                                         Chosen{"a list with blanks", "New code , A", {1, 4, 3}},
                                         Chosen{"a title with commas", "make, then test", {5}}),
                         namedBy(&Chosen::what));

struct Refused {
  const char* what;
  const char* words;
  SessionChoiceError error;
};

class RefusedSessionsTest : public testing::TestWithParam<Refused> {};

TEST_P(RefusedSessionsTest, SaysWhy) {
  const auto chosen = chooseSessions(names(), GetParam().words);
  ASSERT_FALSE(chosen.has_value()) << GetParam().what;
  EXPECT_EQ(chosen.error(), GetParam().error) << GetParam().what;
}

INSTANTIATE_TEST_SUITE_P(
    Words, RefusedSessionsTest,
    testing::Values(Refused{"no such session", "zzz", {Reason::unknown, "zzz", 0}},
                    Refused{"a title in part", "Old", {Reason::unknown, "Old", 0}},
                    Refused{"nothing", "", {Reason::unknown, "", 0}},
                    Refused{"nothing behind a comma", "3F2A,", {Reason::unknown, "", 0}},
                    Refused{"two beginnings", "A1,3F2", {Reason::ambiguous, "3F2", 2}},
                    Refused{"the same twice", "last,B3,3F2B", {Reason::repeated, second, 1}},
                    Refused{"one of a title", "3F2A,Old code", {Reason::repeated, first, 1}}),
    namedBy(&Refused::what));

TEST(SessionChoiceTest, OneSessionHasNoTitle) {
  EXPECT_EQ(chooseSession(names(), "B3"), 4U);
  EXPECT_EQ(chooseSession(names(), "New code").error().reason, Reason::unknown);
  EXPECT_EQ(chooseSession(names(), "B").error(), (SessionChoiceError{Reason::ambiguous, "B", 2}));
  EXPECT_EQ(chooseSession({}, "last").error().reason, Reason::nothingRecorded);
}

TEST(SessionChoiceTest, BothSidesAreChosenAndShareNoSession) {
  EXPECT_EQ(chooseSides(names(), "Old code", "New code"), (ChosenSides{.a = {0, 2}, .b = {1, 4}}));
  EXPECT_EQ(chooseSides(names(), "New code", "last").error(),
            (SessionChoiceError{Reason::repeated, second, 1}));
  EXPECT_EQ(chooseSides(names(), "Old code", "nobody").error().word, "nobody");
  EXPECT_EQ(chooseSides(names(), "nobody", "Old code").error().word, "nobody");
}

}  // namespace
}  // namespace quellin
